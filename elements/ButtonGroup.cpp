#include "elements/ButtonGroup.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/NumberFormat.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <QAbstractButton>
#include <QRadioButton>
#include <QVariantMap>

ButtonGroup::ButtonGroup(QWidget *parentWidget, const QString &define)
    : QButtonGroup(nullptr)
    , m_anchor(new QWidget(parentWidget))
{
    // Owned by the anchor, which lives in the form: the group goes with it.
    setParent(m_anchor);
    m_anchor->setObjectName(define);
    m_anchor->setFixedSize(0, 0);
    m_anchor->hide();
    setObjectName(define);
    setExclusive(true);
}

void ButtonGroup::addRadioButton(QRadioButton *button, const QString &value)
{
    const int id = buttons().size();
    addButton(button, id);
    const QString data = value.isEmpty() ? QString::number(id) : value;
    button->setProperty("userData", data);
    m_buttonByData.insert(buttonValue(button), button);
    m_dataByButton.insert(button, buttonValue(button));
}

QString ButtonGroup::buttonValue(const QAbstractButton *button)
{
    return button ? NumberFormat::normaliseNumber(button->property("userData").toString()) : QString();
}

void ButtonGroup::setReadOnly(bool readOnly)
{
    for (QAbstractButton *button : buttons()) {
        button->setAttribute(Qt::WA_TransparentForMouseEvents, readOnly);
        button->setFocusPolicy(readOnly ? Qt::NoFocus : Qt::StrongFocus);
    }
}

QAbstractButton *ButtonGroup::findButton(const QString &given, int kind) const
{
    const QString text = ItemLookup::resolve(given);
    QString number;
    switch (kind) {
    case Selectors::Value:
        if (!ItemLookup::itemNumber(text, &number))
            return nullptr;
        for (QAbstractButton *b : buttons()) {
            if (buttonValue(b) == number)
                return b;
        }
        return nullptr;
    case Selectors::Label:
        for (QAbstractButton *b : buttons()) {
            if (b->text() == text)
                return b;
        }
        return nullptr;
    case Selectors::Index: {
        if (!ItemLookup::itemNumber(text, &number))
            return nullptr;
        bool ok = false;
        const int index = number.toInt(&ok);
        return ok ? button(index) : nullptr;
    }
    default:
        return nullptr;
    }
}

void ButtonGroup::checkQuietly(QAbstractButton *b)
{
    if (!b)
        return;
    const QSignalBlocker groupBlocker(this);
    const QSignalBlocker buttonBlocker(b);
    b->setChecked(true);
    m_currentIndex = id(b);
}

bool ButtonGroup::setValue(const QString &text, int kind)
{
    QAbstractButton *b = findButton(text, kind);
    if (!b) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    b->setChecked(true);
    return true;
}

bool ButtonGroup::loadValue(const QString &text)
{
    QAbstractButton *b = m_buttonByData.value(NumberFormat::normaliseNumber(text));
    if (!b) {
        for (QAbstractButton *candidate : buttons()) {
            if (buttonValue(candidate) == text)
                b = candidate;
        }
    }
    if (!b) {
        bool ok = false;
        const int index = text.toInt(&ok);
        if (ok)
            b = button(index);
    }
    if (!b) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    checkQuietly(b);
    m_referenceIndex = id(b);
    updateToolTip();
    return true;
}

