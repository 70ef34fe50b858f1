#include "reader/ElementReaders.h"

#include "reader/DescriptionReader.h"

void ElementReaders::install(DescriptionReader &reader)
{
    Q_UNUSED(reader);
}
