#pragma once
#include <QString>
#include <QStringList>

class DescriptionReader;
class QObject;
class QXmlStreamAttributes;

// The `action` children of an element and their wiring. Each action
// becomes an entry of the element's `data` property (a map from condition
// key to a flat list: name, cond, data, and for sendUSB also recdata and
// delay) and a connection of the element's `<event>_<cmd>(QString)` signal
// to the main window's slot of that command. The element emits the signal
// at run time (ActionRunner); the reader only records and wires.
//
// Usable by every element that has action signals: value elements, push
// buttons (clicked, pressed, released), math and timer labels (changed).
class ActionReader
{
public:
    // The eight event words and six command words a description may use.
    static const QStringList &eventNames();
    static const QStringList &commandNames();

    // Events an element class accepts, and the word its messages name it by
    // ("ComboBox", "Radio", "Button", ...). An empty event list accepts
    // every known event.
    struct Events
    {
        QStringList allowed;
        QString classWord;
    };
    static Events comboBoxEvents();
    static Events radioEvents();
    static Events checkBoxEvents();
    static Events toggleButtonEvents();
    static Events spinBoxEvents();
    static Events knobEvents();
    static Events doubleSpinBoxEvents();
    static Events pushButtonEvents();
    static Events mathEvents();
    static Events timerEvents();

    // Reads the children of the element at the stream position up to its
    // end tag: each `action` is taken, anything else skipped. Entries go
    // under `key` ("0" for all but list items and radio buttons). `define`
    // names the element in messages (the element's object name when empty).
    static void readActions(DescriptionReader &reader, QObject *element, const Events &events,
                            const QString &key = QStringLiteral("0"), const QString &define = QString());

    // Takes one `action` element's attributes (the stream is left where it
    // is). Reports and returns false for an unknown event, an event the
    // element can't raise, or an unknown command.
    static bool readAction(DescriptionReader &reader, QObject *element, const QXmlStreamAttributes &attributes,
                           const Events &events, const QString &key, const QString &define = QString());

    // Appends one entry under key to the element's `data` property.
    static void appendEntry(QObject *element, const QString &key, const QStringList &entry);

    // Connects sender's `signalName(QString)` to host's `slotName(QString)`.
    // An empty slot name connects nothing. For the sendUSB signals the
    // matching `<event>_recData` goes to recData(QString) as well. Missing
    // signals or slots are left out silently. A signal is connected to a
    // slot at most once, however many actions share it.
    static void connectAction(QObject *sender, const QString &signalName, QObject *host, const QString &slotName);
    static void connectAction(DescriptionReader &reader, QObject *sender, const QString &signalName,
                              const QString &slotName);

    // Whether an entry name is one of the sendUSB forms (five-value entry).
    static bool isSendUsbName(const QString &name);
};
