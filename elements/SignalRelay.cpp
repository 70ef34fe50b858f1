#include "elements/SignalRelay.h"

#include <QByteArray>
#include <QMetaObject>
#include <QPointer>

namespace {

// The call being delivered now. Relays nest (a slot's work makes other
// elements signal), so each delivery keeps the one it interrupted.
struct Delivery
{
    const QObject *receiver = nullptr;
    QObject *origin = nullptr;
};
Delivery current;

} // namespace

SignalRelay::SignalRelay(QObject *sender, QObject *receiver)
    : QObject(sender)
    , m_receiver(receiver)
{
}

SignalRelay *SignalRelay::relayOf(QObject *sender, QObject *receiver)
{
    for (QObject *child : sender->children()) {
        auto *relay = qobject_cast<SignalRelay *>(child);
        if (relay && relay->m_receiver == receiver)
            return relay;
    }
    return new SignalRelay(sender, receiver);
}

bool SignalRelay::connect(QObject *sender, const char *signal, QObject *receiver, const char *slot)
{
    if (!sender || !receiver || !signal || !slot || !*signal || !*slot)
        return false;
    const QByteArray signalSig = QMetaObject::normalizedSignature(signal + 1);
    const QByteArray slotSig = QMetaObject::normalizedSignature(slot + 1);
    const int signalIndex = sender->metaObject()->indexOfSignal(signalSig.constData());
    const int slotIndex = receiver->metaObject()->indexOfSlot(slotSig.constData());
    if (signalIndex < 0 || slotIndex < 0)
        return false;
    const QMetaMethod signalMethod = sender->metaObject()->method(signalIndex);
    const QMetaMethod slotMethod = receiver->metaObject()->method(slotIndex);
    const bool withText = signalMethod.parameterCount() == 1 && signalMethod.parameterType(0) == QMetaType::QString;
    if (signalMethod.parameterCount() > 1 || (signalMethod.parameterCount() == 1 && !withText))
        return false;
    if (!QMetaObject::checkConnectArgs(signalMethod, slotMethod))
        return false;

    SignalRelay *relay = relayOf(sender, receiver);
    QList<QMetaMethod> &targets = relay->m_slots[signalIndex];
    if (targets.isEmpty()) {
        const char *forward = withText ? SLOT(forward(QString)) : SLOT(forward());
        if (!QObject::connect(sender, signal, relay, forward))
            return false;
    }
    targets.append(slotMethod);
    return true;
}

QObject *SignalRelay::origin(const QObject *receiver)
{
    return current.receiver == receiver ? current.origin : nullptr;
}

void SignalRelay::forward()
{
    deliver(nullptr);
}

void SignalRelay::forward(const QString &text)
{
    deliver(&text);
}

void SignalRelay::deliver(const QString *text)
{
    // The relay has one sender, so asking for the signal is cheap here.
    const int index = senderSignalIndex();
    const QList<QMetaMethod> targets = m_slots.value(index);
    QObject *element = parent();
    // A slot may close the document and with it the element and this relay.
    const QPointer<SignalRelay> alive(this);
    for (const QMetaMethod &slot : targets) {
        if (!alive || !m_receiver)
            return;
        const Delivery interrupted = current;
        current = {m_receiver.data(), element};
        if (text && slot.parameterCount() > 0)
            slot.invoke(m_receiver.data(), Qt::DirectConnection, Q_ARG(QString, *text));
        else
            slot.invoke(m_receiver.data(), Qt::DirectConnection);
        current = interrupted;
    }
}
