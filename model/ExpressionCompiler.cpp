#include "model/ExpressionCompiler.h"

#include <QHash>
#include <QSet>
#include <QVector>

namespace {

// Read-only after its first use, so it is safe from any thread; an operator
// outside the table simply counts as 0.
const QHash<QString, int> &precedenceTable()
{
    static const QHash<QString, int> table = {
        {QStringLiteral("?"), 0}, {QStringLiteral(":"), 0},
        {QStringLiteral("<"), 2}, {QStringLiteral(">"), 2},
        {QStringLiteral(">="), 2}, {QStringLiteral("<="), 2},
        {QStringLiteral("=="), 2}, {QStringLiteral("!="), 2},
        {QStringLiteral("+"), 3}, {QStringLiteral("-"), 3},
        {QStringLiteral("*"), 4}, {QStringLiteral("/"), 4},
        {QStringLiteral("^"), 5},
    };
    return table;
}

const QSet<QString> &operatorSet()
{
    static const QSet<QString> set = {
        QStringLiteral("+"), QStringLiteral("-"), QStringLiteral("*"), QStringLiteral("/"),
        QStringLiteral("^"), QStringLiteral("%"), QStringLiteral("<"), QStringLiteral(">"),
        QStringLiteral("<="), QStringLiteral(">="), QStringLiteral("=="), QStringLiteral("!="),
        QStringLiteral("&"), QStringLiteral("|"), QStringLiteral("_"), QStringLiteral("~"),
        QStringLiteral("<<"), QStringLiteral(">>"), QStringLiteral("?"), QStringLiteral(":"),
        QStringLiteral("="), QStringLiteral("!"),
    };
    return set;
}

// The operators that a following operator of lower or equal strength may pop.
// `^`, `%`, `<<`, `>>` are left out on purpose: documents rely on them
// swallowing the rest of their parenthesis level.
const QSet<QString> &poppableSet()
{
    static const QSet<QString> set = {
        QStringLiteral("+"), QStringLiteral("-"), QStringLiteral("*"), QStringLiteral("/"),
        QStringLiteral("<"), QStringLiteral(">"), QStringLiteral("<="), QStringLiteral(">="),
        QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("?"), QStringLiteral(":"),
        QStringLiteral("~"), QStringLiteral("&"), QStringLiteral("|"), QStringLiteral("_"),
    };
    return set;
}

const QSet<QString> &functionSet()
{
    static const QSet<QString> set = {
        QStringLiteral("sin"), QStringLiteral("cos"), QStringLiteral("sqrt"), QStringLiteral("exp"),
        QStringLiteral("log"), QStringLiteral("log10"), QStringLiteral("abs"), QStringLiteral("trunc"),
        QStringLiteral("round"), QStringLiteral("floor"), QStringLiteral("ceil"), QStringLiteral("rand"),
    };
    return set;
}

// States of the tokeniser besides "nothing pending" and a pending operator
// character. After `<<`, `>>`, `<=`, `>=` a minus is still unary.
const QChar NoPending(u'\0');
const QChar AfterCompound(u'\x01');

bool lowerOrEqual(const QString &token, const QString &top)
{
    const int mine = ExpressionCompiler::precedence(token);
    const int theirs = ExpressionCompiler::precedence(top);
    if (token == QLatin1String(":") || top == QLatin1String(":"))
        return mine < theirs;
    return mine <= theirs;
}

} // namespace

QString ExpressionCompiler::cleanFormula(const QString &text)
{
    QString cleaned = text.simplified();
    cleaned.remove(QLatin1Char(' '));
    cleaned.replace(QLatin1String("--"), QLatin1String("+"));
    return cleaned;
}

QString ExpressionCompiler::cleanCondition(const QString &text)
{
    QString cleaned = text;
    cleaned.remove(QLatin1Char(' '));
    return cleaned;
}

int ExpressionCompiler::precedence(const QString &op)
{
    return precedenceTable().value(op, 0);
}

bool ExpressionCompiler::isFunction(const QString &token)
{
    return functionSet().contains(token);
}

bool ExpressionCompiler::isOperator(const QString &token)
{
    return operatorSet().contains(token);
}

