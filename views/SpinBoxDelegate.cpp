#include "views/SpinBoxDelegate.h"

#include "views/RegisterView.h"

#include <QSpinBox>
#include <climits>

SpinBoxDelegate::SpinBoxDelegate(RegisterView *view, bool readOnly, int msb, int lsb)
    : QStyledItemDelegate(view)
    , m_view(view)
    , m_readOnly(readOnly)
    , m_msb(msb)
    , m_lsb(lsb)
{
}

int SpinBoxDelegate::maximum() const
{
    const int width = m_msb - m_lsb + 1;
    if (width <= 0)
        return 0;
    // A spin box holds an int: a field of 31 bits or more stops there.
    return width >= 31 ? INT_MAX : (1 << width) - 1;
}

QWidget *SpinBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *spin = new QSpinBox(parent);
    spin->setRange(0, maximum());
    spin->setEnabled(!m_readOnly);
    return spin;
}

void SpinBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    static_cast<QSpinBox *>(editor)->setValue(index.data(Qt::EditRole).toInt());
}

void SpinBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (m_readOnly)
        return;
    auto *spin = static_cast<QSpinBox *>(editor);
    spin->interpretText();
    const int value = spin->value();
    model->setData(index, QString::number(value), Qt::EditRole);
    model->setData(index, value, RegisterView::WordRole);
    m_view->cellCommitted();
}

void SpinBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}
