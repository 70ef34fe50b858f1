#pragma once
#include <QWidget>

#include "elements/ActiveElement.h"

// A minimal value element for tests of the model and the engines: holds one
// number, accepts any bit range whose width can hold its maximum (like a
// spin box with a declared range), and counts the calls the model makes.
class FakeElement : public QWidget, public ActiveElement
{
    Q_OBJECT
public:
    explicit FakeElement(const QString &define = QString(), QWidget *parent = nullptr);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return m_reference; }
    void connectSignals() override {}
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override { QWidget::setEnabled(enabled); }
    bool setBits(int msb, int lsb) override;
    void updateMathLabels() override { emit mathLabelsUpdate(); }
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return QStringLiteral("Fake"); }

    // Raw value; value(DefineValue) shifts it by the lsb property.
    qint64 number = 0;
    // Largest value the element must hold; setBits refuses narrower ranges.
    qint64 maximum = 1;
    // When set, value(DefineValue) returns this text instead of a number.
    QString overrideText;
    int setBitsCalls = 0;

signals:
    void mathLabelsUpdate();

private:
    QString m_reference;
};