void ExpressionCompiler::tokenise(const QString &text, QStringList &tokens, QStringList &literals,
                                  QStringList &names, bool &hasString)
{
    QString buffer;
    QChar pending = NoPending;
    bool closeAfterOperand = false;

    auto flush = [&]() {
        if (buffer.isEmpty())
            return;
        const QString operand = buffer.trimmed();
        buffer.clear();
        const QChar first = operand.isEmpty() ? QChar() : operand.at(0);
        if (first.isDigit() || operand.startsWith(QLatin1String("0x"))) {
            literals.append(operand);
        } else if (first == QLatin1Char('"')) {
            literals.append(operand);
            hasString = true;
        } else if (first == QLatin1Char('-') && operand.size() > 1 && operand.at(1).isDigit()) {
            literals.append(operand);
        } else if (!isFunction(operand)) {
            names.append(operand);
        }
        tokens.append(operand);
        if (closeAfterOperand) {
            tokens.append(QStringLiteral(")"));
            closeAfterOperand = false;
        }
    };

    const int length = text.size();
    for (int i = 0; i < length; ++i) {
        const QChar c = text.at(i);

        if (pending == NoPending) {
            switch (c.unicode()) {
            case '&': case '|': case '~': case '?': case ':': case ')': case '+': case '%':
                flush();
                tokens.append(QString(c));
                break;
            case '<': case '>': case '=': case '!': case '*': case '/': case '^': case '(':
                flush();
                pending = c;
                break;
            case '-':
                if (i == 0) {
                    buffer.append(c);
                } else {
                    flush();
                    pending = c;
                }
                break;
            case '.':
                pending = c;
                break;
            case '[': {
                // A bit selection such as [7:4] belongs to its operand; its
                // colon must not become the conditional operator.
                const int close = text.indexOf(QLatin1Char(']'), i);
                const int end = close < 0 ? length : close + 1;
                buffer.append(text.midRef(i, end - i));
                i = end - 1;
                break;
            }
            default:
                buffer.append(c);
                break;
            }
            continue;
        }

        switch (pending.unicode()) {
        case '<':
        case '>':
            if (c == pending || c == QLatin1Char('=')) {
                tokens.append(QString(pending) + c);
                pending = AfterCompound;
            } else {
                tokens.append(QString(pending));
                buffer.append(c);
                pending = NoPending;
            }
            break;
        case '=':
            if (c == QLatin1Char('=')) {
                tokens.append(QStringLiteral("=="));
            } else {
                tokens.append(QStringLiteral("="));
                buffer.append(c);
            }
            pending = NoPending;
            break;
        case '!':
            if (c == QLatin1Char('=')) {
                tokens.append(QStringLiteral("!="));
            } else {
                tokens.append(QStringLiteral("!"));
                buffer.append(c);
            }
            pending = NoPending;
            break;
        case '*': case '/': case '^': case '(': case '\x01':
            // After-compound emits nothing of its own: its token would be
            // one that no later stage knows, and it would drop out anyway.
            if (c == QLatin1Char('-')) {
                if (pending != AfterCompound)
                    tokens.append(QString(pending));
                tokens.append(QStringLiteral("("));
                tokens.append(QStringLiteral("0"));
                tokens.append(QStringLiteral("-"));
                literals.append(QStringLiteral("0"));
                closeAfterOperand = true;
                pending = NoPending;
            } else if (c == QLatin1Char('(')) {
                if (pending != AfterCompound)
                    tokens.append(QString(pending));
                pending = c;
            } else {
                if (pending != AfterCompound)
                    tokens.append(QString(pending));
                buffer.append(c);
                pending = NoPending;
            }
            break;
        case '-':
            tokens.append(QStringLiteral("-"));
            if (c == QLatin1Char('(')) {
                pending = c;
            } else {
                buffer.append(c);
                pending = NoPending;
            }
            break;
        case '.':
            if (c == QLatin1Char('+')) {
                flush();
                tokens.append(QStringLiteral("|"));
            } else if (c == QLatin1Char('*')) {
                flush();
                tokens.append(QStringLiteral("&"));
            } else if (c == QLatin1Char('^')) {
                flush();
                tokens.append(QStringLiteral("_"));
            } else {
                buffer.append(QLatin1Char('.'));
                buffer.append(c);
            }
            pending = NoPending;
            break;
        default:
            pending = NoPending;
            break;
        }
    }
    // A trailing operator is dropped: `a*` means `a`.
    flush();
}

QStringList ExpressionCompiler::toPostfix(const QStringList &tokens, const QStringList &literals,
                                          const QStringList &names)
{
    // Sets, so that a formula of thousands of operands compiles in linear time.
    QSet<QString> operands;
    operands.reserve(literals.size() + names.size());
    for (const QString &s : literals)
        operands.insert(s);
    for (const QString &s : names)
        operands.insert(s);

    const QString open = QStringLiteral("(");
    const QString close = QStringLiteral(")");
    const QSet<QString> &poppable = poppableSet();

    QStringList output;
    output.reserve(tokens.size());
    QVector<QString> stack;

    for (const QString &token : tokens) {
        if (operands.contains(token)) {
            output.append(token);
        } else if (isFunction(token)) {
            stack.append(token);
        } else if (isOperator(token)) {
            bool lower = !stack.isEmpty() && lowerOrEqual(token, stack.last());
            while (!stack.isEmpty() && poppable.contains(stack.last()) && lower) {
                output.append(stack.takeLast());
                lower = !stack.isEmpty() && lowerOrEqual(token, stack.last());
            }
            stack.append(token);
        } else if (token == open) {
            stack.append(token);
        } else if (token == close) {
            while (!stack.isEmpty()) {
                QString top = stack.takeLast();
                if (top == open)
                    break;
                output.append(top);
            }
            if (!stack.isEmpty() && isFunction(stack.last()))
                output.append(stack.takeLast());
        }
        // Anything else drops out.
    }
    while (!stack.isEmpty()) {
        QString top = stack.takeLast();
        if (top == open)
            break;
        output.append(top);
    }
    return output;
}
