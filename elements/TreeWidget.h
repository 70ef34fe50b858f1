#pragma once
#include <QHash>
#include <QWidget>

#include "elements/Container.h"

class QTreeWidget;
class QTreeWidgetItem;
class TreeWidgetItem;

// A list of controls with labels at the left, in rows and branches: column 0
// shows an element's label, column 1 holds its widget.
class TreeWidget : public QWidget, public Container
{
    Q_OBJECT
public:
    explicit TreeWidget(QWidget *parent = nullptr);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return QObject::objectName(); }
    QWidget *containerWidget() override { return this; }

    QTreeWidget *tree() const { return m_tree; }

    void setHeaderLabels(const QString &labels);
    // "n;m": widths in pixels; false when the text is not of that form.
    bool setColumnWidths(const QString &widths);

    // A new branch row under parentRow (null: at the top).
    TreeWidgetItem *addBranch(QTreeWidgetItem *parentRow, const QString &label, int index, const QString &name);
    // A row for a control under parentRow (null: at the top).
    QTreeWidgetItem *addRow(QTreeWidgetItem *parentRow, QWidget *child, const QString &label, int index);

    // The branch a control switches.
    TreeWidgetItem *branchOfControl(QWidget *control) const { return m_branchByControl.value(control); }
    void registerBranchControl(TreeWidgetItem *branch, QWidget *control);

    // The row that holds a widget, or null.
    QTreeWidgetItem *rowOf(QWidget *widget) const { return m_rowByWidget.value(widget); }

    // Puts every branch in the state of its control. Values set with
    // signals blocked (a loaded configuration) and a reset, which enables
    // every element, leave the rows out of step with their switches.
    void applyBranchSwitches();

signals:
    void selected_setDef(const QString &data);

public slots:
    void childSetDef(int iPageNr);
    // Enables or disables the rows under the branch of the sending control.
    void disableBranch(bool checked);

protected:
    QWidget *childParent() override { return nullptr; }
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    void setBranchEnabled(QTreeWidgetItem *row, bool enabled);
    void applyBranchSwitches(QTreeWidgetItem *row);
    void setWidgetEnabled(QWidget *widget, bool enabled);

    QTreeWidget *m_tree = nullptr;
    QHash<QWidget *, TreeWidgetItem *> m_branchByControl;
    QHash<QWidget *, QTreeWidgetItem *> m_rowByWidget;
};