QString ButtonGroup::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    QAbstractButton *b = checkedButton();
    switch (kind) {
    case Selectors::Value:
        return buttonValue(b);
    case Selectors::Label:
        return b ? b->text() : QString();
    case Selectors::Index:
        return QString::number(checkedId());
    case Selectors::DefineValue: {
        const QString data = buttonValue(b);
        quint64 v = data.startsWith(QLatin1Char('-')) ? quint64(data.toLongLong()) : data.toULongLong();
        const int lsb = property("lsb").isValid() ? property("lsb").toInt() : -1;
        if (lsb > 0 && lsb < 64)
            v <<= lsb;
        return QString::number(v);
    }
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString ButtonGroup::referenceValue()
{
    return buttonValue(button(m_referenceIndex));
}

void ButtonGroup::applyDefault()
{
    QString text = property("my_default").toString();
    QAbstractButton *b = nullptr;
    if (text.isEmpty()) {
        b = button(0);
    } else {
        int kind = Selectors::takePrefix(text);
        if (kind < 0)
            kind = Selectors::Value;
        b = findButton(text, kind);
        if (!b) {
            Report::invalidSetValue(define(), property("my_default").toString());
            return;
        }
    }
    checkQuietly(b);
    m_referenceIndex = b ? id(b) : -1;
}

void ButtonGroup::connectSignals()
{
    m_currentIndex = checkedId();
    // Anything wired to the buttons (a branch they switch) starts from "off".
    for (QAbstractButton *b : buttons()) {
        if (b->isEnabled() && !b->isChecked())
            QMetaObject::invokeMethod(b, "toggled", Qt::DirectConnection, Q_ARG(bool, false));
    }
    connect(this, SIGNAL(buttonClicked(QAbstractButton *)), this, SLOT(valueChangedByUser(QAbstractButton *)),
            Qt::UniqueConnection);
    connect(this, SIGNAL(buttonToggled(QAbstractButton *, bool)), this, SLOT(valueChanged(QAbstractButton *)),
            Qt::UniqueConnection);
    DocumentTables *tables = DocumentTables::current();
    if (tables && tables->mathDependents.contains(define()))
        emit updateMathLabels();
    updateToolTip();
    if (!property("confirmation").toString().isEmpty()) {
        for (QAbstractButton *b : buttons())
            QInputEventRecorder::install(b);
    }
}

void ButtonGroup::emitLockList(int index, bool lock)
{
    const QStringList list = property("locks").toMap().value(buttonValue(button(index))).toStringList();
    for (const QString &text : list) {
        if (lock)
            emit sendLock(text);
        else
            emit sendUnlock(text);
    }
}

void ButtonGroup::emitLocks()
{
    QAbstractButton *b = checkedButton();
    if (b && b->isEnabled())
        emitLockList(checkedId(), true);
}

void ButtonGroup::setElementEnabled(bool enabled)
{
    if (enableLocked)
        return;
    m_anchor->setEnabled(enabled);
    for (QAbstractButton *b : buttons())
        b->setEnabled(enabled);
}

void ButtonGroup::restoreReference()
{
    if (QAbstractButton *b = button(m_referenceIndex))
        b->setChecked(true);
}

bool ButtonGroup::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void ButtonGroup::updateToolTip()
{
    const QString tip = ElementToolTip::build(this);
    m_anchor->setToolTip(tip);
    for (QAbstractButton *b : buttons())
        b->setToolTip(tip);
}

void ButtonGroup::addItem(const QString &name, const QString &description, int value)
{
    // Radio buttons are the description's; the SVD's values only inform.
    ActiveElement::addItem(name, description, value);
}

void ButtonGroup::sendData(int index)
{
    QAbstractButton *b = button(index);
    if (b && !b->isEnabled())
        return;
    const int old = m_currentIndex;
    ActionRunner::run(this, QString::number(index), QStringLiteral("selected"));
    if (old >= 0)
        ActionRunner::run(this, QString::number(old), QStringLiteral("unselected"));
    emitLockList(old, false);
    emitLockList(index, true);
    ActionRunner::emitEach(this, "selected_setDef", property("default_setdef").toStringList());
}

void ButtonGroup::valueChanged(QAbstractButton *b)
{
    // Each change toggles two buttons; the one switched on carries it.
    if (!b || !b->isChecked())
        return;
    const int index = id(b);
    sendData(index);
    m_currentIndex = index;
    if (DocumentTables *tables = DocumentTables::current())
        tables->markHeaderChanged(this);
    updateToolTip();
    emit updateMathLabels();
}

void ButtonGroup::valueChangedByUser(QAbstractButton *b)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    if (b)
        m_referenceIndex = id(b);
}

void ButtonGroup::valueChangedByUser()
{
    valueChangedByUser(checkedButton());
}
