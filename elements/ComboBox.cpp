#include "elements/ElementCommon.h"
#include "elements/ComboBox.h"

#include "elements/ActionRunner.h"
#include "elements/DocumentTables.h"
#include "elements/ElementToolTip.h"
#include "elements/ItemLookup.h"
#include "elements/MessageSink.h"
#include "elements/MouseWheelWidgetAdjustmentGuard.h"
#include "elements/QInputEventRecorder.h"
#include "elements/RecordingHook.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "shell/Console.h"

#include <QSet>
#include <QVariantMap>

namespace {
HardwareModel *g_model = nullptr;
}

ComboBox::ComboBox(QWidget *parent)
    : QComboBox(parent)
{
    MouseWheelWidgetAdjustmentGuard::install(this);
}

void ComboBox::setHardwareModel(HardwareModel *model)
{
    g_model = model;
}

void ComboBox::addListItem(const QString &label, const QString &value, const QString &description)
{
    if (label.startsWith(hideMarker()) || value.startsWith(hideMarker()))
        return;
    QComboBox::addItem(label, value);
    if (!description.isEmpty())
        setItemData(count() - 1, description, Qt::ToolTipRole);
}

void ComboBox::addOverrideItem(const QString &label, const QString &replaced)
{
    m_overrides.insert(replaced, label);
    QComboBox::addItem(label, overrideMarker() + replaced);
}

void ComboBox::hideEnumerated(const QString &nameOrValue)
{
    m_overrides.insert(nameOrValue, hideMarker());
}

void ComboBox::addItem(const QString &name, const QString &description, int value)
{
    ActiveElement::addItem(name, description, value);
    const QString number = QString::number(value);
    if (m_overrides.value(name) == hideMarker() || m_overrides.value(number) == hideMarker())
        return;
    QString key = name;
    int found = findData(overrideMarker() + name);
    if (found < 0) {
        key = number;
        found = findData(overrideMarker() + number);
    }
    const QSignalBlocker blocker(this);
    QString text = name;
    if (found >= 0) {
        removeItem(found);
        text = m_overrides.value(key, name);
    }
    QComboBox::addItem(text, number);
    setItemData(count() - 1, description, Qt::ToolTipRole);
}

