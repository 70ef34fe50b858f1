#include "model/BitOccupancy.h"

#include "elements/ActiveElement.h"

namespace BitOccupancy {

quint64 mask(int msb, int lsb)
{
    const int low = qMax(lsb, 0);
    const int high = qMin(msb, 63);
    if (high < low)
        return 0;
    const quint64 upper = high == 63 ? ~quint64(0) : (quint64(1) << (high + 1)) - 1;
    return upper & ~((quint64(1) << low) - 1);
}

bool claim(quint64 &claimedBits, int &highestBit, QMap<quint64, ActiveElement *> &claims,
           ActiveElement *element, int msb, int lsb, bool askElement)
{
    if (msb > highestBit)
        highestBit = msb;

    quint64 key = 0;
    if (msb == -1 && lsb == -1) {
        if (claimedBits != 0)
            return false;
        claimedBits = ~quint64(0);
    } else {
        // Only bits 0..63 exist in the masks; clamping also keeps absurd
        // ranges from a define (say [2147483647:0]) from looping for ever.
        const int low = qMax(lsb, 0);
        const int high = qMin(msb, 63);
        for (int bit = low; bit <= high; ++bit) {
            const quint64 b = quint64(1) << bit;
            if (claimedBits & b)
                return false;
            claimedBits |= b;
            key |= b;
        }
    }

    element->setProperty("msb", msb);
    element->setProperty("lsb", lsb);
    if (askElement && !element->setBits(msb, lsb))
        return false;
    claims.insert(key, element);
    return true;
}

} // namespace BitOccupancy
