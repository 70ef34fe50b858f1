#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The "Columns" row of a table element: the columns dialog, which rewrites
// the table's columns itself when accepted.
// The dialog stays open beside the form; the cell keeps its hint text.
class ColumnsDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ColumnsDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
