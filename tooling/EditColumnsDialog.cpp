#include "tooling/EditColumnsDialog.h"

#include "tooling/ComboBoxActionDelegate.h"
#include "views/Table.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {

enum Column { Index, Label, Type, Tooltip, Width, Format, Default, Source, ColumnCount };

} // namespace

QStringList EditColumnsDialog::typeWords()
{
    return {QStringLiteral("regname"), QStringLiteral("address"), QStringLiteral("func"),
            QStringLiteral("value"),   QStringLiteral("delay"),   QStringLiteral("answer"),
            QStringLiteral("comment"), QStringLiteral("delete"),  QStringLiteral("math")};
}

EditColumnsDialog::EditColumnsDialog(Table *table, QWidget *parent)
    : QDialog(parent)
    , m_table(table)
    , m_model(new QStandardItemModel(0, ColumnCount, this))
    , m_view(new QTableView(this))
{
    setWindowTitle(tr("Columns within the table element"));
    m_model->setHorizontalHeaderLabels({tr("Index"), tr("Label"), tr("Type"), tr("Tooltip"), tr("Width"), tr("Format"),
                                        tr("Default"), tr("Source")});
    m_view->setModel(m_model);
    m_view->horizontalHeader()->setStretchLastSection(true);
    auto *types = new ComboBoxActionDelegate(this);
    types->setItems(typeWords());
    m_view->setItemDelegateForColumn(Type, types);

    auto *insert = new QPushButton(tr("Insert"), this);
    auto *remove = new QPushButton(tr("Delete"), this);
    connect(insert, &QPushButton::clicked, this, &EditColumnsDialog::insertLine);
    connect(remove, &QPushButton::clicked, this, &EditColumnsDialog::deleteLine);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->addButton(insert, QDialogButtonBox::ActionRole);
    box->addButton(remove, QDialogButtonBox::ActionRole);
    connect(box, &QDialogButtonBox::accepted, this, &EditColumnsDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &EditColumnsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    layout->addWidget(box);
    resize(760, 320);

    if (!table)
        return;
    const QStringList words = typeWords();
    for (int i = 0; i < table->columnCount(); ++i) {
        const TableColumn &c = table->column(i);
        m_model->appendRow({new QStandardItem(QString::number(i)), new QStandardItem(c.label),
                            new QStandardItem(words.value(c.kind)), new QStandardItem(c.tooltip),
                            new QStandardItem(QString::number(c.columnWidth)), new QStandardItem(c.format),
                            new QStandardItem(c.defaultText), new QStandardItem(c.source)});
    }
}

void EditColumnsDialog::insertLine()
{
    const QModelIndex current = m_view->currentIndex();
    const int at = current.isValid() ? current.row() + 1 : m_model->rowCount();
    m_model->insertRow(at, {new QStandardItem(QString::number(at)), new QStandardItem(tr("Column")),
                            new QStandardItem(QStringLiteral("comment")), new QStandardItem, new QStandardItem(QStringLiteral("100")),
                            new QStandardItem, new QStandardItem, new QStandardItem});
    m_view->setCurrentIndex(m_model->index(at, Label));
}

void EditColumnsDialog::deleteLine()
{
    const QModelIndex current = m_view->currentIndex();
    if (current.isValid())
        m_model->removeRow(current.row());
}

void EditColumnsDialog::accept()
{
    if (m_table) {
        m_table->clearColumns();
        for (int row = 0; row < m_model->rowCount(); ++row) {
            auto cell = [this, row](int column) { return m_model->item(row, column)->text().trimmed(); };
            TableColumn column;
            column.kind = Table::kindOf(cell(Type));
            column.label = cell(Label);
            column.tooltip = cell(Tooltip);
            bool ok = false;
            const int width = cell(Width).toInt(&ok);
            column.columnWidth = qint16(ok ? qBound(0, width, 32767) : 100);
            column.format = cell(Format);
            column.defaultText = cell(Default);
            column.source = cell(Source);
            // A table holds at most its fixed number of columns; the
            // rest are dropped as the reader drops them.
            if (!m_table->addColumn(column))
                break;
        }
        m_table->buildModel();
    }
    QDialog::accept();
}
