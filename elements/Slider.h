#pragma once
#include <QSlider>

#include "elements/ActiveElement.h"

// A whole number on a slider; ranges and bits as for a SpinBox.
class Slider : public QSlider, public ActiveElement
{
    Q_OBJECT
public:
    explicit Slider(QWidget *parent = nullptr);

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
    QString typeInfo() const override { return QStringLiteral("Slider"); }

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
