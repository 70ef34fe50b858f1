#include "views/SelectFromCatalogDialog.h"

#include "config/CatalogRecordApplier.h"
#include "elements/MessageSink.h"
#include "shell/Dialogs.h"
#include "views/MySortFilterProxyModel.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QColor kBadCell(255, 200, 200);
}

SelectFromCatalogDialog::SelectFromCatalogDialog(const QString &catalogPath, const QList<Parameter> &parameters,
                                                 DocumentTables *tables, QWidget *parent)
    : QDialog(parent)
    , m_parameters(parameters)
    , m_tables(tables)
    , m_filterTable(new QTableWidget(this))
    , m_recordTable(new QTableView(this))
    , m_records(new QStandardItemModel(this))
    , m_proxy(new MySortFilterProxyModel(this, this))
    , m_details(new QLabel(this))
{
    setWindowTitle(tr("Select a record from the database to fill in the values"));
    setObjectName(QStringLiteral("SelectFromCatalogDialog"));
    // A failure to open is reported there; the dialog stays empty.
    m_catalog.readFile(catalogPath);

    auto *layout = new QVBoxLayout(this);
    auto *filterBox = new QGroupBox(tr("Filter"), this);
    auto *filterLayout = new QVBoxLayout(filterBox);
    filterLayout->addWidget(m_filterTable);
    layout->addWidget(filterBox);
    auto *databaseBox = new QGroupBox(tr("Database"), this);
    auto *databaseLayout = new QVBoxLayout(databaseBox);
    databaseLayout->addWidget(m_recordTable);
    m_details->setWordWrap(true);
    m_details->setTextInteractionFlags(Qt::TextBrowserInteraction);
    m_details->setOpenExternalLinks(true);
    databaseLayout->addWidget(m_details);
    layout->addWidget(databaseBox, 1);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    buildFilterTable();
    buildRecordTable();
    resize(900, 600);
}

void SelectFromCatalogDialog::buildFilterTable()
{
    for (int i = 0; i < m_parameters.size(); ++i) {
        if (m_parameters.at(i).hasFilter())
            m_filterParameters.append(i);
    }
    m_filterTable->setColumnCount(2);
    m_filterTable->setHorizontalHeaderLabels({tr("Min"), tr("Max")});
    m_filterTable->setRowCount(m_filterParameters.size());
    for (int row = 0; row < m_filterParameters.size(); ++row) {
        const Parameter &p = m_parameters.at(m_filterParameters.at(row));
        QString header = p.headerText();
        if (p.isNumeric() && (!p.min.isEmpty() || !p.max.isEmpty()))
            header += QStringLiteral(" ") + p.min + QStringLiteral("..") + p.max;
        auto *headerItem = new QTableWidgetItem(header);
        headerItem->setToolTip(p.comment);
        m_filterTable->setVerticalHeaderItem(row, headerItem);
        m_filterTable->setItem(row, 0, new QTableWidgetItem());
        auto *second = new QTableWidgetItem();
        // A text filter has one cell.
        if (!p.isNumeric())
            second->setFlags(Qt::NoItemFlags);
        m_filterTable->setItem(row, 1, second);
    }
    m_filterTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_filterTable->resizeRowsToContents();
    int height = m_filterTable->horizontalHeader()->sizeHint().height() + 2 * m_filterTable->frameWidth();
    for (int row = 0; row < m_filterTable->rowCount(); ++row)
        height += m_filterTable->rowHeight(row);
    m_filterTable->setFixedHeight(height);
    connect(m_filterTable->itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
            &SelectFromCatalogDialog::closeEditor);
    rebuildFilter();
}

void SelectFromCatalogDialog::buildRecordTable()
{
    QList<int> shown;
    QStringList headers;
    for (int i = 0; i < m_parameters.size(); ++i) {
        if (m_parameters.at(i).isShown()) {
            shown.append(i);
            headers.append(m_parameters.at(i).text.isEmpty() ? m_parameters.at(i).id : m_parameters.at(i).text);
        }
    }
    m_records->setColumnCount(shown.size());
    m_records->setHorizontalHeaderLabels(headers);
    for (int c = 0; c < shown.size(); ++c)
        m_records->horizontalHeaderItem(c)->setToolTip(m_parameters.at(shown.at(c)).comment);
    for (const CatalogRecord &record : qAsConst(m_catalog.records)) {
        QList<QStandardItem *> cells;
        for (int index : qAsConst(shown)) {
            auto *cell = new QStandardItem(record.value(m_parameters.at(index).id));
            cell->setEditable(false);
            cells.append(cell);
        }
        if (cells.isEmpty())
            cells.append(new QStandardItem(record.text));
        m_records->appendRow(cells);
    }
    m_proxy->setSourceModel(m_records);
    m_recordTable->setModel(m_proxy);
    m_recordTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_recordTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_recordTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_recordTable->setAlternatingRowColors(true);
    m_recordTable->horizontalHeader()->setStretchLastSection(true);
    m_recordTable->resizeColumnsToContents();
    connect(m_recordTable, SIGNAL(clicked(QModelIndex)), this, SLOT(on_doubleClicked(QModelIndex)));
    connect(m_recordTable->selectionModel(), SIGNAL(selectionChanged(QItemSelection, QItemSelection)), this,
            SLOT(on_selectionChanged(QItemSelection, QItemSelection)));
}

