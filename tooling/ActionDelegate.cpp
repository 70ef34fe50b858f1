#include "tooling/ActionDelegate.h"

#include "tooling/AttributeTable.h"
#include "tooling/EditActionsDialog.h"

ActionDelegate::ActionDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *ActionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    QObject *target = m_table ? m_table->target() : nullptr;
    auto *element = target;
    if (!element)
        return nullptr;
    auto *dialog = new EditActionsDialog(element, parent);
    dialog->setSlotHost(m_table->slotHost());
    auto *self = const_cast<ActionDelegate *>(this);
    connect(dialog, &QDialog::finished, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}
