#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The "action" row: the actions dialog of the element; it writes the
// element's `data` map itself when accepted.
// The dialog stays open beside the form; the cell keeps its hint text.
class ActionDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ActionDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
