#include "elements/ElementCommon.h"
#include "elements/LineEdit.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/NumberFormat.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <QFontMetrics>

LineEdit::LineEdit(QWidget *parent)
    : QLineEdit(parent)
{
}

void LineEdit::setNumeric(bool numeric)
{
    m_numeric = numeric;
    setProperty("numeric", numeric);
}

bool LineEdit::setValue(const QString &text, int kind)
{
    if (kind == Selectors::Value) {
        setText(text);
        return true;
    }
    if (kind == Selectors::Color) {
        qint64 rgb = 0;
        if (!ItemLookup::integer(text, &rgb)) {
            Report::invalidSetValue(define(), text);
            return false;
        }
        QPalette p = palette();
        p.setColor(QPalette::Base, QColor(QRgb(rgb & 0xffffff)));
        setPalette(p);
        return true;
    }
    Report::invalidSetValue(define(), text);
    return false;
}

bool LineEdit::loadValue(const QString &text)
{
    const QSignalBlocker blocker(this);
    setText(text);
    m_reference = text;
    updateToolTip();
    return true;
}

QString LineEdit::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return m_numeric ? NumberFormat::normaliseNumber(text()) : text();
    case Selectors::DefineValue:
        return text();
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

void LineEdit::applyDefault()
{
    const QString text = property("my_default").toString();
    {
        const QSignalBlocker blocker(this);
        setText(text);
    }
    m_reference = text;
    if (!text.isEmpty())
        setMinimumWidth(fontMetrics().horizontalAdvance(text) + 10);
}

void LineEdit::connectSignals()
{
    connect(this, SIGNAL(textEdited(QString)), this, SLOT(valueChangedByUser(QString)), Qt::UniqueConnection);
    connect(this, SIGNAL(textChanged(QString)), this, SLOT(valueChanged(QString)), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void LineEdit::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void LineEdit::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void LineEdit::restoreReference()
{
    setText(m_reference);
}

bool LineEdit::setBits(int msb, int lsb)
{
    return msb == -1 && lsb == -1;
}

void LineEdit::updateToolTip()
{
    ElementToolTip::apply(this);
}

void LineEdit::sendData(const QString &text)
{
    Q_UNUSED(text);
    ElementCommon::runChangedActions(this);
}

void LineEdit::valueChanged(const QString &text)
{
    sendData(text);
    ElementCommon::afterChange(this);
}

void LineEdit::valueChangedByUser(const QString &text)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = text;
}

void LineEdit::valueChangedByUser()
{
    valueChangedByUser(text());
}
