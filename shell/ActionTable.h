#pragma once
#include <QHash>
#include <QString>

class QAction;
class QMenu;
class QObject;

// Builds menu actions from rows of text, status tip and slot name. An
// action is wired to the receiver's slot of that name; while the receiver
// has no such slot, the action is shown disabled.
class ActionTable
{
public:
    struct Row
    {
        const char *text;    // null: a separator
        const char *tip;
        const char *slot;    // slot name without arguments, e.g. "newProject"
        bool shown;
    };

    ActionTable(QObject *receiver) : m_receiver(receiver) {}

    void fill(QMenu *menu, const Row *rows, int count);

    // The action of a slot name, or null.
    QAction *action(const QString &slot) const { return m_actions.value(slot); }
    // Enables the action unless its slot is missing.
    void setEnabled(const QString &slot, bool enabled);

private:
    QObject *m_receiver;
    QHash<QString, QAction *> m_actions;
};
