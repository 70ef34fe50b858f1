#include "elements/ElementCommon.h"
#include "elements/Knob.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "elements/SpinBox.h"

#include <cmath>
#include <limits>

Knob::Knob(QWidget *parent)
    : QwtKnob(parent)
{
    setRange(SpinBox::ReservedMinimum, SpinBox::ReservedMaximum);
}

void Knob::setRange(double minimum, double maximum)
{
    setScale(minimum, maximum);
    applySteps();
}

void Knob::setInteger(bool integer)
{
    m_integer = integer;
    applySteps();
}

void Knob::setStep(double step)
{
    if (step > 0)
        m_step = step;
    applySteps();
}

void Knob::applySteps()
{
    const double span = upperBound() - lowerBound();
    if (m_integer) {
        const double steps = std::max(1.0, std::round(span));
        setTotalSteps(uint(std::min(steps, double(std::numeric_limits<int>::max()))));
        setStepAlignment(true);
        setScaleStepSize(span > 20 ? std::ceil(span / 10) : 1);
    } else {
        const double steps = m_step > 0 ? span / m_step : 100;
        setTotalSteps(uint(std::min(std::max(1.0, steps), double(std::numeric_limits<int>::max()))));
    }
}

bool Knob::setValue(const QString &text, int kind)
{
    double v = 0;
    if (kind != Selectors::Value || !SpinBox::numberOf(text, true, &v) || v < lowerBound() || v > upperBound()
        || (m_integer && v != std::floor(v))) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    if (v == QwtKnob::value())
        return true;
    {
        const QSignalBlocker blocker(this);
        QwtKnob::setValue(v);
    }
    valueChanged(QwtKnob::value());
    return true;
}

bool Knob::loadValue(const QString &text)
{
    double v = 0;
    if (!SpinBox::numberOf(text, true, &v) || v < lowerBound() || v > upperBound()) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    const QSignalBlocker blocker(this);
    QwtKnob::setValue(v);
    m_reference = QwtKnob::value();
    updateToolTip();
    return true;
}

QString Knob::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return QString::number(QwtKnob::value(), 'g', 6);
    case Selectors::DefineValue: {
        quint32 v = quint32(qint64(QwtKnob::value()));
        const int lsb = property("lsb").isValid() ? property("lsb").toInt() : -1;
        if (lsb > 0 && lsb < 32)
            v <<= lsb;
        else if (lsb >= 32)
            v = 0;
        return QString::number(v);
    }
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString Knob::referenceValue()
{
    return QString::number(m_reference, 'g', 6);
}

void Knob::applyDefault()
{
    QString text = property("my_default").toString();
    Selectors::takePrefix(text);
    double v = 0;
    if (text.isEmpty()) {
        v = lowerBound() > 0 ? lowerBound() : 0;
    } else if (!SpinBox::numberOf(text, true, &v)) {
        Report::invalidSetValue(define(), property("my_default").toString());
        return;
    }
    v = qBound(lowerBound(), v, upperBound());
    const QSignalBlocker blocker(this);
    QwtKnob::setValue(v);
    m_reference = QwtKnob::value();
}

void Knob::connectSignals()
{
    connect(this, SIGNAL(valueChanged(double)), this, SLOT(valueChangedByUser(double)), Qt::UniqueConnection);
    connect(this, SIGNAL(valueChanged(double)), this, SLOT(valueChanged(double)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void Knob::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void Knob::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void Knob::restoreReference()
{
    QwtKnob::setValue(m_reference);
}

bool Knob::setBits(int msb, int lsb)
{
    double low = lowerBound();
    double high = upperBound();
    if (!SpinBox::fitBits(msb, lsb, &low, &high, 4294967295.0))
        return false;
    setRange(low, high);
    return true;
}

void Knob::updateToolTip()
{
    ElementToolTip::apply(this, QStringLiteral("%1..%2").arg(lowerBound()).arg(upperBound()));
}

void Knob::sendData(double value)
{
    Q_UNUSED(value);
    ElementCommon::runChangedActions(this);
}

void Knob::valueChanged(double value)
{
    sendData(value);
    ElementCommon::afterChange(this);
}

void Knob::valueChangedByUser(double value)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = value;
}

void Knob::valueChangedByUser()
{
    valueChangedByUser(QwtKnob::value());
}
