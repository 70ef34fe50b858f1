#include "tooling/CurvesDelegate.h"

#include "views/MyQwtPlot.h"
#include "tooling/AttributeTable.h"
#include "tooling/EditCurvesDialog.h"

CurvesDelegate::CurvesDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *CurvesDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    QObject *target = m_table ? m_table->target() : nullptr;
    auto *element = qobject_cast<MyQwtPlot *>(target);
    if (!element)
        return nullptr;
    auto *dialog = new EditCurvesDialog(element, parent);
    auto *self = const_cast<CurvesDelegate *>(this);
    connect(dialog, &QDialog::finished, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}
