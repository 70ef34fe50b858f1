#pragma once
#include "tooling/DetailsDelegate.h"

// The "Items" row of a list: the items dialog, which refills the list
// itself when accepted.
class ItemsDelegate : public DetailsDelegate
{
    Q_OBJECT
public:
    using DetailsDelegate::DetailsDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
