#include "views/PinCondition.h"

#include "elements/DefineLookup.h"
#include "elements/DocumentTables.h"
#include "model/ExpressionCompiler.h"
#include "model/ExpressionEvaluator.h"
#include "elements/NumberFormat.h"

#include <QStringList>

namespace {

DocumentTables *resolve(DocumentTables *tables)
{
    return tables ? tables : DocumentTables::current();
}

// Texts are compared as written; two texts that both read as numbers are
// equal when the numbers are ("6" and "0x6"), since a form shows a value in
// whatever base its element uses.
bool sameValue(const QString &actual, const QString &expected)
{
    if (actual == expected)
        return true;
    bool okA = false;
    bool okE = false;
    const double a = normaliseNumber(actual).toDouble(&okA);
    const double e = normaliseNumber(expected).toDouble(&okE);
    return okA && okE && a == e;
}

} // namespace

PinCondition::PinCondition(const QString &text)
{
    compile(text);
}

void PinCondition::compile(const QString &text)
{
    m_text = text;
    m_define.clear();
    m_expected.clear();
    m_negated = false;
    m_expression = ::Expression();

    const QString clean = ExpressionCompiler::cleanFormula(text);
    if (clean.isEmpty()) {
        m_form = Form::Always;
        return;
    }
    QStringList tokens;
    QStringList literals;
    QStringList names;
    bool hasString = false;
    ExpressionCompiler::tokenise(clean, tokens, literals, names, hasString);
    if (tokens.size() == 3 && (tokens.at(1) == QLatin1String("==") || tokens.at(1) == QLatin1String("!="))) {
        // Whether the first token names an element is only known when the
        // form exists (the file is read before it): holds() decides.
        m_form = Form::TextCompare;
        m_define = tokens.at(0);
        m_expected = tokens.at(2);
        if (m_expected.startsWith(QLatin1Char('"')))
            m_expected.remove(0, 1);
        if (m_expected.endsWith(QLatin1Char('"')))
            m_expected.chop(1);
        m_negated = tokens.at(1) == QLatin1String("!=");
        m_expression = ::Expression::fromFormula(text);
        return;
    }
    m_form = Form::Expression;
    m_expression = ::Expression::fromFormula(text);
}

bool PinCondition::expressionHolds(DocumentTables *t) const
{
    if (!t || m_expression.isEmpty())
        return false;
    ExpressionEvaluator evaluator(t);
    for (const ::Expression::Operand &operand : m_expression.operands()) {
        if (!evaluator.isDefined(operand))
            return false;
    }
    bool ok = true;
    const double result = evaluator.evaluate(m_expression, &ok);
    return ok && result != 0.0;
}

bool PinCondition::holds(DocumentTables *tables) const
{
    switch (m_form) {
    case Form::Always:
        return true;
    case Form::TextCompare: {
        DocumentTables *t = resolve(tables);
        bool found = false;
        const QString actual = DefineLookup::valueText(t, m_define, &found);
        if (found)
            return sameValue(actual, m_expected) != m_negated;
        // Not a name of the form: the whole is an expression after all.
        return expressionHolds(t);
    }
    case Form::Expression:
        return expressionHolds(resolve(tables));
    }
    return false;
}
