#include "elements/ElementCommon.h"
#include "elements/DoubleSpinBox.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/MouseWheelWidgetAdjustmentGuard.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "elements/SpinBox.h"

DoubleSpinBox::DoubleSpinBox(QWidget *parent)
    : QDoubleSpinBox(parent)
{
    setRange(SpinBox::ReservedMinimum, SpinBox::ReservedMaximum);
    MouseWheelWidgetAdjustmentGuard::install(this);
}

int DoubleSpinBox::decimalsOf(const QString &text)
{
    const int dot = text.indexOf(QLatin1Char('.'));
    if (dot < 0)
        return 0;
    int digits = 0;
    for (int i = dot + 1; i < text.size() && text.at(i).isDigit(); ++i)
        ++digits;
    return digits;
}

bool DoubleSpinBox::setValue(const QString &text, int kind)
{
    double v = 0;
    if (kind != Selectors::Value || !SpinBox::numberOf(text, true, &v) || v < minimum() || v > maximum()) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    if (v == QDoubleSpinBox::value())
        return true;
    {
        const QSignalBlocker blocker(this);
        QDoubleSpinBox::setValue(v);
    }
    valueChanged(QDoubleSpinBox::value());
    return true;
}

bool DoubleSpinBox::loadValue(const QString &text)
{
    double v = 0;
    if (!SpinBox::numberOf(text, true, &v) || v < minimum() || v > maximum()) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    const QSignalBlocker blocker(this);
    QDoubleSpinBox::setValue(v);
    m_reference = QDoubleSpinBox::value();
    updateToolTip();
    return true;
}

QString DoubleSpinBox::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
    case Selectors::DefineValue:
        return cleanText();
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString DoubleSpinBox::referenceValue()
{
    return textFromValue(m_reference);
}

void DoubleSpinBox::applyDefault()
{
    QString text = property("my_default").toString();
    Selectors::takePrefix(text);
    double v = minimum();
    if (!text.isEmpty()) {
        setDecimals(decimalsOf(text));
        if (!SpinBox::numberOf(text, true, &v)) {
            Report::invalidSetValue(define(), property("my_default").toString());
            return;
        }
    }
    const QSignalBlocker blocker(this);
    QDoubleSpinBox::setValue(v);
    m_reference = QDoubleSpinBox::value();
}

void DoubleSpinBox::connectSignals()
{
    connect(this, SIGNAL(valueChanged(double)), this, SLOT(valueChangedByUser(double)), Qt::UniqueConnection);
    connect(this, SIGNAL(valueChanged(double)), this, SLOT(valueChanged(double)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void DoubleSpinBox::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void DoubleSpinBox::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void DoubleSpinBox::restoreReference()
{
    QDoubleSpinBox::setValue(m_reference);
}

bool DoubleSpinBox::setBits(int msb, int lsb)
{
    return msb == -1 && lsb == -1;
}

void DoubleSpinBox::updateToolTip()
{
    ElementToolTip::apply(this, QStringLiteral("%1..%2").arg(minimum()).arg(maximum()));
}

void DoubleSpinBox::sendData(double value)
{
    Q_UNUSED(value);
    ElementCommon::runChangedActions(this);
}

void DoubleSpinBox::valueChanged(double value)
{
    sendData(value);
    ElementCommon::afterChange(this);
}

void DoubleSpinBox::valueChangedByUser(double value)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = value;
}

void DoubleSpinBox::valueChangedByUser()
{
    valueChangedByUser(QDoubleSpinBox::value());
}
