#include "device/SerialComThread.h"

#include "device/ReceiveString.h"
#include "device/StickLink.h"

#include <QElapsedTimer>

namespace {
// The clock counts nanoseconds: this many ticks make a millisecond.
const qint64 kTicksPerMs = 1000000;
}

SerialComThread::SerialComThread(const QList<TimerTask> &tasks, StickLink *link, QObject *parent)
    : QThread(parent)
    , m_tasks(tasks)
    , m_link(link)
{
    setObjectName(QStringLiteral("SerialComThread"));
}

void SerialComThread::stop()
{
    m_run.storeRelease(0);
    if (!wait(100)) {
        terminate();
        wait();
    }
}

void SerialComThread::run()
{
    QElapsedTimer clock;
    clock.start();
    const qint64 start = clock.nsecsElapsed();
    // Milliseconds become ticks; the sums stay in 64 bits.
    QList<qint64> interval;
    QList<qint64> timeout;
    for (TimerTask &task : m_tasks) {
        task.lastRun = start;
        interval.append(qint64(task.intervalTicks) * kTicksPerMs);
        timeout.append(qint64(task.timeoutTicks) * kTicksPerMs);
        task.expectedBytes = quint16(qMin(ReceiveString::needed(task.recdata), 0xFFFF));
    }

    while (runFlag()) {
        const qint64 now = clock.nsecsElapsed();
        for (int i = 0; i < m_tasks.size() && runFlag(); ++i) {
            TimerTask &task = m_tasks[i];
            StickLink *link = m_link.loadAcquire();
            if (!link || interval.at(i) == 0 || task.lastRun + interval.at(i) > now)
                continue;
            task.lastRun = now;
            emit changed_sendUSB(task.data);
            const qint64 until = clock.nsecsElapsed() + timeout.at(i);
            while (runFlag() && clock.nsecsElapsed() < until) {
                if (task.expectedBytes <= link->receivedSize() && m_replyPending.testAndSetAcquire(0, 1))
                    emit replyDue(task.recdata);
                // The serial port belongs to the main thread, whose event
                // loop fills it; the poll only waits for it here.
                msleep(1);
            }
        }
        // Between due times the loop rests a millisecond instead of
        // spinning a core.
        msleep(1);
    }
}
