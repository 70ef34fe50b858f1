#pragma once
#include <QMap>
#include <QtGlobal>

class ActiveElement;

// The occupancy rule shared by registers and fields: a bit can be held by at
// most one element, and an element holding the whole range (-1, -1) excludes
// every other. Claims are kept by the mask of their bits, the whole range
// under mask 0.
namespace BitOccupancy {

// Claims bits msb..lsb for the element. highestBit is raised to msb before
// the test, so a refused claim still raises it. A refusal part way up the
// range keeps the lower bits it already took: callers report the overlap and
// go on, and nothing relies on an undo. Bits outside 0..63 take no part.
// askElement: the element's setBits() must also accept the range (registers).
bool claim(quint64 &claimedBits, int &highestBit, QMap<quint64, ActiveElement *> &claims,
           ActiveElement *element, int msb, int lsb, bool askElement);

// Mask of bits lsb..msb, limited to 0..63; 0 for an empty range.
quint64 mask(int msb, int lsb);

} // namespace BitOccupancy
