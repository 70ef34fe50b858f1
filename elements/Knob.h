#pragma once
#include <qwt_knob.h>

#include "elements/ActiveElement.h"

// A number on a round knob; ranges and bits as for a SpinBox, the value a
// double. With `integer` set it takes whole numbers only.
class Knob : public QwtKnob, public ActiveElement
{
    Q_OBJECT
public:
    explicit Knob(QWidget *parent = nullptr);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override;
    void connectSignals() override;
    void applyDefault() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    void restoreReference() override;
    bool setBits(int msb, int lsb) override;
    void updateToolTip() override;
    QWidget *widget() override { return this; }
    using ActiveElement::property;
    using ActiveElement::setProperty;
    QString typeInfo() const override { return QStringLiteral("Knob"); }

    void setRange(double minimum, double maximum);
    // Whole numbers only: one step per unit from minimum to maximum.
    void setInteger(bool integer);
    bool isInteger() const { return m_integer; }
    void setStep(double step);
    double step() const { return m_step; }

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_recData(const QString &data);
    void changed_setDef(const QString &data);
    void changed_runScript(const QString &data);

public slots:
    void sendData(double value);
    void enable(bool enabled);
    void valueChanged(double value);
    void valueChangedByUser(double value);
    void valueChangedByUser();

private:
    void applySteps();

    double m_reference = 0;
    bool m_integer = false;
    double m_step = 1;
};
