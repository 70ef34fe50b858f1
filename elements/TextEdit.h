#pragma once
#include <QTextEdit>

#include "elements/ActiveElement.h"

// A free text of several lines. The widget tells only that its text
// changed, so the by-user slot also does the work of valueChanged.
class TextEdit : public QTextEdit, public ActiveElement
{
    Q_OBJECT
public:
    explicit TextEdit(QWidget *parent = nullptr);

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
    QString typeInfo() const override { return QStringLiteral("EditBox"); }

signals:
    void changedByUser();
    void updateMathLabels() override;
    void changed_sendUSB(const QString &data);
    void changed_setDef(const QString &data);

public slots:
    void sendData(const QString &text);
    void enable(bool enabled);
    void valueChanged(const QString &text);
    void valueChangedByUser();

private:
    void setQuietly(const QString &text);

    QString m_reference;
    // The text the change handling last ran for: a second call for the
    // same text (the widget's signal and an assignment both) does nothing.
    QString m_handled;
};