int ComboBox::findItem(const QString &given, int kind) const
{
    const QString text = ItemLookup::resolve(given);
    QString number;
    switch (kind) {
    case Selectors::Value:
        if (!ItemLookup::itemNumber(text, &number))
            return -1;
        return findData(number, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    case Selectors::Label:
        return findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    case Selectors::Index: {
        if (!ItemLookup::itemNumber(text, &number))
            return -1;
        bool ok = false;
        const int index = number.toInt(&ok);
        return ok && index >= 0 && index < count() ? index : -1;
    }
    default:
        return -1;
    }
}

void ComboBox::fillFromPeripheral(const QString &text)
{
    DocumentTables *tables = DocumentTables::current();
    ActiveElement *source = tables ? tables->element(Selectors::stripSelector(text)) : nullptr;
    QString name;
    if (source)
        name = text.endsWith(QLatin1String(".module")) ? source->value(Selectors::Module)
                                                        : source->value(Selectors::Label);
    if (name.isEmpty() || !g_model)
        return;
    Peripheral *peripheral = g_model->findPeripheral(name);
    if (!peripheral)
        return;
    m_peripheral = name;
    clear();
    for (Register *reg : peripheral->registersByAddress()) {
        QComboBox::addItem(reg->name, QString::number(reg->address));
        setItemData(count() - 1, reg->description, Qt::ToolTipRole);
    }
}

bool ComboBox::setValue(const QString &text, int kind)
{
    if (kind == Selectors::Register) {
        fillFromPeripheral(text);
        return true;
    }
    if (kind == Selectors::Module)
        return true;
    const int index = findItem(text, kind);
    if (index < 0) {
        Report::invalidSetValue(define(), text);
        return false;
    }
    setCurrentIndex(index);
    return true;
}

void ComboBox::setIndexQuietly(int index)
{
    const QSignalBlocker blocker(this);
    setCurrentIndex(index);
    m_currentIndex = index;
}

bool ComboBox::loadValue(const QString &text)
{
    int index = findData(text, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0) {
        bool ok = false;
        const int asIndex = text.toInt(&ok);
        if (ok && asIndex >= 0 && asIndex < count())
            index = asIndex;
    }
    if (index < 0) {
        Report::invalidLoadValue(define(), text);
        return false;
    }
    setIndexQuietly(index);
    m_referenceIndex = index;
    updateToolTip();
    return true;
}

QString ComboBox::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return currentData(Qt::UserRole).toString();
    case Selectors::Label:
        return currentText();
    case Selectors::Index:
        return QString::number(currentIndex());
    case Selectors::DefineValue: {
        const QString data = currentData(Qt::UserRole).toString();
        quint64 v = data.startsWith(QLatin1Char('-')) ? quint64(data.toLongLong()) : data.toULongLong();
        const int lsb = property("lsb").isValid() ? property("lsb").toInt() : -1;
        if (lsb > 0 && lsb < 64)
            v <<= lsb;
        return QString::number(v);
    }
    case Selectors::TypeInfo:
        return typeInfo();
    case Selectors::Module:
        return m_peripheral;
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

QString ComboBox::referenceValue()
{
    return itemData(m_referenceIndex, Qt::UserRole).toString();
}

void ComboBox::applyDefault()
{
    QString text = property("my_default").toString();
    if (text.isEmpty()) {
        setIndexQuietly(0);
        m_referenceIndex = currentIndex();
        return;
    }
    int kind = Selectors::takePrefix(text);
    if (kind < 0)
        kind = Selectors::Value;
    if (kind == Selectors::Register) {
        fillFromPeripheral(text);
        setIndexQuietly(0);
        m_referenceIndex = currentIndex();
        return;
    }
    const int index = findItem(text, kind);
    if (index < 0) {
        Report::invalidSetValue(define(), property("my_default").toString());
        return;
    }
    setIndexQuietly(index);
    m_referenceIndex = index;
}

void ComboBox::connectSignals()
{
    // Unique: a reset connects again what the start-up step connected.
    connect(this, SIGNAL(activated(int)), this, SLOT(valueChangedByUser(int)), Qt::UniqueConnection);
    connect(this, SIGNAL(currentIndexChanged(int)), this, SLOT(valueChanged(int)), Qt::UniqueConnection);
    m_currentIndex = currentIndex();

    const QString target = Console::linkTarget(define());
    QSet<QString> data;
    QSet<QString> texts;
    bool duplicateData = false;
    bool duplicateText = false;
    for (int i = 0; i < count(); ++i) {
        const QString d = itemData(i, Qt::UserRole).toString();
        const QString t = itemText(i);
        duplicateData = duplicateData || data.contains(d);
        duplicateText = duplicateText || texts.contains(t);
        data.insert(d);
        texts.insert(t);
    }
    if (duplicateData)
        consolePrint(QStringLiteral("<font color=\"orange\"> <b>XML Warning: </font>Combobox <a href=\"%1\">%2</a> has duplicate values.</b><br>")
                         .arg(target, define()));
    if (duplicateText)
        consolePrint(QStringLiteral("<font color=\"orange\"> <b>XML Warning: </font>Combobox <a href=\"%1\">%2</a> has duplicate texts.</b><br>")
                         .arg(target, define()));

    ElementCommon::finishConnect(this);
}

void ComboBox::emitLockList(int index, bool lock)
{
    const QStringList list = property("locks").toMap().value(itemData(index).toString()).toStringList();
    for (const QString &text : list) {
        if (lock)
            emit sendLock(text);
        else
            emit sendUnlock(text);
    }
}

void ComboBox::emitLocks()
{
    if (isEnabled())
        emitLockList(currentIndex(), true);
}

void ComboBox::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

void ComboBox::restoreReference()
{
    setCurrentIndex(m_referenceIndex);
}

bool ComboBox::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void ComboBox::updateToolTip()
{
    ElementToolTip::apply(this);
}

void ComboBox::sendData(int index)
{
    if (!isEnabled())
        return;
    const int old = m_currentIndex;
    ActionRunner::run(this, QString::number(index), QStringLiteral("selected"));
    ActionRunner::run(this, QString::number(old), QStringLiteral("unselected"));
    emitLockList(old, false);
    emitLockList(index, true);
    ActionRunner::emitEach(this, "selected_setDef", property("default_setdef").toStringList());
}

void ComboBox::valueChanged(int index)
{
    sendData(index);
    m_currentIndex = index;
    ElementCommon::afterChange(this);
}

void ComboBox::valueChangedByUser(int index)
{
    RecordingHook::userChange(this);
    emit changedByUser();
    m_referenceIndex = index;
}

void ComboBox::valueChangedByUser()
{
    valueChangedByUser(currentIndex());
}
