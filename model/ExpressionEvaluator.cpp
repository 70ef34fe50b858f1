#include "model/ExpressionEvaluator.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/NumericCast.h"

#include <QVarLengthArray>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

ExpressionEvaluator::TabIndexLookup &tabIndexLookup()
{
    static ExpressionEvaluator::TabIndexLookup lookup;
    return lookup;
}

// Shift counts at or beyond the width give 0 instead of undefined behaviour;
// a negative count shifts the other way.
quint64 shift(quint64 value, double count, bool left)
{
    const qint64 n = NumericCast::toInt64(count);
    if (n < 0)
        left = !left;
    const quint64 magnitude = n < 0 ? quint64(0) - quint64(n) : quint64(n);
    if (magnitude >= 64)
        return 0;
    return left ? value << magnitude : value >> magnitude;
}

double binary(Expression::Op op, double left, double right)
{
    using Op = Expression::Op;
    switch (op) {
    case Op::Add: return left + right;
    case Op::Subtract: return left - right;
    case Op::Multiply: return left * right;
    case Op::Divide: return left / right;
    case Op::Power: return std::pow(left, right);
    case Op::Modulo: {
        const qint32 l = NumericCast::toInt32(left);
        const qint32 r = NumericCast::toInt32(right);
        if (r == 0)
            return -1;
        if (r == -1)
            return 0; // also for the minimum, whose quotient would overflow
        return l % r;
    }
    case Op::Less: return left < right ? 1 : 0;
    case Op::Greater: return left > right ? 1 : 0;
    case Op::LessOrEqual: return left <= right ? 1 : 0;
    case Op::GreaterOrEqual: return left >= right ? 1 : 0;
    case Op::Equal: return left == right ? 1 : 0;
    case Op::NotEqual: return left != right ? 1 : 0;
    case Op::BitAnd: return NumericCast::toUInt32(left) & NumericCast::toUInt32(right);
    case Op::BitOr: return NumericCast::toUInt32(left) | NumericCast::toUInt32(right);
    case Op::BitXor: return NumericCast::toUInt32(left) ^ NumericCast::toUInt32(right);
    case Op::ShiftLeft: return double(shift(NumericCast::toUInt64(left), right, true));
    case Op::ShiftRight: return double(shift(NumericCast::toUInt64(left), right, false));
    default: return 0;
    }
}

double function(Expression::Op op, double x)
{
    using Op = Expression::Op;
    switch (op) {
    case Op::Sin: return std::sin(x);
    case Op::Cos: return std::cos(x);
    case Op::Sqrt: return std::sqrt(x);
    case Op::Exp: return std::exp(x);
    case Op::Log: return std::log(x);
    case Op::Log10: return std::log10(x);
    case Op::Abs: return std::fabs(x);
    case Op::Trunc: return std::trunc(x);
    case Op::Round: return std::round(x);
    case Op::Floor: return std::floor(x);
    case Op::Ceil: return std::ceil(x);
    case Op::Rand: return double(std::rand());
    default: return 0;
    }
}

bool isBinary(Expression::Op op)
{
    return op >= Expression::Op::Add && op <= Expression::Op::ShiftRight;
}

bool isFunction(Expression::Op op)
{
    return op >= Expression::Op::Sin && op <= Expression::Op::Rand;
}

bool isTextElement(ActiveElement *element)
{
    const QString word = element->typeInfo();
    return word == QLatin1String("LineEdit") || word == QLatin1String("EditBox");
}

} // namespace

ExpressionEvaluator::ExpressionEvaluator(DocumentTables *tables)
    : m_tables(tables)
{
}

DocumentTables *ExpressionEvaluator::tables() const
{
    return m_tables ? m_tables : DocumentTables::current();
}

void ExpressionEvaluator::setTabIndexLookup(TabIndexLookup lookup)
{
    tabIndexLookup() = std::move(lookup);
}

double ExpressionEvaluator::operandValue(const QString &token) const
{
    return operandValue(Expression::Operand::fromToken(token));
}

