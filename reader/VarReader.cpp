#include "reader/VarReader.h"

#include "device/CLog.h"
#include "device/ELFReader.h"
#include "automation/PythonBridge.h"

#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/SlotWiring.h"
#include "reader/DescriptionReader.h"

#include <QXmlStreamAttributes>

namespace {

// The largest variable bound to target memory, in bytes.
constexpr quint64 kLargestVariable = 0x10000;

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

    // The attributes in their fixed order: `symbol` comes after `size` and
    // replaces it, `interval` comes after `symbol`.
    bool hasAddress = has("address");
    quint64 address = has("address") ? unsignedNumber(text("address")) : quint64(quint32(-1));
    const qint32 index = has("index") ? qint32(normaliseNumber(text("index")).toLongLong()) : -1;
    const quint8 channel = has("channel") ? quint8(unsignedNumber(text("channel"))) : 255;
    quint64 size = has("size") ? unsignedNumber(text("size")) : 0;
    if (has("symbol")) {
        const QString symbol = text("symbol");
        unsigned long symbolAddress = 0;
        unsigned long symbolSize = 0;
        const int code = reader.elfReader().GetAddress(symbol.toLocal8Bit().constData(), &symbolAddress, &symbolSize);
        if (code != 0) {
            reader.xmlMessage(QStringLiteral("Cannot find ELF symbol \"%1\". Error: %2")
                                  .arg(symbol, CLog::ErrorCodeToString(code)),
                              define, true);
        } else {
            address = symbolAddress;
            size = symbolSize;
            hasAddress = true;
        }
    }
    // A variable larger than any buffer the program keeps is cut, so that a
    // wrong size can neither allocate without bound nor overrun the buffer.
    size = qMin<quint64>(size, kLargestVariable);
    if (size > 0)
        data->setSize(int(size));
    if (text("datatype").compare(QLatin1String("float"), Qt::CaseInsensitive) == 0)
        data->datatype = DataClass::Float;
    data->readOnAccess = has("readonaccess");

    // A record in target memory exists only when something locates it.
    const bool located = (hasAddress && size != 0) || !text("svdsymbol").isEmpty() || has("index")
        || has("channel");
    if (located) {
        auto *target = new TargetVariable;
        target->svdSymbol = text("svdsymbol");
        target->address = quint32(address);
        target->ownAddress = hasAddress;
        target->index = index;
        target->channel = channel;
        target->size = quint32(size);
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
    reader.noteElement(data);
    // A value without a widget still feeds formulas and displays.
    QObject *host = reader.options().slotHost;
    SlotWiring::connectIfPresent(data, SIGNAL(updateMathLabels()), host, SLOT(on_updateMathLabel()));
    SlotWiring::connectIfPresent(data, SIGNAL(updateLEDs()), host, SLOT(on_updateLED()));
    for (const char *slot : {SLOT(on_updateCurve()), SLOT(on_updateDial()), SLOT(on_updateThermo())})
        SlotWiring::connectIfPresent(data, SIGNAL(updateLEDs()), host, slot);
    reader.xml().skipCurrentElement();
}

} // namespace

void VarReader::install(DescriptionReader &reader)
{
    reader.registerHandler(QStringLiteral("var"), &readVar);
}
