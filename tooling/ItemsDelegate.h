#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The "Items" row of a list: the items dialog, which refills the list
// itself when accepted.
// The dialog stays open beside the form; the cell keeps its hint text.
class ItemsDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ItemsDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
