#include "tooling/ActionDelegate.h"

#include "tooling/AttributeTable.h"
#include "tooling/EditActionsDialog.h"

QWidget *ActionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    QObject *element = target();
    if (!element)
        return nullptr;
    auto *dialog = new EditActionsDialog(element, parent);
    dialog->setSlotHost(table()->slotHost());
    return asEditor(dialog);
}
