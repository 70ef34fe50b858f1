#include "reader/ActionReader.h"

#include "elements/SlotWiring.h"
#include "reader/DescriptionReader.h"

#include <QObject>
#include <QVariantMap>
#include <QXmlStreamAttributes>

namespace {

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

QStringList words(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *w : list)
        result.append(QLatin1String(w));
    return result;
}

// Several actions (or an action and the `setDef` attribute) share one
// signal; a second connection would run every one of them twice.
void connectOnce(QObject *sender, const char *signal, QObject *host, const char *slot)
{
    if (SlotWiring::hasSignal(sender, signal) && SlotWiring::hasSlot(host, slot))
        QObject::connect(sender, signal, host, slot, Qt::UniqueConnection);
}

} // namespace

const QStringList &ActionReader::eventNames()
{
    static const QStringList names = words(
        {"checked", "unchecked", "selected", "unselected", "changed", "clicked", "pressed", "released"});
    return names;
}

const QStringList &ActionReader::commandNames()
{
    static const QStringList names = words({"sendUSB", "setDef", "resetGUI", "loadFile", "startProgram", "runScript"});
    return names;
}

ActionReader::Events ActionReader::comboBoxEvents()
{
    return {words({"selected", "unselected"}), QStringLiteral("ComboBox")};
}

ActionReader::Events ActionReader::radioEvents()
{
    return {words({"selected", "unselected"}), QStringLiteral("Radio")};
}

ActionReader::Events ActionReader::checkBoxEvents()
{
    return {words({"checked", "unchecked"}), QStringLiteral("CheckBox")};
}

ActionReader::Events ActionReader::toggleButtonEvents()
{
    return {words({"checked", "unchecked"}), QStringLiteral("ToggleButton")};
}

ActionReader::Events ActionReader::spinBoxEvents()
{
    return {words({"changed"}), QStringLiteral("SpinBox")};
}

ActionReader::Events ActionReader::knobEvents()
{
    return {words({"changed"}), QStringLiteral("Knob")};
}

ActionReader::Events ActionReader::doubleSpinBoxEvents()
{
    return {words({"changed"}), QStringLiteral("DoubleSpinBox")};
}

ActionReader::Events ActionReader::pushButtonEvents()
{
    return {words({"clicked", "pressed", "released"}), QStringLiteral("Button")};
}

ActionReader::Events ActionReader::mathEvents()
{
    return {words({"changed"}), QStringLiteral("Math")};
}

ActionReader::Events ActionReader::timerEvents()
{
    return {words({"changed"}), QStringLiteral("Timer")};
}

bool ActionReader::isSendUsbName(const QString &name)
{
    static const QStringList names = words({"clicked_sendUSB", "changed_sendUSB", "checked_sendUSB",
                                            "unchecked_sendUSB", "selected_sendUSB", "unselected_sendUSB",
                                            "pressed_sendUSB", "released_sendUSB"});
    return names.contains(name);
}

void ActionReader::readActions(DescriptionReader &reader, QObject *element, const Events &events, const QString &key,
                               const QString &define)
{
    QXmlStreamReader &xml = reader.xml();
    while (!xml.hasError() && xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("action"))
            readAction(reader, element, xml.attributes(), events, key, define);
        xml.skipCurrentElement();
    }
}

bool ActionReader::readAction(DescriptionReader &reader, QObject *element, const QXmlStreamAttributes &a,
                              const Events &events, const QString &key, const QString &define)
{
    const QString name = define.isEmpty() ? element->objectName() : define;
    const QString event = attribute(a, "event");
    if (!eventNames().contains(event)) {
        reader.xmlMessage(QStringLiteral("Unknown event \"%1\"in action: ").arg(event), name, true);
        return false;
    }
    if (!events.allowed.isEmpty() && !events.allowed.contains(event)) {
        reader.xmlMessage(QStringLiteral("Can't use event \"%1\" in UI element \"%2\"").arg(event, events.classWord),
                          name, true);
        return false;
    }
    QString command = attribute(a, "cmd");
    if (command == QLatin1String("setdef"))
        command = QStringLiteral("setDef");
    if (!commandNames().contains(command)) {
        reader.xmlMessage(QStringLiteral("Unknown command \"%1\"in action: ").arg(command), name, true);
        return false;
    }

    const QString signalName = event + QLatin1Char('_') + command;
    connectAction(reader, element, signalName, command);

    QStringList entry = {signalName, attribute(a, "cond"), attribute(a, "data")};
    if (isSendUsbName(signalName)) {
        entry << attribute(a, "recdata") << attribute(a, "delay");
        reader.state().usesStick = true;
    }
    appendEntry(element, key, entry);
    return true;
}

void ActionReader::appendEntry(QObject *element, const QString &key, const QStringList &entry)
{
    QVariantMap data = element->property("data").toMap();
    data.insert(key, data.value(key).toStringList() + entry);
    element->setProperty("data", data);
}

void ActionReader::connectAction(QObject *sender, const QString &signalName, QObject *host, const QString &slotName)
{
    if (!sender || !host || slotName.isEmpty())
        return;
    const QByteArray signal = "2" + signalName.toLatin1() + "(QString)";
    const QByteArray slot = "1" + slotName.toLatin1() + "(QString)";
    connectOnce(sender, signal.constData(), host, slot.constData());

    static const QStringList withReply = words(
        {"clicked_sendUSB", "changed_sendUSB", "checked_sendUSB", "unchecked_sendUSB", "selected_sendUSB"});
    if (withReply.contains(signalName)) {
        QString reply = signalName;
        reply.replace(QLatin1String("_sendUSB"), QLatin1String("_recData"));
        const QByteArray replySignal = "2" + reply.toLatin1() + "(QString)";
        connectOnce(sender, replySignal.constData(), host, SLOT(recData(QString)));
    }
}

void ActionReader::connectAction(DescriptionReader &reader, QObject *sender, const QString &signalName,
                                 const QString &slotName)
{
    connectAction(sender, signalName, reader.options().slotHost, slotName);
}
