#include "reader/VarReader.h"

#include "automation/PythonBridge.h"

#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/SlotWiring.h"
#include "reader/DescriptionReader.h"

#include <QXmlStreamAttributes>

namespace {

quint64 unsignedNumber(const QString &text)
{
    return normaliseNumber(text).toULongLong();
}

void readVar(DescriptionReader &reader, Container *)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    auto has = [&a](const char *n) { return a.hasAttribute(QLatin1String(n)); };
    auto text = [&a](const char *n) { return a.value(QLatin1String(n)).toString(); };

    const QString define = text("define");
    if (define.isEmpty()) {
        reader.xmlMessage(QStringLiteral("Var without define is not allowed: "), reader.xml().name().toString(), true);
        reader.xml().skipCurrentElement();
        return;
    }
    reader.checkDuplicateDefine(define, DescriptionReader::VarDefine);

    auto *data = new DataClass(define);
    PythonBridge::expose(define, data);
    data->setProperty("my_default", text("default"));
    if (text("datatype").compare(QLatin1String("float"), Qt::CaseInsensitive) == 0)
        data->datatype = DataClass::Float;
    data->readOnAccess = has("readonaccess");

    const quint64 size = has("size") ? unsignedNumber(text("size")) : 0;
    if (size > 0 && size <= 0x10000)
        data->setSize(int(size));

    // A record in target memory exists only when something locates it.
    const bool located = (has("address") && size != 0) || !text("svdsymbol").isEmpty() || has("index")
        || has("channel");
    if (located) {
        auto *target = new TargetVariable;
        target->svdSymbol = text("svdsymbol");
        target->address = has("address") ? quint32(unsignedNumber(text("address"))) : quint32(-1);
        target->index = has("index") ? int(normaliseNumber(text("index")).toLongLong()) : -1;
        target->channel = has("channel") ? quint8(unsignedNumber(text("channel"))) : 255;
        target->size = quint32(qMin<quint64>(size, 0x10000));
        target->interval = quint32(unsignedNumber(text("interval")));
        target->readOnly = unsignedNumber(text("readonly")) != 0;
        target->forceSet = unsignedNumber(text("forceset")) != 0;
        target->valid = target->interval == 0;
        data->setTarget(target);
    }
    if (!text("trigger").isEmpty()) {
        data->triggered = true;
        data->nextDefine = text("trigger");
    }
    reader.tables().addDataValue(data);
    // A value without a widget still feeds formulas and displays.
    QObject *host = reader.options().slotHost;
    SlotWiring::connectIfPresent(data, SIGNAL(updateMathLabels()), host, SLOT(on_updateMathLabel()));
    SlotWiring::connectIfPresent(data, SIGNAL(updateLEDs()), host, SLOT(on_updateLED()));
    reader.xml().skipCurrentElement();
}

} // namespace

void VarReader::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("var"), &readVar);
}
