#pragma once
#include "tooling/DetailsDelegate.h"

// The "Curves" row of a plot: the curves dialog, which rewrites the plot's
// curves itself when accepted.
class CurvesDelegate : public DetailsDelegate
{
    Q_OBJECT
public:
    using DetailsDelegate::DetailsDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
