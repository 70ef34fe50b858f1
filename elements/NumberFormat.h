#pragma once
#include <QString>

// The one place where numeric texts of descriptions, SVD files, setDef texts
// and formulas are classified and turned into decimal text. Descriptions in
// the field were tested against these exact rules, quirks included (a decimal
// with a suffix such as "5u" normalises to "0"), so they must not be "fixed".
namespace NumberFormat {

enum NumberClass {
    Decimal = 0,
    Hexadecimal = 1,
    Floating = 2,
    Binary = 3,
    OtherText = 4,
    Empty = 5
};

NumberClass classifyNumber(const QString &text);
QString normaliseNumber(const QString &text);

// Reads a text in any of the classes above as a signed 64-bit number;
// sets *ok to false for other text. Floating texts are truncated.
qint64 toInt64(const QString &text, bool *ok = nullptr);

} // namespace NumberFormat

using NumberFormat::classifyNumber;
using NumberFormat::normaliseNumber;
