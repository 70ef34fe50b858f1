#include "tooling/ColumnsDelegate.h"

#include "views/Table.h"
#include "tooling/AttributeTable.h"
#include "tooling/EditColumnsDialog.h"

ColumnsDelegate::ColumnsDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *ColumnsDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    QObject *target = m_table ? m_table->target() : nullptr;
    auto *element = qobject_cast<Table *>(target);
    if (!element)
        return nullptr;
    auto *dialog = new EditColumnsDialog(element, parent);
    auto *self = const_cast<ColumnsDelegate *>(this);
    connect(dialog, &QDialog::finished, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}