bool SelectFromCatalogDialog::acceptsRecord(int sourceRow) const
{
    if (sourceRow < 0 || sourceRow >= m_catalog.records.size())
        return false;
    return CatalogFilter::passes(m_filter, m_parameters, m_catalog.records.at(sourceRow));
}

void SelectFromCatalogDialog::rebuildFilter()
{
    m_filter.clear();
    const QSignalBlocker blocker(m_filterTable);
    for (int row = 0; row < m_filterParameters.size(); ++row) {
        QTableWidgetItem *minItem = m_filterTable->item(row, 0);
        QTableWidgetItem *maxItem = m_filterTable->item(row, 1);
        int bad = 0;
        const CatalogFilter::Row filterRow = CatalogFilter::makeRow(
            m_parameters, m_filterParameters.at(row), minItem ? minItem->text() : QString(),
            maxItem ? maxItem->text() : QString(), &bad);
        // Text where a number belongs counts as empty; the cell says so.
        if (minItem) {
            minItem->setBackground((bad & 1) ? QBrush(kBadCell) : QBrush());
            minItem->setToolTip((bad & 1) ? tr("Not a number: the field's own limit applies.") : QString());
        }
        if (maxItem && filterRow.numeric) {
            maxItem->setBackground((bad & 2) ? QBrush(kBadCell) : QBrush());
            maxItem->setToolTip((bad & 2) ? tr("Not a number: the field's own limit applies.") : QString());
        }
        m_filter.append(filterRow);
    }
    m_proxy->refilter();
}

void SelectFromCatalogDialog::closeEditor(QWidget *, QAbstractItemDelegate::EndEditHint)
{
    rebuildFilter();
}

void SelectFromCatalogDialog::showDetails(int sourceRow)
{
    if (sourceRow < 0 || sourceRow >= m_catalog.records.size()) {
        m_details->clear();
        return;
    }
    const CatalogRecord &record = m_catalog.records.at(sourceRow);
    QString html;
    for (const Parameter &p : qAsConst(m_parameters)) {
        if (!record.has(p.id))
            continue;
        const QString value = record.value(p.id);
        const QString shown = p.isUrl() ? CatalogRecordApplier::labelText(p, value) : value.toHtmlEscaped();
        html += QStringLiteral("<b>%1:</b> %2 %3<br>")
                    .arg((p.text.isEmpty() ? p.id : p.text).toHtmlEscaped(), shown, p.unit.toHtmlEscaped());
    }
    if (!record.text.isEmpty())
        html += record.text.toHtmlEscaped();
    m_details->setText(html);
}

void SelectFromCatalogDialog::on_selectionChanged(QItemSelection selected, QItemSelection)
{
    if (selected.indexes().isEmpty())
        return;
    const QModelIndex source = m_proxy->mapToSource(selected.indexes().first());
    m_chosen = source.row();
    showDetails(m_chosen);
}

void SelectFromCatalogDialog::on_doubleClicked(QModelIndex index)
{
    if (!index.isValid())
        return;
    const QModelIndex source = m_proxy->mapToSource(index);
    if (!source.isValid() || source.row() >= m_catalog.records.size())
        return;
    m_chosen = source.row();
    showDetails(m_chosen);
    CatalogRecordApplier applier(m_tables, nullptr, QFileInfo(m_catalog.fileName).absolutePath());
    applier.apply(m_parameters, m_catalog.records.at(m_chosen));
    m_applied = true;
}

bool SelectFromCatalogDialog::run(const QString &catalogPath, const QList<Parameter> &parameters,
                                  DocumentTables *tables, QWidget *parent)
{
    if (Dialogs::quiet()) {
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Quiet mode: </b></font>dialog \"%1\" counts as cancelled.<br>")
                         .arg(tr("Select a record from the database to fill in the values")));
        return false;
    }
    SelectFromCatalogDialog dialog(catalogPath, parameters, tables, parent);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    // OK with a row marked but never clicked takes that row.
    if (accepted && !dialog.applied() && dialog.chosenRow() >= 0) {
        CatalogRecordApplier applier(tables, nullptr, QFileInfo(catalogPath).absolutePath());
        applier.apply(parameters, dialog.catalog().records.at(dialog.chosenRow()));
        return true;
    }
    return dialog.applied();
}
