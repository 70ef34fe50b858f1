#include "views/PortMappingDetailsDialog.h"

#include "shell/MainWindow.h"
#include "views/PinMappingDetails.h"
#include "views/PinMappingDocument.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {
const int kDefineRole = Qt::UserRole + 1;
}

PortMappingDetailsDialog::PortMappingDetailsDialog(std::shared_ptr<PinMappingDocument> document, QWidget *parent)
    : QDialog(parent)
    , m_document(std::move(document))
    , m_model(new QStandardItemModel(this))
    , m_table(new QTableView(this))
    , m_connectedOnly(new QCheckBox(tr("Show connected pins only"), this))
{
    setWindowTitle(tr("Portmapping Details"));
    setObjectName(QStringLiteral("PortMappingDetailsDialog"));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_connectedOnly);
    layout->addWidget(m_table);
    m_table->setModel(m_model);
    m_table->setAlternatingRowColors(true);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(m_table, SIGNAL(doubleClicked(QModelIndex)), this, SLOT(on_doubleClicked(QModelIndex)));
    connect(m_connectedOnly, SIGNAL(clicked()), this, SLOT(on_CheckboxClicked()));
    on_CheckboxClicked();
    resize(1100, 650);
}

QString PortMappingDetailsDialog::defineOfRow(int row) const
{
    QStandardItem *item = m_model->item(row, 0);
    return item ? item->data(kDefineRole).toString() : QString();
}

void PortMappingDetailsDialog::on_CheckboxClicked()
{
    m_model->clear();
    m_model->setHorizontalHeaderLabels({tr("Pin"), tr("Function"), tr("Condition"), tr("Explanation")});
    const QList<PinMappingDetails::Row> rows = PinMappingDetails::rows(*m_document, m_connectedOnly->isChecked());
    for (const PinMappingDetails::Row &row : rows) {
        QList<QStandardItem *> cells;
        for (const QString &text : {row.pin, row.function, row.condition, row.explanation}) {
            auto *cell = new QStandardItem(text);
            cell->setEditable(false);
            cells.append(cell);
        }
        cells[0]->setData(row.define, kDefineRole);
        switch (row.kind) {
        case PinMappingDetails::Row::PinRow:
            cells[0]->setBackground(row.background);
            cells[0]->setForeground(QColor(Qt::white));
            break;
        case PinMappingDetails::Row::FunctionRow:
            cells[1]->setBackground(row.background);
            break;
        case PinMappingDetails::Row::ConditionRow:
            break;
        }
        QFont font = cells[1]->font();
        font.setWeight(row.bold ? 75 : QFont::Normal);
        cells[1]->setFont(font);
        cells[2]->setFont(font);
        m_model->appendRow(cells);
    }
    QHeaderView *header = m_table->horizontalHeader();
    for (int c = 0; c < 3; ++c)
        header->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(3, QHeaderView::Stretch);
    m_table->resizeRowsToContents();
}

void PortMappingDetailsDialog::on_doubleClicked(QModelIndex index)
{
    if (!index.isValid())
        return;
    const QString define = defineOfRow(index.row());
    if (define.isEmpty())
        return;
    if (MainWindow *window = MainWindow::instance())
        QMetaObject::invokeMethod(window, "on_anchorClicked", Q_ARG(QString, define));
}
