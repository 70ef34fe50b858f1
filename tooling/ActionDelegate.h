#pragma once
#include "tooling/DetailsDelegate.h"

// The "action" row: the actions dialog of the element; it writes the
// element's `data` map itself when accepted.
class ActionDelegate : public DetailsDelegate
{
    Q_OBJECT
public:
    using DetailsDelegate::DetailsDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
