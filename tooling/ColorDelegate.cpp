#include "tooling/ColorDelegate.h"

#include "tooling/AttributeApplier.h"
#include "tooling/AttributeRows.h"
#include "tooling/AttributeTable.h"

#include <QColorDialog>
#include <QPushButton>

ColorDelegate::ColorDelegate(AttributeTable *table, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_table(table)
{
}

QString ColorDelegate::text(const QColor &color)
{
    return QStringLiteral("%1;%2;%3").arg(color.red()).arg(color.green()).arg(color.blue());
}

QWidget *ColorDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *dialog = new QColorDialog(parent);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    auto *self = const_cast<ColorDelegate *>(this);
    connect(dialog, &QDialog::accepted, self, [self, dialog] {
        emit self->commitData(dialog);
        emit self->closeEditor(dialog);
    });
    connect(dialog, &QDialog::rejected, self, [self, dialog] { emit self->closeEditor(dialog); });
    return dialog;
}

void ColorDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QColorDialog *>(editor);
    if (!dialog)
        return;
    int rgb[3];
    if (AttributeApplier::parseRgb(index.data().toString(), rgb)) {
        dialog->setCurrentColor(QColor(rgb[0], rgb[1], rgb[2]));
        return;
    }
    if (m_table && m_table->target()) {
        if (QWidget *widget = AttributeRows::widgetOf(m_table->target())) {
            const QPalette::ColorRole role =
                qobject_cast<QPushButton *>(widget) ? QPalette::Button : widget->backgroundRole();
            dialog->setCurrentColor(widget->palette().color(role));
        }
    }
}

void ColorDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *dialog = qobject_cast<QColorDialog *>(editor);
    if (!dialog || !dialog->currentColor().isValid())
        return;
    const QString value = text(dialog->currentColor());
    model->setData(index, value);
    if (m_table)
        m_table->setAttribute(index.sibling(index.row(), 0).data().toString(), value);
}
