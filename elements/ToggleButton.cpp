#include "elements/ElementCommon.h"
#include "elements/ToggleButton.h"

#include "elements/ActionRunner.h"
#include "elements/CheckBox.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/MessageSink.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <QIcon>
#include <QPixmap>
#include <QVariantMap>

ToggleButton::ToggleButton(QWidget *parent)
    : QPushButton(parent)
{
    setCheckable(true);
    setStyleSheet(baseStyle() + defaultCheckedStyle());
    ElementCommon::standAlone(this);
}

QString ToggleButton::baseStyle()
{
    return QStringLiteral("QPushButton{ border: 1px solid gray; height: 22px; background: #e9e6e7;}"
                          "QPushButton:checked{ background: #b0b0b0;}");
}

QString ToggleButton::defaultCheckedStyle()
{
    return QStringLiteral("QPushButton:checked{background-color: rgb(200,200,240);border-style: inset;border-width: 1px;border-color: black;}"
                          "QPushButton:pressed{background-color: rgb(200,200,240);border-style: inset;border-width: 1px;border-color: black;}");
}

void ToggleButton::setColors(const QString &offRgb, const QString &onRgb)
{
    QString sheet = baseStyle();
    if (!offRgb.isEmpty())
        sheet += QStringLiteral("QPushButton{background-color: rgb(%1);}").arg(offRgb);
    if (!onRgb.isEmpty())
        sheet += QStringLiteral("QPushButton:checked{background-color: rgb(%1);border-style: inset;border-width: 1px;border-color: black;}")
                     .arg(onRgb);
    if (offRgb.isEmpty() && onRgb.isEmpty())
        sheet += defaultCheckedStyle();
    setStyleSheet(sheet);
}

bool ToggleButton::setIconFile(const QString &path)
{
    QPixmap picture;
    if (path.isEmpty() || !picture.load(path))
        return false;
    setIcon(QIcon(picture));
    setIconSize(picture.size());
    setFlat(true);
    return true;
}

bool ToggleButton::inverted() const
{
    return QPushButton::property("inverted").toBool();
}

void ToggleButton::setQuietly(bool checked)
{
    const QSignalBlocker blocker(this);
    setChecked(checked);
}

bool ToggleButton::setValue(const QString &text, int kind)
{
    if (kind == Selectors::Image) {
        if (!setIconFile(text)) {
            showError(QStringLiteral("Icon of <button> element couldn't be loaded."));
            return false;
        }
        return true;
    }
    if (kind == Selectors::Color) {
        qint64 rgb = 0;
        if (!ItemLookup::integer(text, &rgb)) {
            Report::invalidSetValue(define(), text);
            return false;
        }
        const QString color = QStringLiteral("%1,%2,%3").arg((rgb >> 16) & 0xff).arg((rgb >> 8) & 0xff).arg(rgb & 0xff);
        setColors(color, color);
        return true;
    }
    bool on = false;
    if (!CheckBox::flagValue(text, kind, property("lsb").isValid() ? property("lsb").toInt() : -1, &on)) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    setChecked(inverted() != on);
    return true;
}

bool ToggleButton::loadValue(const QString &text)
{
    bool on = false;
    if (!CheckBox::flagValue(text, Selectors::Value, -1, &on)) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    setQuietly(inverted() != on);
    m_reference = isChecked();
    updateToolTip();
    return true;
}

QString ToggleButton::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    return CheckBox::flagKindValue(this, kind, isChecked() != inverted());
}

QString ToggleButton::referenceValue()
{
    return (m_reference != inverted()) ? QStringLiteral("1") : QStringLiteral("0");
}

void ToggleButton::applyDefault()
{
    setQuietly(CheckBox::defaultFlag(this) != inverted());
    m_reference = isChecked();
}

void ToggleButton::connectSignals()
{
    if (isEnabled() && !isChecked())
        emit toggled(false);
    connect(this, SIGNAL(clicked(bool)), this, SLOT(valueChangedByUser(bool)), Qt::UniqueConnection);
    connect(this, SIGNAL(toggled(bool)), this, SLOT(valueChanged(bool)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void ToggleButton::emitLocks()
{
    ElementCommon::emitFlagLocks(this, isChecked());
}

void ToggleButton::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void ToggleButton::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void ToggleButton::restoreReference()
{
    setChecked(m_reference);
}

bool ToggleButton::setBits(int msb, int lsb)
{
    return CheckBox::fitsOneBit(msb, lsb);
}

void ToggleButton::updateToolTip()
{
    ElementToolTip::apply(this);
}

void ToggleButton::sendData(bool checked)
{
    ElementCommon::runFlagActions(this, checked);
}

void ToggleButton::valueChanged(bool checked)
{
    sendData(checked);
    ElementCommon::afterChange(this);
}

void ToggleButton::valueChangedByUser(bool checked)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = checked;
    emitLocks();
}

void ToggleButton::valueChangedByUser()
{
    valueChangedByUser(isChecked());
}
