#pragma once
#include "tooling/DetailsDelegate.h"

// The "Columns" row of a table element: the columns dialog, which rewrites
// the table's columns itself when accepted.
class ColumnsDelegate : public DetailsDelegate
{
    Q_OBJECT
public:
    using DetailsDelegate::DetailsDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
