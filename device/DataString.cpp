#include "device/DataString.h"

#include <cstdlib>
#include <limits>

namespace {

bool isDecimalInteger(const QString &text, int *value)
{
    bool ok = false;
    const int v = text.toInt(&ok, 10);
    if (ok && value)
        *value = v;
    return ok;
}

} // namespace

DataString::Token DataString::parseToken(const QString &token)
{
    Token t;
    t.value = token;
    const int colon = token.indexOf(QLatin1Char(':'));
    int count = 0;
    if (colon >= 0 && isDecimalInteger(token.left(colon), &count)) {
        t.value = token.mid(colon + 1);
        t.littleEndian = count < 0;
        // INT_MIN has no positive int: std::abs of it is undefined. Any
        // count that large is refused by encode() anyway.
        t.count = int(qMin<qint64>(qAbs(qint64(count)), std::numeric_limits<int>::max()));
    }
    return t;
}

void DataString::appendBytes(QByteArray &out, quint32 v, int count, bool littleEndian)
{
    for (int i = 0; i < count; ++i) {
        const int byteIndex = littleEndian ? i : count - 1 - i;
        const unsigned shift = unsigned(8 * byteIndex) % 32u;
        out.append(char((v >> shift) & 0xFF));
    }
}

QByteArray DataString::encode(const QString &text, const NameLookup &lookup, QStringList *unconvertible)
{
    QByteArray out;
    if (text.isEmpty())
        return out;
    const QStringList tokens = text.split(QLatin1Char(';'));
    for (const QString &raw : tokens) {
        const Token token = parseToken(raw);
        if (token.count > kMaxCount) {
            if (unconvertible)
                unconvertible->append(raw);
            continue;
        }
        quint32 v = 0;
        bool ok = false;
        if (token.value.startsWith(QLatin1String("0x"))) {
            v = token.value.toUInt(&ok, 16);
            if (!ok)
                continue;
        } else if (token.value.startsWith(QLatin1String("0b"))) {
            v = token.value.mid(2).toUInt(&ok, 2);
            if (!ok)
                continue;
        } else if (lookup && lookup(token.value, &v)) {
            ok = true;
        } else {
            v = token.value.toUInt(&ok, 10);
            if (!ok) {
                if (unconvertible)
                    unconvertible->append(token.value);
                continue;
            }
        }
        appendBytes(out, v, token.count, token.littleEndian);
    }
    return out;
}
