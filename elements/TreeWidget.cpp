#include "elements/TreeWidget.h"

#include "elements/ActiveElement.h"
#include "elements/ElementCommon.h"
#include "elements/TabWidget.h"
#include "elements/TreeWidgetItem.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

TreeWidget::TreeWidget(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    m_tree = new QTreeWidget(this);
    m_tree->setColumnCount(2);
    m_tree->setHeaderHidden(true);
    m_tree->setColumnWidth(0, 260);
    m_tree->setColumnWidth(1, 220);
    layout->addWidget(m_tree);
}

void TreeWidget::setHeaderLabels(const QString &labels)
{
    if (labels.isEmpty())
        return;
    m_tree->setHeaderLabels(labels.split(QLatin1Char(';')));
    m_tree->setHeaderHidden(false);
}

bool TreeWidget::setColumnWidths(const QString &widths)
{
    const QStringList parts = widths.split(QLatin1Char(';'));
    QList<int> values;
    for (const QString &part : parts) {
        bool ok = false;
        const int w = part.trimmed().toInt(&ok);
        if (!ok || w < 0)
            return false;
        values.append(w);
    }
    for (int i = 0; i < values.size(); ++i)
        m_tree->setColumnWidth(i, values.at(i));
    return true;
}

void TreeWidget::addWidget(QWidget *widget, const QString &label, int index)
{
    Q_UNUSED(widget);
    Q_UNUSED(label);
    Q_UNUSED(index);
}

void TreeWidget::placeChild(QWidget *child, const QString &label, int index)
{
    addRow(nullptr, child, label, index);
}

QTreeWidgetItem *TreeWidget::addRow(QTreeWidgetItem *parentRow, QWidget *child, const QString &label, int index)
{
    QTreeWidgetItem *parent = parentRow ? parentRow : m_tree->invisibleRootItem();
    auto *row = new QTreeWidgetItem;
    row->setText(0, label);
    if (index < 0 || index > parent->childCount())
        parent->addChild(row);
    else
        parent->insertChild(index, row);
    m_tree->setItemWidget(row, 1, child);
    m_rowByWidget.insert(child, row);
    return row;
}

TreeWidgetItem *TreeWidget::addBranch(QTreeWidgetItem *parentRow, const QString &label, int index, const QString &name)
{
    auto *branch = new TreeWidgetItem(this, parentRow, label, index);
    branch->setObjectName(name);
    return branch;
}

void TreeWidget::registerBranchControl(TreeWidgetItem *branch, QWidget *control)
{
    branch->setBranchControl(control);
    m_branchByControl.insert(control, branch);
    m_rowByWidget.insert(control, branch);
}

void TreeWidget::childSetDef(int iPageNr)
{
    for (const QString &setDef : TabWidget::pageSetDefs(this, iPageNr))
        emit selected_setDef(setDef);
}

void TreeWidget::disableBranch(bool checked)
{
    auto *control = qobject_cast<QWidget *>(sender());
    TreeWidgetItem *branch = m_branchByControl.value(control);
    if (!branch)
        return;
    // The control's visible state decides, not its value: an inverted check
    // box that shows a tick still opens its branch.
    setBranchEnabled(branch, checked);
}

void TreeWidget::applyBranchSwitches()
{
    applyBranchSwitches(m_tree->invisibleRootItem());
}

void TreeWidget::applyBranchSwitches(QTreeWidgetItem *row)
{
    // Outermost switches first: setBranchEnabled takes care of the branches
    // nested in a switched branch.
    for (int i = 0; i < row->childCount(); ++i) {
        QTreeWidgetItem *child = row->child(i);
        auto *branch = dynamic_cast<TreeWidgetItem *>(child);
        const auto *button = branch ? qobject_cast<QAbstractButton *>(branch->branchControl()) : nullptr;
        if (button)
            setBranchEnabled(branch, button->isChecked());
        else
            applyBranchSwitches(child);
    }
}

void TreeWidget::setWidgetEnabled(QWidget *widget, bool enabled)
{
    ActiveElement *element = asActiveElement(widget);
    const auto *button = qobject_cast<QAbstractButton *>(widget);
    if (!element && button && button->group()) {
        // A radio button: its group is the element.
        element = asActiveElement(button->group());
        if (!element) {
            for (QAbstractButton *b : button->group()->buttons())
                b->setEnabled(enabled);
            return;
        }
    }
    if (!element) {
        widget->setEnabled(enabled);
        return;
    }
    // An element switched off as a whole lets go of its locks; switched on,
    // it announces those of its value again (the engine ignores a lock the
    // element already holds).
    if (!enabled)
        ElementCommon::releaseLocks(element);
    element->setElementEnabled(enabled);
    if (enabled)
        element->emitLocks();
}

void TreeWidget::setBranchEnabled(QTreeWidgetItem *row, bool enabled)
{
    for (int i = 0; i < row->childCount(); ++i) {
        QTreeWidgetItem *child = row->child(i);
        auto *subBranch = dynamic_cast<TreeWidgetItem *>(child);
        if (subBranch && subBranch->branchControl()) {
            // A nested switch keeps its own say over its rows.
            QWidget *control = subBranch->branchControl();
            setWidgetEnabled(control, enabled);
            const auto *button = qobject_cast<QAbstractButton *>(control);
            setBranchEnabled(subBranch, enabled && (!button || button->isChecked()));
            continue;
        }
        QWidget *widget = m_tree->itemWidget(child, 1);
        if (!widget) {
            setBranchEnabled(child, enabled);
            continue;
        }
        if (Container *container = asContainer(widget)) {
            widget->setEnabled(enabled);
            Q_UNUSED(container);
            continue;
        }
        setWidgetEnabled(widget, enabled);
    }
}
