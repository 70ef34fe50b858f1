#pragma once
#include <QSpinBox>

#include "elements/ActiveElement.h"

// A whole number within a range. Until the description or the bits give a
// range, the widget holds the reserved range, which stands for "none".
class SpinBox : public QSpinBox, public ActiveElement
{
    Q_OBJECT
public:
    explicit SpinBox(QWidget *parent = nullptr);

    static constexpr int ReservedMinimum = -1073741824;
    static constexpr int ReservedMaximum = 1073741824;

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
    QString typeInfo() const override { return QStringLiteral("SpinBox"); }

    // The setBits rule of the integer elements: with no range, true; with
    // the reserved range, the range becomes 0 .. 2^width - 1 (capped at
    // `cap`); otherwise false when the range does not fit the width.
    static bool fitBits(int msb, int lsb, double *minimum, double *maximum, double cap);
    // The numeric value of a text: a define with selector reads that
    // element; integers in any form, and floating texts when allowed.
    static bool numberOf(const QString &text, bool allowFloat, double *value);
    // The start value of an integer element from its `default` text: without
    // one the minimum when it is above 0, else 0; false (and reported) for a
    // text that is no integer. Shared with Slider.
    static bool defaultValue(ActiveElement *element, int minimum, int maximum, int *value);
    // Kinds 0, 3 and 4 of an integer element; other kinds are reported.
    static QString integerValue(ActiveElement *element, int kind, int value);

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_recData(const QString &data);
    void changed_setDef(const QString &data);
    void changed_runScript(const QString &data);

public slots:
    void sendData(int value);
    void enable(bool enabled);
    void valueChanged(int value);
    void valueChangedByUser(int value);
    void valueChangedByUser();

private:
    int m_reference = 0;
};
