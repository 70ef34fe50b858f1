#include "elements/MouseWheelWidgetAdjustmentGuard.h"

#include <QEvent>
#include <QWidget>

MouseWheelWidgetAdjustmentGuard::MouseWheelWidgetAdjustmentGuard(QObject *parent)
    : QObject(parent)
{
}

void MouseWheelWidgetAdjustmentGuard::install(QWidget *widget)
{
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(new MouseWheelWidgetAdjustmentGuard(widget));
}

bool MouseWheelWidgetAdjustmentGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Wheel) {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && !widget->hasFocus()) {
            // Ignored and consumed: the application hands an ignored wheel
            // event on to the parent widget.
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
