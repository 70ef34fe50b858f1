#pragma once
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

class QObject;

// A compiled formula: the three text lists `postfix`, `literals` and `names`,
// plus a prepared form of them so that an evaluation neither re-tokenises
// nor re-parses its numbers. A MathLabel compiles its formula once with
// fromFormula() and evaluates it at every change of an operand through
// ExpressionEvaluator; `names` tells which defines it depends on.
//
// Cheap to copy (the lists are implicitly shared).
class Expression
{
public:
    // One operand as evaluation needs it. Numbers are read once; everything
    // else is looked up in the form at every evaluation.
    struct Operand
    {
        QString token;
        // The token without its selector (".label" and so on), and that
        // selector's kind; used when no element bears the whole token.
        QString reduced;
        int kind = 0;
        bool constant = false;
        double value = 0.0;

        static Operand fromToken(const QString &token);
    };

    enum class Op : quint8 {
        Operand,
        // Binary operators.
        Add, Subtract, Multiply, Divide, Power, Modulo,
        Less, Greater, LessOrEqual, GreaterOrEqual, Equal, NotEqual,
        BitAnd, BitOr, BitXor, ShiftLeft, ShiftRight,
        // Operators the language accepts but cannot compute (`~`, a lone
        // `?`, `=`, `!`): they invalidate the evaluation.
        Unsupported,
        // One-argument functions.
        Sin, Cos, Sqrt, Exp, Log, Log10, Abs, Trunc, Round, Floor, Ceil, Rand,
        // `:` of a conditional; the `?` behind it is skipped.
        Conditional,
        Skip
    };

    struct Step
    {
        Op op = Op::Skip;
        // Index into operands() for Op::Operand, else -1.
        int operand = -1;
    };

    Expression() = default;
    // Prepares lists that were compiled elsewhere (or kept by an owner).
    Expression(const QStringList &postfix, const QStringList &literals, const QStringList &names,
               bool hasString = false);

    // A `formula` attribute: cleaned, tokenised, duplicates removed from
    // `names`, converted to postfix.
    static Expression fromFormula(const QString &formula);
    // A condition: blanks removed, tokenised, converted to postfix.
    static Expression fromCondition(const QString &text);
    // Text that is already clean.
    static Expression compile(const QString &cleanText);

    const QStringList &postfix() const { return m_postfix; }
    const QStringList &literals() const { return m_literals; }
    const QStringList &names() const { return m_names; }
    // Whether a quoted string occurred among the operands.
    bool hasString() const { return m_hasString; }
    bool isEmpty() const { return m_postfix.isEmpty(); }

    // Whether a change of the define `name` can change the result.
    bool dependsOn(const QString &name) const { return m_names.contains(name); }
    // Enters `dependent` in a dependents table (define -> displays that read
    // it) once under each of `names`.
    void addDependent(QHash<QString, QList<QObject *>> &table, QObject *dependent) const;

    const QVector<Step> &steps() const { return m_steps; }
    const QVector<Operand> &operands() const { return m_operands; }

private:
    void prepare();

    QStringList m_postfix;
    QStringList m_literals;
    QStringList m_names;
    bool m_hasString = false;

    QVector<Step> m_steps;
    QVector<Operand> m_operands;
};
