#pragma once
#include <QStyledItemDelegate>

class AttributeTable;

// The "Font" row: a font dialog, opened beside the table without blocking
// the form; its choice goes onto the widget at once.
class FontDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit FontDelegate(AttributeTable *table, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

private:
    AttributeTable *m_table;
};
