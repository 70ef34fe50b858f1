#pragma once
#include <QString>

// How a formula's result is shown: the printf-like `format` of a math
// element, its kind, and the text it gives for a value.
//
// The format comes from a description, so it is never handed to printf as
// it stands: only its first conversion is used, rebuilt from the parts this
// class understands and given an argument of the type it names. Anything
// else in the text, further conversions included, is kept as plain text.
// A bad format therefore shows odd text, but cannot crash or read garbage.
class ResultFormat
{
public:
    enum Kind { Floating = 0, Decimal = 1, Hexadecimal = 2, Binary = 4 };

    explicit ResultFormat(const QString &format = defaultFormat(false));

    // "%d" for a label bound to register bits, "%4.2f" otherwise.
    static QString defaultFormat(bool registerBound);

    // "b"/"B" binary, else "f"/"g" floating, else "d"/"u" decimal, else
    // "x"/"X" hexadecimal. Without any of them `*known` is false and the
    // kind is floating.
    static Kind kindOf(const QString &format, bool *known = nullptr);

    const QString &format() const { return m_format; }
    Kind kind() const { return m_kind; }
    bool isKnown() const { return m_known; }
    // "0x" for the hexadecimal kind, shown in front of the text.
    QString prefix() const;

    // The value as the format shows it, without prefix and suffix. Binary:
    // the value's low 32 bits in groups of four digits, padded to the width
    // between "%" and "b" ("%08b" of 5 is "0000 0101"). Other kinds: trailing
    // zeros behind a point are removed ("1.50" -> "1.5", "2.00" -> "2").
    QString text(double value) const;
    // Prefix, text and suffix, as a label shows them.
    QString labelText(double value, const QString &suffix) const;

    // The full-precision text of a value, for readers that want no format.
    static QString unformatted(double value);

    // The console line for a format without a known conversion.
    static QString unknownFormatMessage(const QString &define);
    static void reportUnknownFormat(const QString &define);

private:
    QString binaryText(double value) const;
    QString printfText(double value) const;

    QString m_format;
    Kind m_kind = Floating;
    bool m_known = false;

    // The first usable conversion, split out of the format at parse time.
    bool m_hasConversion = false;
    QString m_before;
    QString m_after;
    QByteArray m_directive; // "%" flags width precision, without length and type
    char m_conversion = 0;
    int m_integerBits = 32;
};
