#include "tooling/ColumnsDelegate.h"

#include "tooling/EditColumnsDialog.h"
#include "views/Table.h"

QWidget *ColumnsDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *element = qobject_cast<Table *>(target());
    if (!element)
        return nullptr;
    auto *dialog = new EditColumnsDialog(element, parent);
    return asEditor(dialog);
}
