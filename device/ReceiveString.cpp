#include "device/ReceiveString.h"

#include <QStringList>
#include <cstdlib>

ReceiveString::Token ReceiveString::parseToken(const QString &token)
{
    Token t;
    t.name = token;
    const QStringList parts = token.split(QLatin1Char(':'));
    if (parts.size() != 2)
        return t;
    bool ok = false;
    const int count = parts.at(0).toInt(&ok, 10);
    if (!ok)
        return t;
    t.name = parts.at(1);
    t.littleEndian = count < 0;
    // Widened first: std::abs(INT_MIN) is undefined.
    t.count = int(qMin<qint64>(qAbs(qint64(count)), kMaxCount));
    return t;
}

QList<ReceiveString::Token> ReceiveString::parse(const QString &text)
{
    QList<Token> tokens;
    if (text.isEmpty())
        return tokens;
    for (const QString &raw : text.split(QLatin1Char(';')))
        tokens.append(parseToken(raw));
    return tokens;
}

int ReceiveString::needed(const QString &text)
{
    qint64 sum = 0;
    for (const Token &t : parse(text))
        sum += t.count;
    return int(qMin<qint64>(sum, 0x7FFFFFFF));
}

quint32 ReceiveString::fold(const QByteArray &bytes, bool littleEndian)
{
    const int n = bytes.size();
    quint32 v = 0;
    for (int j = 0; j < n; ++j) {
        const int byteIndex = littleEndian ? j : n - 1 - j;
        v += quint32(quint8(bytes.at(j))) << (unsigned(8 * byteIndex) % 32u);
    }
    return v;
}
