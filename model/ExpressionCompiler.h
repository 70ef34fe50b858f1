#pragma once
#include <QString>
#include <QStringList>

// Turns the text of a formula or a condition into postfix order. The three
// stages (cleaning, tokenising, shunting-yard) reproduce the language that
// existing descriptions were written against, quirks included: `^`, `%`,
// `<<` and `>>` are never popped by a following operator, so they take as
// right operand everything up to the next `)` or the end of the text
// (`1<<2+3` is 1 shifted by 5). Do not "fix" these rules, or documents in
// the field change their meaning.
//
// Operands are kept as text; Expression prepares them for evaluation.
class ExpressionCompiler
{
public:
    // A `formula` attribute: runs of white space become one blank, blanks
    // are removed, and each "--" becomes "+".
    static QString cleanFormula(const QString &text);
    // A condition of an action or data string: only the blanks are removed.
    static QString cleanCondition(const QString &text);

    // One pass over the characters. Every token goes to `tokens`; numbers and
    // quoted strings are also added to `literals` (a quoted string sets
    // `hasString`), define names to `names`, function names to neither.
    // `pending` operators are rewritten on the way: `a.+b` is or, `a.*b`
    // and, `a.^b` exclusive or (the internal `_`), and a minus behind `*`,
    // `/`, `^`, `(`, `<<`, `>>`, `<=` or `>=` becomes `( 0 - operand )`.
    static void tokenise(const QString &text, QStringList &tokens, QStringList &literals,
                         QStringList &names, bool &hasString);

    // Shunting-yard over the tokens; tokens that are neither operands,
    // operators, functions nor parentheses drop out.
    static QStringList toPostfix(const QStringList &tokens, const QStringList &literals,
                                 const QStringList &names);

    // The operator's binding strength; 0 for operators outside the table.
    static int precedence(const QString &op);
    static bool isFunction(const QString &token);
    // Any operator text the tokeniser can produce, including those that the
    // evaluator refuses (`~`, `=`, `!`).
    static bool isOperator(const QString &token);
};
