#include "elements/ElementCommon.h"
#include "elements/TextEdit.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

TextEdit::TextEdit(QWidget *parent)
    : QTextEdit(parent)
{
    setAcceptRichText(false);
}

void TextEdit::setQuietly(const QString &text)
{
    const QSignalBlocker blocker(this);
    setPlainText(text);
    m_handled = text;
}

bool TextEdit::setValue(const QString &text, int kind)
{
    if (kind != Selectors::Value) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    if (text == toPlainText())
        return true;
    // A program change is no user change: the widget's signal stays quiet
    // and the change handling runs here.
    setQuietly(text);
    valueChanged(text);
    return true;
}

bool TextEdit::loadValue(const QString &text)
{
    setQuietly(text);
    m_reference = text;
    updateToolTip();
    return true;
}

QString TextEdit::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return toPlainText();
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

void TextEdit::applyDefault()
{
    const QString text = property("my_default").toString();
    setQuietly(text);
    m_reference = text;
}

void TextEdit::connectSignals()
{
    m_handled = toPlainText();
    connect(this, SIGNAL(textChanged()), this, SLOT(valueChangedByUser()), Qt::UniqueConnection);
    ElementCommon::finishConnect(this);
}

void TextEdit::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void TextEdit::enable(bool enabled)
{
    setElementEnabled(enabled);
}

void TextEdit::restoreReference()
{
    setValue(m_reference, Selectors::Value);
}

bool TextEdit::setBits(int msb, int lsb)
{
    return msb == -1 && lsb == -1;
}

void TextEdit::updateToolTip()
{
    ElementToolTip::apply(this);
}

void TextEdit::sendData(const QString &text)
{
    Q_UNUSED(text);
    ElementCommon::runChangedActions(this);
}

void TextEdit::valueChanged(const QString &text)
{
    m_handled = text;
    sendData(text);
    ElementCommon::afterChange(this);
}

void TextEdit::valueChangedByUser()
{
    const QString text = toPlainText();
    if (text == m_handled)
        return;
    RecordingHook::userChange(this);
    emit changedByUser();
    m_reference = text;
    valueChanged(text);
}
