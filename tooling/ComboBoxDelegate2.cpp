#include "tooling/ComboBoxDelegate2.h"

#include "tooling/AttributeRows.h"
#include "tooling/AttributeTable.h"

#include <QComboBox>

ComboBoxDelegate2::ComboBoxDelegate2(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *ComboBoxDelegate2::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    return new QComboBox(parent);
}

void ComboBoxDelegate2::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *box = qobject_cast<QComboBox *>(editor);
    if (!box)
        return;
    if (box->count() == 0) {
        for (const QString &word : AttributeRows::policyWords()) {
            QSizePolicy::Policy policy;
            AttributeRows::policyOfWord(word, &policy);
            box->addItem(word, int(policy));
        }
    }
    QSizePolicy::Policy policy;
    if (AttributeRows::policyOfWord(index.data().toString(), &policy))
        box->setCurrentIndex(box->findData(int(policy)));
}

void ComboBoxDelegate2::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *box = qobject_cast<QComboBox *>(editor);
    if (!box || box->currentIndex() < 0)
        return;
    model->setData(index, box->currentText());
    model->setData(index, box->currentData(), Qt::UserRole);
    if (m_table)
        m_table->setAttribute(index.sibling(index.row(), 0).data().toString(), box->currentText());
}
