#include "elements/ElementCommon.h"
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

SpinBox::SpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setRange(ReservedMinimum, ReservedMaximum);
    MouseWheelWidgetAdjustmentGuard::install(this);
}

bool SpinBox::fitBits(int msb, int lsb, double *minimum, double *maximum, double cap)
{
    if (msb == -1 && lsb == -1)
        return true;
    const int width = msb - lsb + 1;
    const double room = width >= 1 ? std::min(std::pow(2.0, width) - 1.0, cap) : 0.0;
    if (*minimum == ReservedMinimum && *maximum == ReservedMaximum) {
        *minimum = 0;
        *maximum = room;
        return true;
    }
    return !(*maximum > room || *minimum < 0);
}

bool SpinBox::numberOf(const QString &given, bool allowFloat, double *value)
{
    const QString text = ItemLookup::resolve(given);
    if (allowFloat)
        return ItemLookup::number(text, value);
    qint64 i = 0;
    if (!ItemLookup::integer(text, &i))
        return false;
    *value = double(i);
    return true;
}

bool SpinBox::setValue(const QString &text, int kind)
{
    double v = 0;
    if (kind != Selectors::Value || !numberOf(text, false, &v) || v < minimum() || v > maximum()) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    if (int(v) == QSpinBox::value())
        return true;
    {
        const QSignalBlocker blocker(this);
        QSpinBox::setValue(int(v));
    }
    valueChanged(int(v));
    return true;
}

bool SpinBox::loadValue(const QString &text)
{
    double v = 0;
    if (!numberOf(text, false, &v) || v < minimum() || v > maximum()) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    const QSignalBlocker blocker(this);
    QSpinBox::setValue(int(v));
    m_reference = int(v);
    updateToolTip();
    return true;
}

QString SpinBox::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    return integerValue(this, kind, QSpinBox::value());
}

QString SpinBox::integerValue(ActiveElement *element, int kind, int value)
{
    switch (kind) {
    case Selectors::Value:
        return QString::number(value);
    case Selectors::DefineValue:
        return ElementCommon::shiftedValue(element->widget(), quint32(value));
    case Selectors::TypeInfo:
        return element->typeInfo();
    default:
        Report::cannotReturnValue(kind, element->define());
        return QString();
    }
}

QString SpinBox::referenceValue()
{
    return QString::number(m_reference);
}

void SpinBox::applyDefault()
{
    int v = 0;
    if (!defaultValue(this, minimum(), maximum(), &v))
        return;
    const QSignalBlocker blocker(this);
    QSpinBox::setValue(v);
    m_reference = QSpinBox::value();
}

bool SpinBox::defaultValue(ActiveElement *element, int minimum, int maximum, int *value)
{
    const QString given = element->widget()->property("my_default").toString();
    QString text = given;
    Selectors::takePrefix(text);
    if (text.isEmpty()) {
        *value = minimum > 0 ? minimum : 0;
        return true;
    }
    qint64 number = 0;
    if (!ItemLookup::integer(text, &number)) {
        Report::invalidSetValue(element->define(), given);
        return false;
    }
    *value = int(qBound<qint64>(minimum, number, maximum));
    return true;
}

void SpinBox::connectSignals()
{
    connect(this, SIGNAL(valueChanged(int)), this, SLOT(valueChangedByUser(int)), Qt::UniqueConnection);
    connect(this, SIGNAL(valueChanged(int)), this, SLOT(valueChanged(int)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void SpinBox::emitLocks()
{
}

void SpinBox::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void SpinBox::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void SpinBox::restoreReference()
{
    QSpinBox::setValue(m_reference);
}

bool SpinBox::setBits(int msb, int lsb)
{
    double low = minimum();
    double high = maximum();
    if (!fitBits(msb, lsb, &low, &high, INT_MAX))
        return false;
    setRange(int(low), int(high));
    return true;
}

void SpinBox::updateToolTip()
{
    ElementToolTip::apply(this, QStringLiteral("%1..%2").arg(minimum()).arg(maximum()));
}

void SpinBox::sendData(int value)
{
    Q_UNUSED(value);
    ElementCommon::runChangedActions(this);
}

void SpinBox::valueChanged(int value)
{
    sendData(value);
    ElementCommon::afterChange(this);
}

void SpinBox::valueChangedByUser(int value)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = value;
}

void SpinBox::valueChangedByUser()
{
    valueChangedByUser(QSpinBox::value());
}
