#include "views/MySortFilterProxyModel.h"

#include "views/SelectFromCatalogDialog.h"

MySortFilterProxyModel::MySortFilterProxyModel(SelectFromCatalogDialog *dialog, QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_dialog(dialog)
{
}

bool MySortFilterProxyModel::filterAcceptsRow(int sourceRow, const QModelIndex &) const
{
    return !m_dialog || m_dialog->acceptsRecord(sourceRow);
}
