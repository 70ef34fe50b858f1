#include "reader/ValueElementReaders.h"

#include "reader/DescriptionReader.h"

void ValueElementReaders::install(DescriptionReader &reader)
{
    (void)reader;
}
