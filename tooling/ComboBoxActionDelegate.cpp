#include "tooling/ComboBoxActionDelegate.h"

#include <QComboBox>

ComboBoxActionDelegate::ComboBoxActionDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

QWidget *ComboBoxActionDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *box = new QComboBox(parent);
    box->addItems(m_items);
    return box;
}

void ComboBoxActionDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *box = qobject_cast<QComboBox *>(editor))
        box->setCurrentIndex(box->findText(index.data().toString()));
}

void ComboBoxActionDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *box = qobject_cast<QComboBox *>(editor);
    if (box && box->currentIndex() >= 0)
        model->setData(index, box->currentText());
}
