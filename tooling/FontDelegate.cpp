#include "tooling/FontDelegate.h"

#include "tooling/AttributeTable.h"

#include <QFontDialog>

FontDelegate::FontDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QWidget *FontDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *dialog = new QFontDialog(parent);
    dialog->setOption(QFontDialog::DontUseNativeDialog);
    auto *self = const_cast<FontDelegate *>(this);
    connect(dialog, &QDialog::accepted, self, [self, dialog] {
        emit self->commitData(dialog);
        emit self->closeEditor(dialog);
    });
    connect(dialog, &QDialog::rejected, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}

void FontDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QFontDialog *>(editor);
    if (!dialog)
        return;
    QFont font = dialog->currentFont();
    if (font.fromString(index.data().toString()))
        dialog->setCurrentFont(font);
}

void FontDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QFontDialog *>(editor);
    if (!dialog)
        return;
    const QString text = dialog->currentFont().toString();
    model->setData(index, text);
    // A dialog editor ends without the table's closeEditor: apply here.
    if (m_table)
        m_table->setAttribute(index.sibling(index.row(), 0).data().toString(), text);
}
