#include "tooling/EditItemsDialog.h"

#include "elements/ComboBox.h"
#include "elements/NumberFormat.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {

enum Column { Text, Value, Override, Hide, ColumnCount };

} // namespace

EditItemsDialog::EditItemsDialog(ComboBox *combo, QWidget *parent)
    : QDialog(parent)
    , m_combo(combo)
    , m_model(new QStandardItemModel(0, ColumnCount, this))
    , m_view(new QTableView(this))
{
    setWindowTitle(tr("Items of the Combobox %1").arg(combo ? combo->objectName() : QString()));
    m_model->setHorizontalHeaderLabels({tr("Text"), tr("Value"), tr("Override"), tr("Hide")});
    m_view->setModel(m_model);
    m_view->horizontalHeader()->setStretchLastSection(true);

    auto *insert = new QPushButton(tr("Insert"), this);
    auto *remove = new QPushButton(tr("Delete"), this);
    connect(insert, &QPushButton::clicked, this, &EditItemsDialog::insertLine);
    connect(remove, &QPushButton::clicked, this, &EditItemsDialog::deleteLine);
    auto *box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->addButton(insert, QDialogButtonBox::ActionRole);
    box->addButton(remove, QDialogButtonBox::ActionRole);
    connect(box, &QDialogButtonBox::accepted, this, &EditItemsDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &EditItemsDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    layout->addWidget(box);
    resize(520, 300);

    if (!combo)
        return;
    for (const QString &entry : static_cast<QObject *>(combo)->property("itemText").toStringList()) {
        const QStringList parts = entry.split(separator());
        // value, text, override, hide
        m_model->appendRow({new QStandardItem(parts.value(1)), new QStandardItem(parts.value(0)),
                            new QStandardItem(parts.value(2)), new QStandardItem(parts.value(3))});
    }
}

void EditItemsDialog::insertLine()
{
    const QModelIndex current = m_view->currentIndex();
    const int at = current.isValid() ? current.row() + 1 : m_model->rowCount();
    m_model->insertRow(at, {new QStandardItem(tr("NewItem")), new QStandardItem(QString::number(at)),
                            new QStandardItem, new QStandardItem});
    m_view->setCurrentIndex(m_model->index(at, Text));
}

void EditItemsDialog::deleteLine()
{
    const QModelIndex current = m_view->currentIndex();
    if (current.isValid())
        m_model->removeRow(current.row());
}

void EditItemsDialog::accept()
{
    if (m_combo) {
        QStringList itemText;
        const QString chosen = m_combo->currentData().toString();
        {
            // Refilling is no choice of the user: no actions, no locks.
            QSignalBlocker quiet(m_combo.data());
            m_combo->QComboBox::clear();
            for (int row = 0; row < m_model->rowCount(); ++row) {
                auto cell = [this, row](int column) { return m_model->item(row, column)->text().trimmed(); };
                const QString text = cell(Text);
                const QString value = NumberFormat::normaliseNumber(cell(Value));
                const QString override = cell(Override);
                const QString hide = cell(Hide);
                QString entry = value + separator() + text;
                if (!override.isEmpty() || !hide.isEmpty())
                    entry += separator() + override + separator() + hide;
                itemText << entry;
                if (!hide.isEmpty())
                    m_combo->hideEnumerated(NumberFormat::normaliseNumber(hide));
                else if (!override.isEmpty())
                    m_combo->addOverrideItem(text, NumberFormat::normaliseNumber(override));
                else
                    m_combo->addListItem(text, value);
            }
            const int again = m_combo->findData(chosen);
            m_combo->setCurrentIndex(again >= 0 ? again : (m_combo->count() > 0 ? 0 : -1));
        }
        static_cast<QObject *>(m_combo.data())->setProperty("itemText", itemText);
    }
    QDialog::accept();
}
