#include "shell/ActionTable.h"

#include "elements/SlotWiring.h"

#include <QAction>
#include <QMenu>

void ActionTable::fill(QMenu *menu, const Row *rows, int count)
{
    for (int i = 0; i < count; ++i) {
        const Row &row = rows[i];
        if (!row.shown)
            continue;
        if (!row.text) {
            menu->addSeparator();
            continue;
        }
        auto *action = new QAction(QObject::tr(row.text), menu);
        action->setStatusTip(QObject::tr(row.tip));
        action->setObjectName(QLatin1String(row.slot));
        const QByteArray slot = QByteArray("1") + row.slot + "()";
        if (SlotWiring::hasSlot(m_receiver, slot.constData()))
            QObject::connect(action, SIGNAL(triggered()), m_receiver, slot.constData());
        else
            action->setEnabled(false);
        menu->addAction(action);
        m_actions.insert(QLatin1String(row.slot), action);
    }
}

void ActionTable::setEnabled(const QString &slot, bool enabled)
{
    QAction *action = m_actions.value(slot);
    if (!action)
        return;
    const QByteArray sig = QByteArray("1") + slot.toLatin1() + "()";
    action->setEnabled(enabled && SlotWiring::hasSlot(m_receiver, sig.constData()));
}
