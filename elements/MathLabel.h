#pragma once
#include <QLabel>
#include <QStringList>

#include "elements/ActiveElement.h"
#include "model/Expression.h"
#include "model/ResultFormat.h"

// A computed value: a formula over other defines, compiled once when the
// description is read and evaluated again whenever one of its operands
// changes (MathCascade). It has a define of its own, so other formulas,
// LEDs and exported registers can read it; on a bit range, `max` is the
// highest value the bits hold.
class MathLabel : public QLabel, public ActiveElement
{
    Q_OBJECT
public:
    explicit MathLabel(QWidget *parent = nullptr);

    // Cleans and compiles the formula; keeps `expression` as written.
    void setFormula(const QString &formula);
    const Expression &compiled() const { return m_expression; }

    // The compiled lists, as the evaluator takes them.
    QStringList postfix;
    QStringList literals;
    QStringList names;

    // False when the format has no known conversion (the kind stays
    // floating). Sets the `prefix` property ("0x" for hexadecimal).
    bool setFormat(const QString &format);
    const ResultFormat &resultFormat() const { return m_format; }
    QByteArray format() const { return m_format.format().toUtf8(); }
    int formatKind() const { return m_format.kind(); }

    double result() const { return m_result; }
    // Stores and shows a new result, runs the label's `changed` actions
    // (setDef, sendUSB, recData) and, for a label with a define, emits
    // updateMathLabels() so that what reads it follows.
    void showResult(double value);

    // ActiveElement
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    // Kind 0: the number (integers as such, floating through the format);
    // with `unformatted` the full double. 1: prefix, text and unit as shown.
    // 3: the integer shifted by lsb. 4: "MathLabel".
    QString value(int kind, bool unformatted = false) override;
    QString referenceValue() override;
    void connectSignals() override;
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    void updateToolTip() override;
    // Any range is accepted; it sets `max` (2^width - 1, or -1 without bits).
    bool setBits(int msb, int lsb) override;
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return QStringLiteral("MathLabel"); }

signals:
    void updateMathLabels();
    void changed_setDef(const QString &text);
    void changed_sendUSB(const QString &text);
    void changed_recData(const QString &text);

private:
    QString numberText(bool unformatted) const;
    void showText(const QString &text);

    Expression m_expression;
    ResultFormat m_format;
    double m_result = 0.0;
};
