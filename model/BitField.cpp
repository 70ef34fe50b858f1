#include "model/BitField.h"

#include "model/BitOccupancy.h"

BitField::BitField(const QString &name)
    : name(name)
{
}

bool BitField::claim(ActiveElement *element, int msb, int lsb)
{
    return BitOccupancy::claim(claimedBits, this->msb, claims, element, msb, lsb, false);
}
