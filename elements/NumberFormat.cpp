#include "elements/NumberFormat.h"

#include <QRegularExpression>

namespace NumberFormat {

namespace {

QString cleaned(const QString &text)
{
    QString t = text.trimmed();
    t.remove(QLatin1Char('('));
    t.remove(QLatin1Char(')'));
    t.remove(QLatin1Char('u'));
    return t;
}

const QRegularExpression &decimalPattern()
{
    static const QRegularExpression re(QStringLiteral("^-?\\d+$"));
    return re;
}
const QRegularExpression &hexPattern()
{
    static const QRegularExpression re(QStringLiteral("^\\(?0x[0-9a-fA-F]+u?\\)?$"));
    return re;
}
const QRegularExpression &floatPattern()
{
    static const QRegularExpression re(QStringLiteral("^\\d+\\.\\d+$"));
    return re;
}
const QRegularExpression &binaryPattern()
{
    static const QRegularExpression re(QStringLiteral("^0b[0-1]+$"));
    return re;
}
const QRegularExpression &anyPattern()
{
    static const QRegularExpression re(QStringLiteral("^.+$"));
    return re;
}

} // namespace

NumberClass classifyNumber(const QString &text)
{
    const QString t = cleaned(text);
    if (decimalPattern().match(t).hasMatch())
        return Decimal;
    if (hexPattern().match(t).hasMatch())
        return Hexadecimal;
    if (floatPattern().match(t).hasMatch())
        return Floating;
    if (binaryPattern().match(t).hasMatch())
        return Binary;
    // The untrimmed input decides between "some text" and "nothing".
    if (anyPattern().match(text).hasMatch())
        return OtherText;
    return Empty;
}

QString normaliseNumber(const QString &text)
{
    switch (classifyNumber(text)) {
    case Decimal: {
        // The cleaned text is only looked at for its sign; the conversion
        // runs on the input, so "5u" and "(5)" fail and give 0.
        if (cleaned(text).startsWith(QLatin1Char('-')))
            return QString::number(text.toLongLong());
        return QString::number(text.toULongLong());
    }
    case Hexadecimal:
        return QString::number(cleaned(text).toULongLong(nullptr, 16));
    case Floating:
        return QString::number(text.toDouble(), 'g', 6);
    case Binary:
        return QString::number(text.mid(2).toULongLong(nullptr, 2));
    case OtherText:
        return text;
    case Empty:
        break;
    }
    return QString();
}

qint64 toInt64(const QString &text, bool *ok)
{
    const NumberClass cls = classifyNumber(text);
    if (ok)
        *ok = cls <= Binary;
    if (cls > Binary)
        return 0;
    const QString n = normaliseNumber(text);
    if (cls == Floating)
        return static_cast<qint64>(n.toDouble());
    if (n.startsWith(QLatin1Char('-')))
        return n.toLongLong();
    return static_cast<qint64>(n.toULongLong());
}

} // namespace NumberFormat
