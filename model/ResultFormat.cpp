#include "model/ResultFormat.h"

#include "elements/MessageSink.h"
#include "model/NumericCast.h"

#include <QRegularExpression>

namespace {

// Widths and precisions beyond this only make huge strings.
constexpr int MaxFieldSize = 128;

QString unescapePercent(QString text)
{
    return text.replace(QLatin1String("%%"), QLatin1String("%"));
}

bool isIntegerConversion(char c)
{
    return c == 'd' || c == 'i' || c == 'o' || c == 'u' || c == 'x' || c == 'X';
}

bool isFloatConversion(char c)
{
    return c == 'e' || c == 'E' || c == 'f' || c == 'F' || c == 'g' || c == 'G';
}

// Reads digits at `pos`, clamped; returns -1 when there are none.
int readNumber(const QString &text, int &pos)
{
    int value = -1;
    while (pos < text.size() && text.at(pos).isDigit()) {
        const int digit = text.at(pos).digitValue();
        value = value < 0 ? digit : qMin(MaxFieldSize, value * 10 + digit);
        ++pos;
    }
    return value;
}

} // namespace

ResultFormat::ResultFormat(const QString &format)
    : m_format(format)
{
    m_kind = kindOf(format, &m_known);

    const int n = format.size();
    int i = 0;
    while (i < n) {
        if (format.at(i) != QLatin1Char('%')) {
            ++i;
            continue;
        }
        if (i + 1 < n && format.at(i + 1) == QLatin1Char('%')) {
            i += 2;
            continue;
        }
        int pos = i + 1;
        QByteArray directive("%");
        while (pos < n && QStringLiteral("-+ #0").contains(format.at(pos))) {
            directive.append(char(format.at(pos).unicode()));
            ++pos;
        }
        const int width = readNumber(format, pos);
        if (width >= 0)
            directive.append(QByteArray::number(width));
        if (pos < n && format.at(pos) == QLatin1Char('.')) {
            ++pos;
            directive.append('.');
            directive.append(QByteArray::number(qMax(0, readNumber(format, pos))));
        }
        int bits = 32;
        // On the platform descriptions were written for, `long` is 32 bits.
        const QString rest = format.mid(pos, 2);
        if (rest.startsWith(QLatin1String("hh"))) { bits = 8; pos += 2; }
        else if (rest.startsWith(QLatin1String("ll"))) { bits = 64; pos += 2; }
        else if (rest.startsWith(QLatin1Char('h'))) { bits = 16; pos += 1; }
        else if (rest.startsWith(QLatin1Char('l'))) { bits = 32; pos += 1; }
        else if (!rest.isEmpty() && QStringLiteral("Ljzqt").contains(rest.at(0))) { bits = 64; pos += 1; }

        const char conversion = pos < n && format.at(pos).unicode() < 128 ? char(format.at(pos).unicode()) : 0;
        if (isIntegerConversion(conversion) || isFloatConversion(conversion)) {
            m_hasConversion = true;
            m_before = unescapePercent(format.left(i));
            m_after = unescapePercent(format.mid(pos + 1));
            m_directive = directive;
            m_conversion = conversion;
            m_integerBits = bits;
            return;
        }
        ++i;
    }
    m_before = unescapePercent(format);
}

QString ResultFormat::defaultFormat(bool registerBound)
{
    return registerBound ? QStringLiteral("%d") : QStringLiteral("%4.2f");
}

ResultFormat::Kind ResultFormat::kindOf(const QString &format, bool *known)
{
    Kind kind = Floating;
    bool found = true;
    if (format.contains(QLatin1Char('b')) || format.contains(QLatin1Char('B')))
        kind = Binary;
    else if (format.contains(QLatin1Char('f')) || format.contains(QLatin1Char('g')))
        kind = Floating;
    else if (format.contains(QLatin1Char('d')) || format.contains(QLatin1Char('u')))
        kind = Decimal;
    else if (format.contains(QLatin1Char('x')) || format.contains(QLatin1Char('X')))
        kind = Hexadecimal;
    else
        found = false;
    if (known)
        *known = found;
    return kind;
}

QString ResultFormat::prefix() const
{
    return m_kind == Hexadecimal ? QStringLiteral("0x") : QString();
}

QString ResultFormat::text(double value) const
{
    if (m_kind == Binary)
        return binaryText(value);
    QString shown = printfText(value);
    if (shown.contains(QLatin1Char('.'))) {
        static const QRegularExpression zeros(QStringLiteral("0+$"));
        static const QRegularExpression point(QStringLiteral("\\.$"));
        shown.remove(zeros);
        shown.remove(point);
    }
    return shown;
}

QString ResultFormat::labelText(double value, const QString &suffix) const
{
    return QStringLiteral("%1%2%3").arg(prefix(), text(value), suffix);
}

QString ResultFormat::unformatted(double value)
{
    return QString::number(value, 'g', 32);
}

QString ResultFormat::unknownFormatMessage(const QString &define)
{
    QString link = define;
    link.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
    return QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>Unknown format in <a href=\"%1\">%2</a><br>")
        .arg(link, define);
}

void ResultFormat::reportUnknownFormat(const QString &define)
{
    consolePrint(unknownFormatMessage(define));
}

QString ResultFormat::binaryText(double value) const
{
    const int percent = m_format.indexOf(QLatin1Char('%'));
    if (percent < 0)
        return QString::number(NumericCast::toInt64(value));

    const int lastB = qMax(m_format.lastIndexOf(QLatin1Char('b')), m_format.lastIndexOf(QLatin1Char('B')));
    int width = 0;
    if (lastB > percent) {
        bool ok = false;
        width = m_format.mid(percent + 1, lastB - percent - 1).toInt(&ok);
        if (!ok || width < 0)
            width = 0;
        width = qMin(width, MaxFieldSize);
    }
    const bool zeroFill = percent + 1 < m_format.size() && m_format.at(percent + 1) == QLatin1Char('0');
    const QString digits = QString::number(NumericCast::toUInt32(value), 2)
                               .rightJustified(width, zeroFill ? QLatin1Char('0') : QLatin1Char(' '));

    QString grouped;
    grouped.reserve(digits.size() + digits.size() / 4);
    const int n = digits.size();
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 4 == 0)
            grouped.append(QLatin1Char(' '));
        grouped.append(digits.at(i));
    }
    return m_format.left(percent) + grouped;
}

QString ResultFormat::printfText(double value) const
{
    if (!m_hasConversion)
        return m_before;

    const bool integerKind = m_kind == Decimal || m_kind == Hexadecimal;
    QString number;
    if (isFloatConversion(m_conversion)) {
        const double argument = integerKind ? double(NumericCast::toUInt64(value)) : value;
        number = QString::asprintf((m_directive + m_conversion).constData(), argument);
    } else {
        quint64 bits = NumericCast::toUInt64(value);
        if (m_integerBits < 64)
            bits &= (quint64(1) << m_integerBits) - 1;
        const QByteArray directive = m_directive + "ll" + m_conversion;
        if (m_conversion == 'd' || m_conversion == 'i') {
            qint64 signedValue = qint64(bits);
            if (m_integerBits < 64 && (bits >> (m_integerBits - 1)) & 1)
                signedValue = qint64(bits | ~((quint64(1) << m_integerBits) - 1));
            number = QString::asprintf(directive.constData(), qlonglong(signedValue));
        } else {
            number = QString::asprintf(directive.constData(), qulonglong(bits));
        }
    }
    return m_before + number + m_after;
}
