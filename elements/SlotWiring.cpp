#include "elements/SlotWiring.h"
#include "elements/SignalRelay.h"

#include <QByteArray>
#include <QMetaObject>
#include <QObject>

bool SlotWiring::hasSlot(const QObject *receiver, const char *slot)
{
    if (!receiver || !slot || !*slot)
        return false;
    const QByteArray sig = QMetaObject::normalizedSignature(slot + 1);
    return receiver->metaObject()->indexOfSlot(sig.constData()) >= 0;
}

bool SlotWiring::hasSignal(const QObject *sender, const char *signal)
{
    if (!sender || !signal || !*signal)
        return false;
    const QByteArray sig = QMetaObject::normalizedSignature(signal + 1);
    return sender->metaObject()->indexOfSignal(sig.constData()) >= 0;
}

bool SlotWiring::connectIfPresent(QObject *sender, const char *signal, QObject *receiver, const char *slot)
{
    if (!hasSignal(sender, signal) || !hasSlot(receiver, slot))
        return false;
    // Through a relay where the signal allows it, so that the receiver
    // learns the sender without QObject::sender() (see SignalRelay).
    if (SignalRelay::connect(sender, signal, receiver, slot))
        return true;
    return QObject::connect(sender, signal, receiver, slot);
}
