#include "model/DefineText.h"

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

namespace {

QString beforeBracket(const QString &text)
{
    const int at = text.indexOf(QLatin1Char('['));
    return at < 0 ? text : text.left(at);
}

// Automatic base, so "0x10" is allowed (and, as a consequence, "010" is
// octal); anything unreadable means "no bit".
int bitNumber(const QString &text)
{
    bool ok = false;
    const int n = text.toInt(&ok, 0);
    return ok ? n : -1;
}

} // namespace

DefineText DefineText::parse(const QString &define)
{
    DefineText d;
    const QVector<QStringRef> tokens = define.splitRef(QLatin1Char('.'));
    d.peripheral = tokens.value(0).toString();
    if (tokens.size() > 1)
        d.registerName = beforeBracket(tokens.at(1).toString());
    if (tokens.size() == 3) {
        d.hasField = true;
        d.field = beforeBracket(tokens.at(2).toString());
    }

    // The whole text is split, not only the part after the last name: a
    // define such as "P.R[7:4].X" has four parts and so no bit range.
    static const QRegularExpression separators(QStringLiteral("\\[|\\:|\\]"));
    const QStringList parts = define.split(separators, Qt::SkipEmptyParts);
    if (parts.size() == 3) {
        d.msb = bitNumber(parts.at(1));
        d.lsb = bitNumber(parts.at(2));
    } else if (parts.size() == 2) {
        d.msb = d.lsb = bitNumber(parts.at(1));
    }
    return d;
}
