#pragma once
#include <QDoubleSpinBox>

#include "elements/ActiveElement.h"

// A floating number within a range; it holds no register bits.
class DoubleSpinBox : public QDoubleSpinBox, public ActiveElement
{
    Q_OBJECT
public:
    explicit DoubleSpinBox(QWidget *parent = nullptr);

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
    QString typeInfo() const override { return QStringLiteral("DoubleSpinBox"); }

    // The digits behind the "." of a default text (0 without one).
    static int decimalsOf(const QString &text);

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_recData(const QString &data);
    void changed_setDef(const QString &data);

public slots:
    void sendData(double value);
    void enable(bool enabled);
    void valueChanged(double value);
    void valueChangedByUser(double value);
    void valueChangedByUser();

private:
    double m_reference = 0;
};
