#include "elements/AbsoluteWidget.h"

#include "elements/TabWidget.h"

AbsoluteWidget::AbsoluteWidget(QWidget *parent)
    : QWidget(parent)
{
}

void AbsoluteWidget::addWidget(QWidget *widget, const QString &label, int index)
{
    Q_UNUSED(widget);
    Q_UNUSED(label);
    Q_UNUSED(index);
}

void AbsoluteWidget::placeChild(QWidget *child, const QString &label, int index)
{
    Q_UNUSED(label);
    Q_UNUSED(index);
    child->show();
}

QSize AbsoluteWidget::sizeHint() const
{
    // Large enough to show every child where it was put.
    QRect bounds;
    for (const QObject *object : children()) {
        if (const auto *w = qobject_cast<const QWidget *>(object))
            bounds = bounds.united(w->geometry());
    }
    return bounds.isEmpty() ? QWidget::sizeHint() : QSize(bounds.right() + 4, bounds.bottom() + 4);
}

void AbsoluteWidget::childSetDef(int iPageNr)
{
    for (const QString &setDef : TabWidget::pageSetDefs(this, iPageNr))
        emit selected_setDef(setDef);
}
