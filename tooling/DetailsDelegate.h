#pragma once
#include <QStyledItemDelegate>

class AttributeTable;
class QDialog;

// A row whose value is a list edited in a dialog of its own ("<Doubleclick
// for details>"): the dialog is the editor. It stays open beside the form,
// writes the element itself when accepted, and the cell keeps its hint
// text, so there is no editor data to set or take.
class DetailsDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit DetailsDelegate(AttributeTable *table, QObject *parent = nullptr);

    void setEditorData(QWidget *, const QModelIndex &) const override {}
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
    void updateEditorGeometry(QWidget *, const QStyleOptionViewItem &, const QModelIndex &) const override {}

protected:
    // The object whose row is edited, or null.
    QObject *target() const;
    AttributeTable *table() const { return m_table; }
    // Hands the dialog over as the editor: closing it ends the edit.
    QWidget *asEditor(QDialog *dialog) const;

private:
    AttributeTable *m_table;
};
