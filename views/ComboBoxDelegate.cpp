#include "views/ComboBoxDelegate.h"

#include "views/RegisterView.h"

#include <QComboBox>
#include <QStandardItemModel>

ComboBoxDelegate::ComboBoxDelegate(RegisterView *view, bool readOnly, const QList<EnumeratedValue> &values, int width)
    : QStyledItemDelegate(view)
    , m_view(view)
    , m_readOnly(readOnly)
    , m_values(values)
    , m_width(width)
{
}

void ComboBoxDelegate::fill(QComboBox *box) const
{
    box->clear();
    for (const EnumeratedValue &value : m_values) {
        box->addItem(RegisterView::itemText(value, m_width));
        const int row = box->count() - 1;
        box->setItemData(row, value.value, RegisterView::WordRole);
        box->setItemData(row, value.description, Qt::ToolTipRole);
        if (m_readOnly) {
            if (auto *model = qobject_cast<QStandardItemModel *>(box->model()))
                model->item(row)->setEnabled(false);
        }
    }
}

QWidget *ComboBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    return new QComboBox(parent);
}

void ComboBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *box = static_cast<QComboBox *>(editor);
    fill(box);
    const int found = box->findText(index.data(Qt::EditRole).toString(), Qt::MatchFixedString);
    if (found >= 0)
        box->setCurrentIndex(found);
    if (box->isVisible() || !box->parentWidget() || box->parentWidget()->isVisible())
        box->showPopup();
}

void ComboBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *box = static_cast<QComboBox *>(editor);
    if (m_readOnly || box->currentIndex() < 0)
        return;
    model->setData(index, box->currentText(), Qt::EditRole);
    model->setData(index, box->currentData(RegisterView::WordRole), RegisterView::WordRole);
    m_view->cellCommitted();
}

void ComboBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}
