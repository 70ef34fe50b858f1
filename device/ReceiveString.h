#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

// The receive string of a sendUSB action: tokens separated by ";", each
// "count:name" or "name", saying how the reply is cut into elements and
// defines. "?" as name skips the bytes.
class ReceiveString
{
public:
    struct Token
    {
        int count = 1;
        bool littleEndian = false;
        QString name;
    };

    // Counts beyond this can never be satisfied by any reply; they are
    // held here so that sums stay far from overflow.
    static const int kMaxCount = 65535;

    // A plain split at ":" into exactly two pieces: a token with more than
    // one colon, or with a count that is not a decimal number, is a name
    // without count.
    static Token parseToken(const QString &token);
    static QList<Token> parse(const QString &text);

    // Bytes a reply must hold: the sum of the absolute counts, 1 for a
    // token without count.
    static int needed(const QString &text);

    // The integer of bytes: big-endian sum b[j] << 8*(n-1-j), little-endian
    // sum b[j] << 8*j, shifts modulo 32.
    static quint32 fold(const QByteArray &bytes, bool littleEndian);
};
