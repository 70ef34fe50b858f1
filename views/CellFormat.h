#pragma once
#include <QString>

// The printf-like `format` of a table column applied to a cell's number.
// Formats come from descriptions, so they never reach printf as written:
// the first integer conversion (d, i, u, x, X, o, with flags, width and an
// optional length) is rebuilt and given a 64-bit argument; the text around
// it stays as it is. A format without such a conversion gives its own text.
class CellFormat
{
public:
    static QString apply(const QString &format, quint64 value);
    // The text read as a number: decimal, "0x" hexadecimal, "0b" binary or
    // floating (truncated), after the program's number normalisation.
    static bool toUnsigned(const QString &text, quint64 *value);
};
