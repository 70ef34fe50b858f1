#pragma once
#include <QBasicTimer>
#include <QBrush>
#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QString>

class QTreeWidgetItem;
class QWidget;

// Makes an element that was searched for easy to spot: it blinks between
// its own look and a highlight until the next search or a click elsewhere.
// The element's first look is saved and put back when the blinking stops.
class ElementBlinker : public QObject
{
    Q_OBJECT
public:
    explicit ElementBlinker(QObject *parent = nullptr);
    ~ElementBlinker() override;

    // Starts blinking the widget, or the tree row that holds it.
    void start(QWidget *widget, QTreeWidgetItem *row = nullptr);
    void stop();
    bool isBlinking() const { return m_timer.isActive(); }
    QWidget *target() const { return m_widget; }

    // Ticks before the blinking ends by itself.
    static constexpr int kTicks = 12;
    static constexpr int kIntervalMs = 250;

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void showHighlight(bool on);

    QBasicTimer m_timer;
    QPointer<QWidget> m_widget;
    QTreeWidgetItem *m_row = nullptr;
    QString m_savedStyle;
    QPalette m_savedPalette;
    bool m_savedAutoFill = false;
    QBrush m_savedRowBrush;
    int m_ticks = 0;
};
