#pragma once
#include <QAbstractItemDelegate>
#include <QDialog>
#include <QItemSelection>
#include <QList>
#include <QModelIndex>

#include "config/Catalog.h"
#include "config/CatalogFilter.h"
#include "config/ParameterMap.h"

class DocumentTables;
class MySortFilterProxyModel;
class QLabel;
class QStandardItemModel;
class QTableView;
class QTableWidget;

// "Select a record from the database to fill in the values": the records of
// a catalog, narrowed by a filter table, one of which fills the form.
class SelectFromCatalogDialog : public QDialog
{
    Q_OBJECT
public:
    SelectFromCatalogDialog(const QString &catalogPath, const QList<Parameter> &parameters,
                            DocumentTables *tables = nullptr, QWidget *parent = nullptr);

    // The script's way in: the dialog on the catalog, modal. Quiet mode
    // shows nothing and counts as cancelled. True when a record was applied.
    static bool run(const QString &catalogPath, const QList<Parameter> &parameters, DocumentTables *tables,
                    QWidget *parent);

    bool acceptsRecord(int sourceRow) const;

    const Catalog &catalog() const { return m_catalog; }
    const QList<CatalogFilter::Row> &filterRows() const { return m_filter; }
    QTableWidget *filterTable() const { return m_filterTable; }
    QTableView *recordTable() const { return m_recordTable; }
    MySortFilterProxyModel *proxy() const { return m_proxy; }
    QStandardItemModel *recordModel() const { return m_records; }
    // The source row of the record chosen last; -1 before any.
    int chosenRow() const { return m_chosen; }
    bool applied() const { return m_applied; }

    // Reads the filter cells into filter rows and filters again.
    void rebuildFilter();

public slots:
    void on_doubleClicked(QModelIndex index);
    void on_selectionChanged(QItemSelection selected, QItemSelection deselected);
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint);

private:
    void buildFilterTable();
    void buildRecordTable();
    void showDetails(int sourceRow);

    QList<Parameter> m_parameters;
    Catalog m_catalog;
    DocumentTables *m_tables;
    // Parameter index of each filter row.
    QList<int> m_filterParameters;
    QList<CatalogFilter::Row> m_filter;
    QTableWidget *m_filterTable;
    QTableView *m_recordTable;
    QStandardItemModel *m_records;
    MySortFilterProxyModel *m_proxy;
    QLabel *m_details;
    int m_chosen = -1;
    bool m_applied = false;
};
