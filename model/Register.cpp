#include "model/Register.h"

#include "model/BitField.h"
#include "model/BitOccupancy.h"

Register::Register(const QString &name, const QString &header)
    : name(name)
    , header(header)
{
}

Register::~Register()
{
    qDeleteAll(fields);
}

BitField *Register::addField(const QString &name)
{
    BitField *&field = fields[name];
    if (!field)
        field = new BitField(name);
    return field;
}

bool Register::claim(ActiveElement *element, int msb, int lsb)
{
    return BitOccupancy::claim(claimedBits, highestBit, claims, element, msb, lsb, true);
}
