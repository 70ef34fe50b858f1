#include "elements/TreeWidgetItem.h"

#include "elements/TreeWidget.h"

#include <QTreeWidget>

TreeWidgetItem::TreeWidgetItem(TreeWidget *tree, QTreeWidgetItem *parentRow, const QString &label, int index)
    : QTreeWidgetItem()
    , m_tree(tree)
{
    setText(0, label);
    QTreeWidgetItem *parent = parentRow ? parentRow : tree->tree()->invisibleRootItem();
    if (index < 0 || index > parent->childCount())
        parent->addChild(this);
    else
        parent->insertChild(index, this);
}

QWidget *TreeWidgetItem::containerWidget()
{
    return m_tree;
}

void TreeWidgetItem::addWidget(QWidget *widget, const QString &label, int index)
{
    Q_UNUSED(widget);
    Q_UNUSED(label);
    Q_UNUSED(index);
}

void TreeWidgetItem::placeChild(QWidget *child, const QString &label, int index)
{
    m_tree->addRow(this, child, label, index);
}

void TreeWidgetItem::setBranchControl(QWidget *control)
{
    m_control = control;
    setText(0, QString());
    m_tree->tree()->setItemWidget(this, 0, control);
}

void TreeWidgetItem::applyExpand(int expand)
{
    if (expand != 1)
        return;
    for (QTreeWidgetItem *row = this; row; row = row->parent())
        row->setExpanded(true);
}
