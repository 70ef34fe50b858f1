#include "shell/FindDialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

FindDialog::FindDialog(const QList<QPair<QString, QString>> &entries, QWidget *parent)
    : QDialog(parent)
    , m_entries(entries)
{
    setWindowTitle(tr("Search GUI element"));
    auto *layout = new QVBoxLayout(this);
    m_search = new QLineEdit(this);
    m_search->setPlaceholderText(tr("Define or label"));
    m_search->setClearButtonEnabled(true);
    m_results = new QListWidget(this);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Show"));
    layout->addWidget(m_search);
    layout->addWidget(m_results);
    layout->addWidget(buttons);
    resize(420, 360);

    connect(m_search, &QLineEdit::textChanged, this, &FindDialog::filter);
    connect(m_search, &QLineEdit::returnPressed, this, &FindDialog::chooseCurrent);
    connect(m_results, &QListWidget::itemActivated, this, &FindDialog::choose);
    connect(buttons, &QDialogButtonBox::accepted, this, &FindDialog::chooseCurrent);
    connect(buttons, &QDialogButtonBox::rejected, this, &FindDialog::reject);
    filter(QString());
}

void FindDialog::filter(const QString &text)
{
    m_results->clear();
    const QString needle = text.trimmed();
    for (const auto &entry : qAsConst(m_entries)) {
        if (!needle.isEmpty() && !entry.first.contains(needle, Qt::CaseInsensitive)
            && !entry.second.contains(needle, Qt::CaseInsensitive))
            continue;
        auto *item = new QListWidgetItem(entry.second, m_results);
        item->setData(Qt::UserRole, entry.first);
    }
    if (m_results->count() > 0)
        m_results->setCurrentRow(0);
}

void FindDialog::choose(QListWidgetItem *item)
{
    if (!item)
        return;
    emit elementChosen(item->data(Qt::UserRole).toString());
    accept();
}

void FindDialog::chooseCurrent()
{
    choose(m_results->currentItem());
}
