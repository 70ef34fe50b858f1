#pragma once
#include <QTreeWidgetItem>

#include "elements/Container.h"

class TreeWidget;

// A branch row of a tree: elements created on it become rows under it.
class TreeWidgetItem : public QTreeWidgetItem, public Container
{
public:
    // A branch under another row, or at the top of the tree.
    TreeWidgetItem(TreeWidget *tree, QTreeWidgetItem *parentRow, const QString &label, int index);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return m_name; }
    void setObjectName(const QString &name) { m_name = name; }
    QWidget *containerWidget() override;

    // The control that switches this branch (uielement="branch"), or null.
    QWidget *branchControl() const { return m_control; }
    void setBranchControl(QWidget *control);

    TreeWidget *tree() const { return m_tree; }

    // Opens the row when `expand` is 1, together with its parents.
    void applyExpand(int expand);

protected:
    QWidget *childParent() override { return nullptr; }
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    TreeWidget *m_tree;
    QString m_name;
    QWidget *m_control = nullptr;
};
