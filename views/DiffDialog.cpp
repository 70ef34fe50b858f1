#include "views/DiffDialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QModelIndex>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
const QString kTitle = QStringLiteral("Comparison of current settings against content of file");
}

DiffDialog::DiffDialog(QWidget *parent)
    : QDialog(parent)
    , m_table(new QTableWidget(0, 3, this))
{
    setWindowTitle(kTitle);
    auto *element = new QTableWidgetItem(QStringLiteral("Element"));
    element->setToolTip(QStringLiteral("Element in GUI"));
    auto *file = new QTableWidgetItem(QStringLiteral("XML file"));
    file->setToolTip(QStringLiteral("XML file setting"));
    m_table->setHorizontalHeaderItem(0, element);
    m_table->setHorizontalHeaderItem(1, new QTableWidgetItem(QStringLiteral("Current setting")));
    m_table->setHorizontalHeaderItem(2, file);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->horizontalHeader()->setStretchLastSection(true);
    connect(m_table, &QTableWidget::doubleClicked, this, &DiffDialog::on_doubleClicked);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_table);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    resize(640, 400);
}

void DiffDialog::setFileName(const QString &fileName)
{
    setWindowTitle(kTitle + QLatin1Char(' ') + fileName);
}

void DiffDialog::setDifferences(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    m_table->setRowCount(0);
    // The text starts with a line feed when it has rows: one line alone is
    // no difference.
    if (lines.size() < 2)
        return;
    if (lines.first().isEmpty())
        lines.removeFirst();
    m_table->setRowCount(lines.size());
    for (int row = 0; row < lines.size(); ++row) {
        const QStringList parts = lines.at(row).split(QStringLiteral("#:#"));
        const QString define = parts.value(0);
        const QStringList values = parts.value(1).split(QStringLiteral("!="));
        auto *first = new QTableWidgetItem(define);
        first->setData(Qt::UserRole, define);
        m_table->setItem(row, 0, first);
        m_table->setItem(row, 1, new QTableWidgetItem(values.value(0)));
        m_table->setItem(row, 2, new QTableWidgetItem(values.value(1)));
    }
}

int DiffDialog::rowCount() const
{
    return m_table->rowCount();
}

QString DiffDialog::cell(int row, int column) const
{
    const QTableWidgetItem *item = m_table->item(row, column);
    return item ? item->text() : QString();
}

void DiffDialog::on_doubleClicked(const QModelIndex &index)
{
    const QTableWidgetItem *item = m_table->item(index.row(), 0);
    if (item)
        emit elementRequested(item->data(Qt::UserRole).toString());
}
