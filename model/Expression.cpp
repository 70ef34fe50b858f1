#include "model/Expression.h"

#include "elements/NumberFormat.h"
#include "elements/Selectors.h"
#include "model/ExpressionCompiler.h"

#include <QObject>
#include <QSet>

namespace {

const QHash<QString, Expression::Op> &opTable()
{
    using Op = Expression::Op;
    static const QHash<QString, Op> table = {
        {QStringLiteral("+"), Op::Add}, {QStringLiteral("-"), Op::Subtract},
        {QStringLiteral("*"), Op::Multiply}, {QStringLiteral("/"), Op::Divide},
        {QStringLiteral("^"), Op::Power}, {QStringLiteral("%"), Op::Modulo},
        {QStringLiteral("<"), Op::Less}, {QStringLiteral(">"), Op::Greater},
        {QStringLiteral("<="), Op::LessOrEqual}, {QStringLiteral(">="), Op::GreaterOrEqual},
        {QStringLiteral("=="), Op::Equal}, {QStringLiteral("!="), Op::NotEqual},
        {QStringLiteral("&"), Op::BitAnd}, {QStringLiteral("|"), Op::BitOr},
        {QStringLiteral("_"), Op::BitXor}, {QStringLiteral("<<"), Op::ShiftLeft},
        {QStringLiteral(">>"), Op::ShiftRight},
        {QStringLiteral("sin"), Op::Sin}, {QStringLiteral("cos"), Op::Cos},
        {QStringLiteral("sqrt"), Op::Sqrt}, {QStringLiteral("exp"), Op::Exp},
        {QStringLiteral("log"), Op::Log}, {QStringLiteral("log10"), Op::Log10},
        {QStringLiteral("abs"), Op::Abs}, {QStringLiteral("trunc"), Op::Trunc},
        {QStringLiteral("round"), Op::Round}, {QStringLiteral("floor"), Op::Floor},
        {QStringLiteral("ceil"), Op::Ceil}, {QStringLiteral("rand"), Op::Rand},
        {QStringLiteral(":"), Op::Conditional},
    };
    return table;
}

} // namespace

Expression::Operand Expression::Operand::fromToken(const QString &token)
{
    Operand operand;
    operand.token = token;

    bool ok = false;
    const double number = token.toDouble(&ok);
    if (ok) {
        operand.constant = true;
        operand.value = number;
        return operand;
    }
    // Spellings that the double conversion refuses but the shared number
    // rules know: hexadecimal (read as a signed 64-bit pattern), binary, and
    // decimals with a suffix (which those rules turn into 0).
    const NumberFormat::NumberClass cls = classifyNumber(token);
    if (cls == NumberFormat::Hexadecimal && token.startsWith(QLatin1String("0x"))) {
        operand.constant = true;
        operand.value = double(qint64(normaliseNumber(token).toULongLong()));
        return operand;
    }
    if (cls == NumberFormat::Decimal || cls == NumberFormat::Binary) {
        operand.constant = true;
        operand.value = normaliseNumber(token).toDouble();
        return operand;
    }

    operand.kind = Selectors::selectorKind(token);
    operand.reduced = Selectors::removeSelector(token, operand.kind);
    return operand;
}

Expression::Expression(const QStringList &postfix, const QStringList &literals, const QStringList &names,
                       bool hasString)
    : m_postfix(postfix)
    , m_literals(literals)
    , m_names(names)
    , m_hasString(hasString)
{
    prepare();
}

Expression Expression::fromFormula(const QString &formula)
{
    QStringList tokens, literals, names;
    bool hasString = false;
    ExpressionCompiler::tokenise(ExpressionCompiler::cleanFormula(formula), tokens, literals, names, hasString);
    names.removeDuplicates();
    return Expression(ExpressionCompiler::toPostfix(tokens, literals, names), literals, names, hasString);
}

Expression Expression::fromCondition(const QString &text)
{
    return compile(ExpressionCompiler::cleanCondition(text));
}

Expression Expression::compile(const QString &cleanText)
{
    QStringList tokens, literals, names;
    bool hasString = false;
    ExpressionCompiler::tokenise(cleanText, tokens, literals, names, hasString);
    return Expression(ExpressionCompiler::toPostfix(tokens, literals, names), literals, names, hasString);
}

void Expression::addDependent(QHash<QString, QList<QObject *>> &table, QObject *dependent) const
{
    QSet<QString> seen;
    for (const QString &name : m_names) {
        if (seen.contains(name))
            continue;
        seen.insert(name);
        QList<QObject *> &list = table[name];
        if (!list.contains(dependent))
            list.append(dependent);
    }
}

void Expression::prepare()
{
    m_steps.clear();
    m_operands.clear();
    m_steps.reserve(m_postfix.size());

    QHash<QString, int> operandIndex;
    auto operandStep = [&](const QString &token) {
        auto it = operandIndex.constFind(token);
        int index;
        if (it != operandIndex.constEnd()) {
            index = it.value();
        } else {
            index = m_operands.size();
            m_operands.append(Operand::fromToken(token));
            operandIndex.insert(token, index);
        }
        m_steps.append(Step{Op::Operand, index});
    };

    // A lone token is an operand, whatever it is: `+` alone reports itself
    // as an invalid value instead of silently giving 0.
    if (m_postfix.size() == 1) {
        operandStep(m_postfix.first());
        return;
    }

    QSet<QString> operandTokens;
    for (const QString &s : m_literals)
        operandTokens.insert(s);
    for (const QString &s : m_names)
        operandTokens.insert(s);

    for (const QString &token : m_postfix) {
        if (operandTokens.contains(token)) {
            operandStep(token);
            continue;
        }
        auto it = opTable().constFind(token);
        if (it != opTable().constEnd())
            m_steps.append(Step{it.value(), -1});
        else if (ExpressionCompiler::isOperator(token))
            m_steps.append(Step{Op::Unsupported, -1});
        else
            m_steps.append(Step{Op::Skip, -1});
    }
}
