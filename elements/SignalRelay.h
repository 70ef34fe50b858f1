#pragma once
#include <QHash>
#include <QMetaMethod>
#include <QObject>
#include <QPointer>

// Carries the signals of one element to the slots of one wide receiver,
// such as the main window, which thousands of elements talk to.
//
// QObject::sender() walks the whole list of the receiver's connections to
// make sure the sender is still connected, so a receiver with a connection
// from every element of a 10,000-element form pays for the whole form on
// every signal. The relay is a child of the element and the receiver's only
// link to it: it calls the slot directly and names the element as the
// origin of the call meanwhile, which the receiver asks for instead of
// sender().
class SignalRelay : public QObject
{
    Q_OBJECT
public:
    // Wires signal to slot (both as made by SIGNAL() and SLOT()) through the
    // relay of sender toward receiver. False when either is missing or the
    // signal's arguments are not ones a relay carries (none, or one text).
    static bool connect(QObject *sender, const char *signal, QObject *receiver, const char *slot);

    // The element whose signal a relay delivers to receiver at this moment;
    // null outside such a call.
    static QObject *origin(const QObject *receiver);

public slots:
    void forward();
    void forward(const QString &text);

private:
    SignalRelay(QObject *sender, QObject *receiver);
    static SignalRelay *relayOf(QObject *sender, QObject *receiver);
    void deliver(const QString *text);

    QPointer<QObject> m_receiver;
    // Signal index of the element -> the receiver's slots for it.
    QHash<int, QList<QMetaMethod>> m_slots;
};
