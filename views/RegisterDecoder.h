#pragma once
#include <QString>

class Register;

// The text that explains a register word field by field, highest field
// first: enumerated fields by the name of their value, the others not at
// all. Tables show it as the tool tip of value and answer cells.
class RegisterDecoder
{
public:
    static QString describe(const Register *reg, quint64 value);
    // The text of a register that is not in the model.
    static QString invalidRegisterText() { return QStringLiteral("Can't evaluate without valid register."); }
    // Binary digits of value, right-justified with "0" to width when the
    // width is above 1.
    static QString binary(quint64 value, int width);
};
