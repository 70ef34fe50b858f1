#include "shell/ElementBlinker.h"

#include <QTimerEvent>
#include <QTreeWidgetItem>
#include <QWidget>

ElementBlinker::ElementBlinker(QObject *parent)
    : QObject(parent)
{
}

ElementBlinker::~ElementBlinker()
{
    stop();
}

void ElementBlinker::start(QWidget *widget, QTreeWidgetItem *row)
{
    stop();
    m_widget = widget;
    m_row = row;
    if (widget) {
        m_savedStyle = widget->styleSheet();
        m_savedPalette = widget->palette();
        m_savedAutoFill = widget->autoFillBackground();
    }
    if (row)
        m_savedRowBrush = row->background(0);
    m_ticks = 0;
    showHighlight(true);
    m_timer.start(kIntervalMs, this);
}

void ElementBlinker::stop()
{
    if (!m_timer.isActive())
        return;
    m_timer.stop();
    showHighlight(false);
    m_widget = nullptr;
    m_row = nullptr;
}

void ElementBlinker::showHighlight(bool on)
{
    static const QColor highlight(255, 200, 60);
    if (m_row) {
        for (int c = 0; c < 2; ++c)
            m_row->setBackground(c, on ? QBrush(highlight) : m_savedRowBrush);
    }
    if (!m_widget)
        return;
    if (on) {
        QPalette p = m_savedPalette;
        p.setColor(QPalette::Window, highlight);
        p.setColor(QPalette::Base, highlight);
        p.setColor(QPalette::Button, highlight);
        m_widget->setPalette(p);
        m_widget->setAutoFillBackground(true);
    } else {
        m_widget->setStyleSheet(m_savedStyle);
        m_widget->setPalette(m_savedPalette);
        m_widget->setAutoFillBackground(m_savedAutoFill);
    }
}

void ElementBlinker::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId())
        return;
    if (!m_widget && !m_row) {
        m_timer.stop();
        return;
    }
    ++m_ticks;
    if (m_ticks >= kTicks) {
        stop();
        return;
    }
    showHighlight(m_ticks % 2 == 0);
}
