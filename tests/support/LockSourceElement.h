#pragma once
#include <QComboBox>
#include <QStringList>
#include <QVariantMap>

#include "elements/ActiveElement.h"

// A selectable element for tests of the lock engine, independent of the real
// value elements: a combo box whose items have values, that keeps a
// reference value, and that sends its lock strings like a list or, with
// the word "CheckBox", like a check box (items "0" and "1", key 0, in force
// while the value differs from lockinverted).
class LockSourceElement : public QComboBox, public ActiveElement
{
    Q_OBJECT
public:
    explicit LockSourceElement(const QString &define, const QString &typeWord = QStringLiteral("ComboBox"),
                               QWidget *parent = nullptr);

    // An item (value, label); values are compared as written.
    void addOption(const QString &value, const QString &label = QString());
    // Lock strings under a key (item value, "0" for a check box).
    void setLocks(const QString &key, const QStringList &locks);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return m_reference; }
    void connectSignals() override;
    void emitLocks() override;
    void setElementEnabled(bool enabled) override;
    void restoreReference() override;
    bool setBits(int, int) override { return true; }
    void updateToolTip() override;
    void updateMathLabels() override {}
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return m_type; }

    // Chooses an item as the user would: the reference follows.
    void choose(const QString &value);

    int setValueCalls = 0;
    int restoreCalls = 0;
    int toolTipCalls = 0;

signals:
    void sendLock(const QString &lock);
    void sendUnlock(const QString &lock);

private slots:
    void onIndexChanged(int index);

private:
    bool isFlag() const { return m_type == QLatin1String("CheckBox") || m_type == QLatin1String("ToggleButton"); }
    void sendFor(const QString &value, bool lock);

    QString m_type;
    QString m_reference;
    QString m_current;
};
