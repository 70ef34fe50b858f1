#include "LockSourceElement.h"

#include "elements/LockToolTip.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

LockSourceElement::LockSourceElement(const QString &define, const QString &typeWord, QWidget *parent)
    : QComboBox(parent)
    , m_type(typeWord)
{
    setObjectName(define);
    if (isFlag()) {
        addOption(QStringLiteral("0"));
        addOption(QStringLiteral("1"));
    }
}

void LockSourceElement::addOption(const QString &value, const QString &label)
{
    const QSignalBlocker blocker(this);
    QComboBox::addItem(label.isEmpty() ? value : label, value);
    if (count() == 1) {
        m_current = value;
        m_reference = value;
    }
}

void LockSourceElement::setLocks(const QString &key, const QStringList &locks)
{
    QVariantMap map = QObject::property("locks").toMap();
    map.insert(key, locks);
    QObject::setProperty("locks", map);
}

bool LockSourceElement::setValue(const QString &text, int kind)
{
    ++setValueCalls;
    int index = -1;
    if (kind == Selectors::Label)
        index = findText(text);
    else if (kind == Selectors::Index)
        index = text.toInt() < count() ? text.toInt() : -1;
    else
        index = findData(text);
    if (index < 0) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    setCurrentIndex(index);
    return true;
}

bool LockSourceElement::loadValue(const QString &text)
{
    const int index = findData(text);
    if (index < 0)
        return false;
    const QSignalBlocker blocker(this);
    setCurrentIndex(index);
    m_current = text;
    m_reference = text;
    return true;
}

QString LockSourceElement::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    if (kind == Selectors::Label)
        return currentText();
    if (kind == Selectors::Index)
        return QString::number(currentIndex());
    return currentData().toString();
}

void LockSourceElement::connectSignals()
{
    connect(this, SIGNAL(currentIndexChanged(int)), this, SLOT(onIndexChanged(int)), Qt::UniqueConnection);
}

void LockSourceElement::sendFor(const QString &value, bool lock)
{
    QString key = value;
    if (isFlag()) {
        // A flag's one list is in force while its state differs from
        // lockinverted; leaving that state releases it.
        const bool inForce = value.toInt() != QObject::property("lockinverted").toInt();
        if (!lock)
            return;
        key = QStringLiteral("0");
        lock = inForce;
    }
    const QStringList locks = QObject::property("locks").toMap().value(key).toStringList();
    for (const QString &text : locks) {
        if (lock)
            emit sendLock(text);
        else
            emit sendUnlock(text);
    }
}

void LockSourceElement::onIndexChanged(int index)
{
    const QString old = m_current;
    m_current = itemData(index).toString();
    if (!isEnabled())
        return;
    sendFor(old, false);
    sendFor(m_current, true);
}

void LockSourceElement::emitLocks()
{
    if (isEnabled())
        sendFor(m_current, true);
}

void LockSourceElement::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void LockSourceElement::restoreReference()
{
    ++restoreCalls;
    setCurrentIndex(findData(m_reference));
}

void LockSourceElement::updateToolTip()
{
    ++toolTipCalls;
    setToolTip(LockToolTip::sections(*this, 0xffff));
}

void LockSourceElement::choose(const QString &value)
{
    m_reference = value;
    setValue(value, 0);
}
