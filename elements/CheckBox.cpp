#include "elements/ElementCommon.h"
#include "elements/CheckBox.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <QVariantMap>

CheckBox::CheckBox(QWidget *parent)
    : QCheckBox(parent)
{
    ElementCommon::standAlone(this);
}

bool CheckBox::fitsOneBit(int msb, int lsb)
{
    if (msb == -1 && lsb == -1)
        return true;
    // 2^(msb - lsb + 1) - 1 must be under 2.
    return msb - lsb + 1 <= 1;
}

bool CheckBox::flagValue(const QString &given, int kind, int lsb, bool *on)
{
    const QString text = ItemLookup::resolve(given);
    qint64 number = 0;
    if (kind == Selectors::Value) {
        if (!ItemLookup::integer(text, &number))
            return false;
    } else if (kind == Selectors::DefineValue) {
        qint64 raw = 0;
        if (!ItemLookup::integer(text, &raw))
            return false;
        quint64 v = quint64(raw);
        if (lsb > 0 && lsb < 64)
            v >>= lsb;
        number = qint64(v);
    } else {
        return false;
    }
    if (number != 0 && number != 1)
        return false;
    *on = number == 1;
    return true;
}

bool CheckBox::inverted() const
{
    return QCheckBox::property("inverted").toBool();
}

void CheckBox::setQuietly(bool checked)
{
    const QSignalBlocker blocker(this);
    setChecked(checked);
}

bool CheckBox::setValue(const QString &text, int kind)
{
    bool on = false;
    if (!flagValue(text, kind, property("lsb").isValid() ? property("lsb").toInt() : -1, &on)) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    setChecked(inverted() != on);
    return true;
}

bool CheckBox::loadValue(const QString &text)
{
    bool on = false;
    if (!flagValue(text, Selectors::Value, -1, &on)) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    setQuietly(inverted() != on);
    m_reference = isChecked();
    updateToolTip();
    return true;
}

QString CheckBox::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    return flagKindValue(this, kind, isChecked() != inverted());
}

QString CheckBox::flagKindValue(ActiveElement *element, int kind, bool on)
{
    const int v = on ? 1 : 0;
    switch (kind) {
    case Selectors::Value:
        return QString::number(v);
    case Selectors::DefineValue: {
        const QVariant lsbProperty = element->widget()->property("lsb");
        const int lsb = lsbProperty.isValid() ? lsbProperty.toInt() : -1;
        quint64 shifted = quint64(v);
        if (lsb > 0 && lsb < 64)
            shifted <<= lsb;
        return QString::number(shifted);
    }
    case Selectors::TypeInfo:
        return element->typeInfo();
    default:
        Report::cannotReturnValue(kind, element->define());
        return QString();
    }
}

QString CheckBox::referenceValue()
{
    return (m_reference != inverted()) ? QStringLiteral("1") : QStringLiteral("0");
}

void CheckBox::applyDefault()
{
    setQuietly(defaultFlag(this) != inverted());
    m_reference = isChecked();
}

bool CheckBox::defaultFlag(ActiveElement *element)
{
    const QString given = element->widget()->property("my_default").toString();
    QString text = given;
    Selectors::takePrefix(text);
    bool on = false;
    if (!text.isEmpty() && !flagValue(text, Selectors::Value, -1, &on)) {
        Report::invalidSetValue(element->define(), given);
        return false;
    }
    return on;
}

void CheckBox::connectSignals()
{
    if (isEnabled() && !isChecked())
        emit toggled(false);
    connect(this, SIGNAL(clicked(bool)), this, SLOT(valueChangedByUser(bool)), Qt::UniqueConnection);
    connect(this, SIGNAL(stateChanged(int)), this, SLOT(valueChanged(int)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void CheckBox::emitLocks()
{
    ElementCommon::emitFlagLocks(this, isChecked());
}

void CheckBox::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void CheckBox::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void CheckBox::restoreReference()
{
    setChecked(m_reference);
}

bool CheckBox::setBits(int msb, int lsb)
{
    return fitsOneBit(msb, lsb);
}

void CheckBox::updateToolTip()
{
    ElementToolTip::apply(this);
}

void CheckBox::sendData(bool checked)
{
    ElementCommon::runFlagActions(this, checked);
}

void CheckBox::valueChanged(int state)
{
    sendData(state != Qt::Unchecked);
    ElementCommon::afterChange(this);
}

void CheckBox::valueChangedByUser(bool checked)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = checked;
    emitLocks();
}

void CheckBox::valueChangedByUser()
{
    valueChangedByUser(isChecked());
}
