#pragma once
#include <QObject>

class QWidget;

// Keeps the mouse wheel from changing a list or spin box that the user is
// only scrolling past: without the focus the wheel event goes on to the
// parent (the scroll area) instead.
class MouseWheelWidgetAdjustmentGuard : public QObject
{
    Q_OBJECT
public:
    explicit MouseWheelWidgetAdjustmentGuard(QObject *parent = nullptr);

    // Installs a guard owned by the widget and gives it a strong focus
    // policy, so only a click or the tab key focuses it.
    static void install(QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
