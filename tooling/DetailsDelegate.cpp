#include "tooling/DetailsDelegate.h"

#include "tooling/AttributeTable.h"

#include <QDialog>

DetailsDelegate::DetailsDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QObject *DetailsDelegate::target() const
{
    return m_table ? m_table->target() : nullptr;
}

QWidget *DetailsDelegate::asEditor(QDialog *dialog) const
{
    auto *self = const_cast<DetailsDelegate *>(this);
    connect(dialog, &QDialog::finished, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}
