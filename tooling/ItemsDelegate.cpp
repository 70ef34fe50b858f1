#include "tooling/ItemsDelegate.h"

#include "elements/ComboBox.h"
#include "tooling/EditItemsDialog.h"

QWidget *ItemsDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *element = qobject_cast<ComboBox *>(target());
    if (!element)
        return nullptr;
    auto *dialog = new EditItemsDialog(element, parent);
    return asEditor(dialog);
}
