#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The "Curves" row of a plot: the curves dialog, which rewrites the plot's
// curves itself when accepted.
// The dialog stays open beside the form; the cell keeps its hint text.
class CurvesDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit CurvesDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