double ExpressionEvaluator::operandValue(const Expression::Operand &operand) const
{
    if (operand.constant)
        return operand.value;

    if (DocumentTables *t = tables()) {
        // The define exactly as written, bit selection included.
        if (ActiveElement *element = t->elements.value(operand.token))
            return element->value(Selectors::Value).toDouble();
        if (DataClass *data = t->dataValues.value(operand.token)) {
            // Through single precision for integers too: documents were
            // tuned against values above 2^24 losing their low bits.
            if (data->datatype == DataClass::Float)
                return double(data->getFloat());
            return double(float(data->getValue()));
        }
        const int kind = operand.kind;
        if (kind <= Selectors::DefineValue || kind == Selectors::Address) {
            if (ActiveElement *element = t->elements.value(operand.reduced))
                return element->value(kind).toDouble();
        }
    }
    if (const TabIndexLookup &lookup = tabIndexLookup()) {
        int index = 0;
        if (lookup(operand.reduced, &index))
            return index;
    }
    Report::invalidFormulaValue(operand.reduced);
    return 0;
}

bool ExpressionEvaluator::isDefined(const Expression::Operand &operand) const
{
    if (operand.constant)
        return true;
    if (DocumentTables *t = tables()) {
        if (t->elements.contains(operand.token) || t->dataValues.contains(operand.token))
            return true;
        const int kind = operand.kind;
        if ((kind <= Selectors::DefineValue || kind == Selectors::Address) && t->elements.contains(operand.reduced))
            return true;
    }
    int index = 0;
    const TabIndexLookup &lookup = tabIndexLookup();
    return lookup && lookup(operand.reduced, &index);
}

double ExpressionEvaluator::evaluate(const QStringList &postfix, const QStringList &literals,
                                     const QStringList &names, bool *ok) const
{
    return evaluate(Expression(postfix, literals, names), ok);
}

double ExpressionEvaluator::evaluate(const Expression &expression, bool *ok) const
{
    using Op = Expression::Op;
    if (ok)
        *ok = true;

    const QVector<Expression::Step> &steps = expression.steps();
    const QVector<Expression::Operand> &operands = expression.operands();

    QVarLengthArray<double, 64> stack;
    auto pop = [&stack]() {
        const double top = stack.last();
        stack.removeLast();
        return top;
    };
    double result = 0;

    const int count = steps.size();
    for (int i = 0; i < count; ++i) {
        const Expression::Step &step = steps.at(i);
        if (step.op == Op::Operand) {
            const double value = operandValue(operands.at(step.operand));
            // A single token is the whole result; otherwise only computed
            // values count as the result, not fetched operands.
            if (count == 1)
                return value;
            stack.append(value);
        } else if (isBinary(step.op)) {
            if (stack.size() < 2)
                continue;
            const double right = pop();
            const double left = pop();
            result = binary(step.op, left, right);
            stack.append(result);
        } else if (step.op == Op::Unsupported) {
            if (stack.size() < 2)
                continue;
            if (ok)
                *ok = false;
            return 0;
        } else if (isFunction(step.op)) {
            if (stack.isEmpty())
                continue;
            result = function(step.op, pop());
            stack.append(result);
        } else if (step.op == Op::Conditional) {
            ++i; // the `?` that belongs to this `:`
            if (stack.isEmpty())
                continue;
            const double otherwise = pop();
            if (stack.isEmpty())
                continue;
            const double then = pop();
            if (stack.isEmpty())
                continue;
            const double condition = pop();
            result = NumericCast::toInt32(condition) != 0 ? then : otherwise;
            stack.append(result);
        }
    }
    return result;
}

bool ExpressionEvaluator::numericCondition(const Expression &expression, const QString &text) const
{
    bool ok = true;
    const double value = evaluate(expression, &ok);
    if (!ok)
        Report::invalidFormula(text);
    return value != 0;
}

bool ExpressionEvaluator::evaluateEnabled(const QString &text) const
{
    if (text.trimmed().isEmpty())
        return true;
    return numericCondition(Expression::fromCondition(text), text);
}

bool ExpressionEvaluator::evaluateCondition(const QString &text) const
{
    if (text.trimmed().isEmpty())
        return true;
    const Expression expression = Expression::fromCondition(text);
    if (!expression.hasString())
        return numericCondition(expression, text);

    // Only `define=="text"` and `define!="text"` on a text element.
    const QStringList &postfix = expression.postfix();
    if (postfix.size() != 3)
        return false;
    DocumentTables *t = tables();
    ActiveElement *element = t ? t->elements.value(postfix.at(0)) : nullptr;
    if (!element || !isTextElement(element))
        return false;
    QString expected = postfix.at(1);
    expected.remove(QLatin1Char('"'));
    const QString actual = element->value(Selectors::Value);
    const QString &op = postfix.at(2);
    if (op == QLatin1String("=="))
        return actual == expected;
    if (op == QLatin1String("!="))
        return actual != expected;
    return false;
}
