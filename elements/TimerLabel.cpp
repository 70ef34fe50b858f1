#include "elements/TimerLabel.h"

#include "elements/ActionRunner.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

TimerLabel::TimerLabel(QWidget *parent)
    : QLabel(parent)
    , m_timer(this)
{
    showCounter();
}

void TimerLabel::showCounter()
{
    setText(QString::number(m_counter));
}

void TimerLabel::IncrementCounter()
{
    ++m_counter;
    showCounter();
    ActionRunner::run(this, QStringLiteral("0"), QStringLiteral("changed"));
    emit updateMathLabels();
}

void TimerLabel::start()
{
    m_timer.start();
}

void TimerLabel::stop()
{
    m_timer.stop();
}

void TimerLabel::connectSignals()
{
    connect(&m_timer, &QTimer::timeout, this, &TimerLabel::IncrementCounter, Qt::UniqueConnection);
    if (m_run != 0)
        m_timer.start();
}

void TimerLabel::applyDefault()
{
    m_timer.stop();
    m_counter = 0;
    showCounter();
}

bool TimerLabel::setValue(const QString &text, int kind)
{
    bool ok = false;
    const qint64 number = NumberFormat::toInt64(text, &ok);
    if (!ok || (kind != Selectors::Value && kind != Selectors::Interval && kind != Selectors::Run)) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    switch (kind) {
    case Selectors::Interval:
        setInterval(int(qBound<qint64>(0, number, INT_MAX)));
        break;
    case Selectors::Run:
        if (number != 0)
            m_timer.start();
        else
            m_timer.stop();
        break;
    default:
        m_counter = number;
        showCounter();
        emit updateMathLabels();
        break;
    }
    return true;
}

bool TimerLabel::loadValue(const QString &text)
{
    bool ok = false;
    const qint64 number = NumberFormat::toInt64(text, &ok);
    if (!ok) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    m_counter = number;
    showCounter();
    return true;
}

QString TimerLabel::value(int kind, bool)
{
    switch (kind) {
    case Selectors::Value:
    case Selectors::DefineValue:
        return QString::number(m_counter);
    case Selectors::TypeInfo:
        return typeInfo();
    case Selectors::Interval:
        return QString::number(interval());
    case Selectors::Run:
        return m_timer.isActive() ? QStringLiteral("1") : QStringLiteral("0");
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString TimerLabel::referenceValue()
{
    return QString::number(m_counter);
}

void TimerLabel::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool TimerLabel::setBits(int, int)
{
    return true;
}
