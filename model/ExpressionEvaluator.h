#pragma once
#include <QString>
#include <QStringList>
#include <functional>

#include "model/Expression.h"

class DocumentTables;

// Evaluates compiled expressions against the open document: operands are
// fetched from the elements and DataClass records at every evaluation and
// never cached, so a result always reflects the current form.
//
// A MathLabel keeps an Expression and calls evaluate() on each change of
// one of its names; actions, data strings and `startcond` call
// evaluateCondition(), push buttons evaluateEnabled().
class ExpressionEvaluator
{
public:
    // Lookups go to `tables`, or, when null, to DocumentTables::current() at
    // the time of each call.
    explicit ExpressionEvaluator(DocumentTables *tables = nullptr);

    // The value computed last (not the stack top); 0 when nothing was
    // computed. `*ok` becomes false when the expression uses an operator the
    // language cannot compute (`~`, for one); the result is then 0.
    double evaluate(const Expression &expression, bool *ok = nullptr) const;
    double evaluate(const QStringList &postfix, const QStringList &literals, const QStringList &names,
                    bool *ok = nullptr) const;

    // A number, a hexadecimal text, an element (kind-0 value, or the kind of
    // its selector), a DataClass record or a tab widget's current page.
    // Anything else reports "Invalid value in formula" and gives 0.
    double operandValue(const QString &token) const;
    double operandValue(const Expression::Operand &operand) const;
    // Whether operandValue finds something for the operand (a constant, an
    // element, a data value or a tab page), without a report.
    bool isDefined(const Expression::Operand &operand) const;

    // True for an empty text. A condition with a quoted string compares a
    // LineEdit's or TextEdit's text: `define=="text"` or `define!="text"`.
    // Otherwise true when the value is not 0.
    bool evaluateCondition(const QString &text) const;
    // The numeric part of evaluateCondition(): strings are not compared.
    bool evaluateEnabled(const QString &text) const;

    // Tab widgets are containers, which the tables keep behind an interface
    // this layer does not know; whoever owns them answers by name here.
    // The function returns false for names that are not a tab widget.
    using TabIndexLookup = std::function<bool(const QString &name, int *index)>;
    static void setTabIndexLookup(TabIndexLookup lookup);

private:
    DocumentTables *tables() const;
    bool numericCondition(const Expression &expression, const QString &text) const;

    DocumentTables *m_tables = nullptr;
};
