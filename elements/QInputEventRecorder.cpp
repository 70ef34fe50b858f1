#include "elements/QInputEventRecorder.h"

#include "elements/ActiveElement.h"
#include "shell/Dialogs.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QVariant>
#include <QWidget>

QInputEventRecorder::QInputEventRecorder(QObject *parent)
    : QObject(parent)
{
}

void QInputEventRecorder::install(QWidget *widget)
{
    if (!widget || widget->findChild<QInputEventRecorder *>(QString(), Qt::FindDirectChildrenOnly))
        return;
    widget->installEventFilter(new QInputEventRecorder(widget));
}

QString QInputEventRecorder::confirmationText(QWidget *widget)
{
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        if (ActiveElement *group = asActiveElement(button->group()))
            return group->property("confirmation").toString();
    }
    return widget->property("confirmation").toString();
}

bool QInputEventRecorder::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget)
        return false;
    // The events posted after a confirmation pass, known by identity: the
    // user's own release of the first click may come in between.
    if (m_reposted.remove(event))
        return false;
    if (event->type() != QEvent::MouseButtonPress)
        return false;
    const QString text = confirmationText(widget);
    if (text.isEmpty())
        return false;

    auto *press = static_cast<QMouseEvent *>(event);
    const QPointF local = press->localPos();
    const QPointF window = press->windowPos();
    const QPointF screen = press->screenPos();
    const Qt::MouseButton button = press->button();
    const Qt::MouseButtons buttons = press->buttons();
    const Qt::KeyboardModifiers modifiers = press->modifiers();

    QPointer<QWidget> target(widget);
    const QMessageBox::StandardButton answer =
        Dialogs::question(widget->window(), QMessageBox::Warning, QStringLiteral("Quillon"), text,
                          QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok);
    if (answer != QMessageBox::Cancel && target) {
        auto *again = new QMouseEvent(QEvent::MouseButtonPress, local, window, screen, button, buttons, modifiers);
        auto *release = new QMouseEvent(QEvent::MouseButtonRelease, local, window, screen, button, Qt::NoButton,
                                        modifiers);
        m_reposted.insert(again);
        m_reposted.insert(release);
        QCoreApplication::postEvent(target, again);
        QCoreApplication::postEvent(target, release);
    }
    // The original press never reaches the widget.
    return true;
}
