#pragma once
#include <QtGlobal>

// The bit mask of the lines shown in element tool tips. A description sets
// it with `tooltipconfig`; it then holds over documents until the next
// description sets it.
class ToolTipConfig
{
public:
    static quint32 mask();
    static void set(quint32 mask);
    static bool shows(quint32 line) { return (mask() & line) != 0; }

    enum Line : quint32 {
        Value = 1,
        LockedBy = 2,
        Locking = 4,
        WaitingToLock = 8,
        WaitingToBeLockedBy = 16,
        EnumeratedValues = 32,
        Containers = 64,
        SvdName = 128,
        Header = 256,
        Default = 512,
        Range = 1024,
        ToolTip = 2048
    };
};
