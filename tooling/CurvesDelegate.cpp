#include "tooling/CurvesDelegate.h"

#include "tooling/EditCurvesDialog.h"
#include "views/MyQwtPlot.h"

QWidget *CurvesDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *element = qobject_cast<MyQwtPlot *>(target());
    if (!element)
        return nullptr;
    auto *dialog = new EditCurvesDialog(element, parent);
    return asEditor(dialog);
}
