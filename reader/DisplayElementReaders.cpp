#include "reader/DisplayElementReaders.h"

#include "reader/DescriptionReader.h"

void DisplayElementReaders::install(DescriptionReader &reader)
{
    (void)reader;
}
