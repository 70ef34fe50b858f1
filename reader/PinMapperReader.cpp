#include "reader/PinMapperReader.h"

#include "elements/Container.h"
#include "reader/CommonAttributes.h"
#include "reader/DescriptionReader.h"
#include "views/PinMapping.h"
#include "views/PinMappingDocument.h"

#include <QXmlStreamAttributes>

namespace {

void readPinMapper(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = a.value(QLatin1String("define")).toString();
    DocumentState &state = reader.state();
    if (define.isEmpty()) {
        reader.xmlMessage(QStringLiteral("pinmapper without define is not allowed: "), define, true);
        reader.xml().skipCurrentElement();
        return;
    }
    if (state.pinMapperPlaced) {
        reader.xmlMessage(QStringLiteral("Only one pinmapper per XML allowed: "), define, true);
        reader.xml().skipCurrentElement();
        return;
    }
    state.pinMapperPlaced = true;
    // Without a mapping file (or with a broken one) the mapper shows an
    // empty chip: the form's layout stays as its author drew it.
    if (!state.pinMapping) {
        state.pinMapping = std::make_shared<PinMappingDocument>();
        state.pinMapping->descriptionFolder = reader.folder();
        state.pinMapping->model = reader.model();
    }
    auto *mapper = new PinMapping(state.pinMapping, container->containerWidget());
    mapper->setObjectName(define);
    container->addWidget(mapper, a.value(QLatin1String("label")).toString(), -1);
    CommonAttributes::apply(reader, mapper, a);
    reader.xml().skipCurrentElement();
}

} // namespace

void PinMapperReader::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("pinmapper"), readPinMapper);
}
