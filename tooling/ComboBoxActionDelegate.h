#pragma once
#include <QStringList>
#include <QStyledItemDelegate>

// A cell chosen from a fixed list (the event, command and column type
// cells of the editor's dialogs). Only the cell changes; the dialog applies
// its rows when it is accepted.
class ComboBoxActionDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit ComboBoxActionDelegate(QObject *parent = nullptr);

    void setItems(const QStringList &items) { m_items = items; }
    QStringList items() const { return m_items; }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    QStringList m_items;
};
