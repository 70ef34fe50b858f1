#pragma once
#include <QLineEdit>

#include "elements/ActiveElement.h"

// A free text; with `numeric` set its value is the text as a normalised
// number. It holds no register bits.
class LineEdit : public QLineEdit, public ActiveElement
{
    Q_OBJECT
public:
    explicit LineEdit(QWidget *parent = nullptr);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return m_reference; }
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
    QString typeInfo() const override { return QStringLiteral("LineEdit"); }

    void setNumeric(bool numeric);
    bool isNumeric() const { return m_numeric; }

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_setDef(const QString &data);
    void changed_runScript(const QString &data);

public slots:
    void sendData(const QString &text);
    void enable(bool enabled);
    void valueChanged(const QString &text);
    void valueChangedByUser(const QString &text);
    void valueChangedByUser();

private:
    QString m_reference;
    bool m_numeric = false;
};
