#pragma once
#include <QPushButton>

#include "elements/ActiveElement.h"

// A checkable push button standing for one bit, like a CheckBox; it can
// also carry an icon and colours for its two states.
class ToggleButton : public QPushButton, public ActiveElement
{
    Q_OBJECT
public:
    explicit ToggleButton(QWidget *parent = nullptr);

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
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("ToggleButton"); }

    // The look without colours: gray border, light background, darker
    // when checked.
    static QString baseStyle();
    // The checked and pressed look used when neither colour is given.
    static QString defaultCheckedStyle();
    // Colours as "r,g,b" texts; an empty one keeps that state's default.
    void setColors(const QString &offRgb, const QString &onRgb);
    // The picture in the file as icon; false when it can't be read.
    bool setIconFile(const QString &path);

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
    void checked_resetGUI(const QString &data);
    void unchecked_resetGUI(const QString &data);
    void checked_runScript(const QString &data);

public slots:
    void sendData(bool checked);
    void valueChanged(bool checked);
    void valueChangedByUser(bool checked);
    void valueChangedByUser();
    void enable(bool enabled);

private:
    bool inverted() const;
    void setQuietly(bool checked);

    bool m_reference = false;
};
