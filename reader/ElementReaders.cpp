#include "reader/ElementReaders.h"

#include "reader/CommunicationReader.h"
#include "reader/DescriptionReader.h"
#include "reader/DisplayElementReaders.h"
#include "reader/PinMapperReader.h"
#include "reader/PlotReader.h"
#include "reader/ValueElementReaders.h"
#include "reader/VarReader.h"
#include "reader/ViewReaders.h"

void ElementReaders::install(DescriptionReader &reader)
{
    ValueElementReaders::install(reader);
    DisplayElementReaders::install(reader);
    VarReader::install(reader);
    CommunicationReader::install(reader);
    PinMapperReader::install(reader);
    PlotReader::install(reader);
    ViewReaders::install(reader);
}
