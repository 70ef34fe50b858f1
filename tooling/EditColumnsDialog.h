#pragma once
#include <QDialog>
#include <QPointer>
#include <QStringList>

class Table;
class QStandardItemModel;
class QTableView;

// "Columns within the table element": one row per column of a table element
// (label, type, tooltip, width, format, default, source). accept() rewrites
// the table's columns and rebuilds its model, which empties its rows.
class EditColumnsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit EditColumnsDialog(Table *table, QWidget *parent = nullptr);

    QStandardItemModel *model() const { return m_model; }
    QTableView *view() const { return m_view; }
    // The column type words a description uses.
    static QStringList typeWords();

public slots:
    void insertLine();
    void deleteLine();
    void accept() override;

private:
    QPointer<Table> m_table;
    QStandardItemModel *m_model;
    QTableView *m_view;
};
