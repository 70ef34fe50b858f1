#pragma once
#include <QString>
#include <QtGlobal>

// One polling task of a `communication` element. intervalTicks and
// timeoutTicks hold milliseconds as read until the polling thread starts,
// and ticks of its clock after.
struct TimerTask
{
    QString data;
    QString recdata;
    // Kept with the task; no step consults it.
    bool onChanged = false;
    quint32 intervalTicks = 0;
    quint32 timeoutTicks = 0;
    qint64 lastRun = 0;
    quint16 expectedBytes = 0;
};
