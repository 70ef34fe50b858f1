#include "elements/LockToolTip.h"

#include "elements/ActiveElement.h"
#include "reader/ToolTipConfig.h"

QString LockToolTip::sections(const ActiveElement &element, quint32 mask)
{
    struct Section
    {
        quint32 bit;
        const char *heading;
        const LockRecords &records;
    };
    const Section list[] = {
        {ToolTipConfig::LockedBy, "Locked by: ", element.lockedBy},
        {ToolTipConfig::Locking, "Locking: ", element.locking},
        {ToolTipConfig::WaitingToLock, "Waiting to lock: ", element.waitingToLock},
        {ToolTipConfig::WaitingToBeLockedBy, "Waiting to be locked by: ", element.waitingToBeLockedBy},
    };
    QString text;
    for (const Section &s : list) {
        if (!(mask & s.bit) || s.records.isEmpty())
            continue;
        text += QLatin1String(s.heading);
        for (const LockRecord &r : s.records)
            text += r.peer + QLatin1Char('\n');
    }
    return text;
}

QString LockToolTip::sections(const ActiveElement &element)
{
    return sections(element, ToolTipConfig::mask());
}
