#pragma once
#include <QComboBox>

#include "elements/ActiveElement.h"

// A list element for tests of the model: a combo box whose addItem() appends
// an item (text, data = value) the way a real list merges enumerated values,
// and records every call in order.
class FakeListElement : public QComboBox, public ActiveElement
{
    Q_OBJECT
public:
    struct Call {
        QString name;
        QString description;
        int value;
    };

    explicit FakeListElement(const QString &define = QString(), QWidget *parent = nullptr);

    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return QString(); }
    void connectSignals() override {}
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override { QComboBox::setEnabled(enabled); }
    bool setBits(int msb, int lsb) override;
    void addItem(const QString &name, const QString &description, int value) override;
    void updateMathLabels() override {}
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return QStringLiteral("ComboBox"); }

    QList<Call> calls;
};
