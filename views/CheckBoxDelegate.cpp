#include "views/CheckBoxDelegate.h"

#include "views/RegisterView.h"

#include <QCheckBox>

CheckBoxDelegate::CheckBoxDelegate(RegisterView *view, bool readOnly)
    : QStyledItemDelegate(view)
    , m_view(view)
    , m_readOnly(readOnly)
{
}

QWidget *CheckBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *box = new QCheckBox(parent);
    box->setEnabled(!m_readOnly);
    box->setAutoFillBackground(true);
    return box;
}

void CheckBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    static_cast<QCheckBox *>(editor)->setChecked(index.data(Qt::EditRole).toInt() != 0);
}

void CheckBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (m_readOnly)
        return;
    const int state = static_cast<QCheckBox *>(editor)->isChecked() ? 1 : 0;
    model->setData(index, QString::number(state), Qt::EditRole);
    model->setData(index, state, RegisterView::WordRole);
    m_view->cellCommitted();
}

void CheckBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}
