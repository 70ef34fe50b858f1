#pragma once
#include <QDialog>
#include <QPointer>
#include <QStringList>

class ComboBox;
class QStandardItemModel;
class QTableView;

// "Items of the Combobox %1": one row per entry of the list's `itemText`
// (text, value, override, hide). accept() empties the list, writes the rows
// back to `itemText` and fills the list from them.
//
// An `itemText` entry is written as the reader keeps it: value "#$#" text,
// followed by "#$#" override "#$#" hide only when one of those is set.
class EditItemsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit EditItemsDialog(ComboBox *combo, QWidget *parent = nullptr);

    QStandardItemModel *model() const { return m_model; }
    QTableView *view() const { return m_view; }

    static QString separator() { return QStringLiteral("#$#"); }

public slots:
    void insertLine();
    void deleteLine();
    void accept() override;

private:
    QPointer<ComboBox> m_combo;
    QStandardItemModel *m_model;
    QTableView *m_view;
};
