#pragma once
#include <QCheckBox>

#include "elements/ActiveElement.h"

// One bit: ticked is 1, unless the property `inverted` makes ticked 0.
class CheckBox : public QCheckBox, public ActiveElement
{
    Q_OBJECT
public:
    explicit CheckBox(QWidget *parent = nullptr);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override;
    void connectSignals() override;
    void applyDefault() override;
    void emitLocks() override;
    void setElementEnabled(bool enabled) override;
    void restoreReference() override;
    bool setBits(int msb, int lsb) override;
    void updateToolTip() override;
    QWidget *widget() override { return this; }
    // One object, two bases: both reach the widget's properties.
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("CheckBox"); }

    // Whether a flag element can hold bits msb..lsb: one bit, or no range.
    static bool fitsOneBit(int msb, int lsb);
    // Reads a flag's value text of kind 0 (integer) or 3 (shifted by lsb):
    // 0 or 1, else false.
    static bool flagValue(const QString &text, int kind, int lsb, bool *on);
    // The value a flag element's `default` text asks for; a text that is no
    // flag is reported and gives false. Shared with ToggleButton.
    static bool defaultFlag(ActiveElement *element);
    // Kinds 0, 3 and 4 of a flag element whose value is `on`.
    static QString flagKindValue(ActiveElement *element, int kind, bool on);

signals:
    void changedByUser();
    void updateMathLabels() override;
    void checked_sendUSB(const QString &data);
    void checked_recData(const QString &data);
    void checked_setDef(const QString &data);
    void unchecked_sendUSB(const QString &data);
    void unchecked_recData(const QString &data);
    void unchecked_setDef(const QString &data);
    void sendLock(const QString &lock);
    void sendUnlock(const QString &lock);

public slots:
    void sendData(bool checked);
    void enable(bool enabled);
    void valueChanged(int state);
    void valueChangedByUser(bool checked);
    void valueChangedByUser();

private:
    bool inverted() const;
    void setQuietly(bool checked);

    bool m_reference = false;
};
