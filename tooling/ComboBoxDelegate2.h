#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The size policy rows: a list of the seven policy words; the chosen word
// is applied to the widget at once.
class ComboBoxDelegate2 : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ComboBoxDelegate2(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    AttributeTable *m_table;
};
