#include "tooling/ItemsDelegate.h"

#include "elements/ComboBox.h"
#include "tooling/AttributeTable.h"
#include "tooling/EditItemsDialog.h"

ItemsDelegate::ItemsDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *ItemsDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    QObject *target = m_table ? m_table->target() : nullptr;
    auto *element = qobject_cast<ComboBox *>(target);
    if (!element)
        return nullptr;
    auto *dialog = new EditItemsDialog(element, parent);
    auto *self = const_cast<ItemsDelegate *>(this);
    connect(dialog, &QDialog::finished, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}
