#pragma once
#include <QSortFilterProxyModel>

class SelectFromCatalogDialog;

// Sits between the catalog's records and their table: a record shows when
// every filter row of its dialog lets it pass.
class MySortFilterProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit MySortFilterProxyModel(SelectFromCatalogDialog *dialog, QObject *parent = nullptr);

    // The filter changed: rows are tested again.
    void refilter() { invalidateFilter(); }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    SelectFromCatalogDialog *m_dialog;
};
