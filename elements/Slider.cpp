#include "elements/ElementCommon.h"
#include "elements/Slider.h"
#include "elements/SpinBox.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/MouseWheelWidgetAdjustmentGuard.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <climits>
#include <cmath>

Slider::Slider(QWidget *parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(SpinBox::ReservedMinimum, SpinBox::ReservedMaximum);
    MouseWheelWidgetAdjustmentGuard::install(this);
}

bool Slider::setValue(const QString &text, int kind)
{
    double v = 0;
    if (kind != Selectors::Value || !SpinBox::numberOf(text, false, &v) || v < minimum() || v > maximum()) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    if (int(v) == QSlider::value())
        return true;
    {
        const QSignalBlocker blocker(this);
        QSlider::setValue(int(v));
    }
    valueChanged(int(v));
    return true;
}

bool Slider::loadValue(const QString &text)
{
    double v = 0;
    if (!SpinBox::numberOf(text, false, &v) || v < minimum() || v > maximum()) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    const QSignalBlocker blocker(this);
    QSlider::setValue(int(v));
    m_reference = int(v);
    updateToolTip();
    return true;
}

QString Slider::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    return SpinBox::integerValue(this, kind, QSlider::value());
}

QString Slider::referenceValue()
{
    return QString::number(m_reference);
}

void Slider::applyDefault()
{
    int v = 0;
    if (!SpinBox::defaultValue(this, minimum(), maximum(), &v))
        return;
    const QSignalBlocker blocker(this);
    QSlider::setValue(v);
    m_reference = QSlider::value();
}

void Slider::connectSignals()
{
    connect(this, SIGNAL(valueChanged(int)), this, SLOT(valueChangedByUser(int)), Qt::UniqueConnection);
    connect(this, SIGNAL(valueChanged(int)), this, SLOT(valueChanged(int)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void Slider::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void Slider::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void Slider::restoreReference()
{
    QSlider::setValue(m_reference);
}

bool Slider::setBits(int msb, int lsb)
{
    double low = minimum();
    double high = maximum();
    if (!SpinBox::fitBits(msb, lsb, &low, &high, INT_MAX))
        return false;
    setRange(int(low), int(high));
    return true;
}

void Slider::updateToolTip()
{
    ElementToolTip::apply(this, QStringLiteral("%1..%2").arg(minimum()).arg(maximum()));
}

void Slider::sendData(int value)
{
    Q_UNUSED(value);
    ElementCommon::runChangedActions(this);
}

void Slider::valueChanged(int value)
{
    sendData(value);
    ElementCommon::afterChange(this);
}

void Slider::valueChangedByUser(int value)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = value;
}

void Slider::valueChangedByUser()
{
    valueChangedByUser(QSlider::value());
}
