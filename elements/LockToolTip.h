#pragma once
#include <QString>
#include <QtGlobal>

class ActiveElement;

// The lock part of an element's tool tip: "Locked by: ", "Locking: ",
// "Waiting to lock: " and "Waiting to be locked by: ", in this order, each
// only when its list is not empty and its bit of the tooltipconfig mask
// (2, 4, 8, 16) is set. Every entry is followed by a line feed. The script
// command ASSERTLOCK reads these lists back from the tip.
class LockToolTip
{
public:
    static QString sections(const ActiveElement &element, quint32 mask);
    // With the mask the current description set.
    static QString sections(const ActiveElement &element);
};
