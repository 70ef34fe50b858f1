#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>

// The data string of a sendUSB action: tokens separated by ";", each
// "count:value" or "value". The count is signed decimal (negative: least
// significant byte first; 0: nothing; absent: one byte); the value is a
// 0x/0b constant, a define, an element or an unsigned decimal.
class DataString
{
public:
    // Gives the value of a define or element name; false when the name is
    // neither. Defines come before elements.
    using NameLookup = std::function<bool(const QString &name, quint32 *value)>;

    struct Token
    {
        int count = 1;
        bool littleEndian = false;
        QString value;
    };

    // A count beyond this many bytes is refused like an unconvertible
    // value: no frame is that long, and the bytes would have to be built.
    static const int kMaxCount = 4096;

    // Splits one token at its first colon, when the text in front of it is
    // a decimal integer; otherwise the whole token is the value.
    static Token parseToken(const QString &token);

    // The bytes of the whole string. Tokens whose value does not convert
    // send nothing; their texts go to unconvertible (for the report) and
    // the other tokens are still sent. A 0x or 0b constant that fails to
    // convert sends nothing without a report.
    static QByteArray encode(const QString &text, const NameLookup &lookup, QStringList *unconvertible);

    // Appends count bytes of v; the shift is taken modulo 32, so a count
    // above 4 repeats the value's bytes.
    static void appendBytes(QByteArray &out, quint32 v, int count, bool littleEndian);
};
