#pragma once
#include <QtGlobal>
#include <cmath>

// Conversions of a formula's double result to the integer widths that the
// bitwise operators, the modulo, the conditional and the result formats work
// on. A plain C++ cast of a negative, huge or NaN double to an unsigned type
// is undefined; these give every double a fixed answer instead: truncation
// toward zero, two's complement for negative values (so -1 becomes all ones),
// saturation beyond the 64-bit range, and 0 for NaN. The narrower widths keep
// the low bits of the 64-bit pattern.
namespace NumericCast {

inline quint64 toUInt64(double v)
{
    if (std::isnan(v))
        return 0;
    constexpr double twoPow63 = 9223372036854775808.0;
    constexpr double twoPow64 = 18446744073709551616.0;
    if (v < 0) {
        if (v <= -twoPow63)
            return quint64(1) << 63;
        return quint64(qint64(v));
    }
    if (v >= twoPow64)
        return ~quint64(0);
    return quint64(v);
}

inline qint64 toInt64(double v)
{
    return qint64(toUInt64(v));
}

inline quint32 toUInt32(double v)
{
    return quint32(toUInt64(v));
}

inline qint32 toInt32(double v)
{
    return qint32(toUInt32(v));
}

} // namespace NumericCast
