#pragma once
#include <QAtomicInt>
#include <QAtomicPointer>
#include <QList>
#include <QThread>

#include "device/TimerTask.h"

class StickLink;

// Polls the `communication` tasks: each task whose interval is due
// announces its data string and, for its time-out, consumes the reply that
// the link holds once it is long enough. The link's traffic itself comes
// from the elements' and scripts' sendUSB; nothing receives this thread's
// changed_sendUSB.
class SerialComThread : public QThread
{
    Q_OBJECT
public:
    SerialComThread(const QList<TimerTask> &tasks, StickLink *link, QObject *parent = nullptr);

    // Clears the run flag, gives the loop 100 ms to end, then terminates it.
    void stop();
    bool runFlag() const { return m_run.loadAcquire() != 0; }

    // Called once a posted reply was handled on the main thread.
    void replyHandled() { m_replyPending.storeRelease(0); }

    QList<TimerTask> tasks() const { return m_tasks; }

    // The link may come after the thread (first use); tasks wait for it.
    void setLink(StickLink *link) { m_link.storeRelease(link); }

signals:
    void changed_sendUSB(const QString &data);
    // A reply of the expected length is there for recdata. Handled on the
    // main thread, which owns the elements; one at a time.
    void replyDue(const QString &recdata);

protected:
    void run() override;

private:
    QList<TimerTask> m_tasks;
    QAtomicPointer<StickLink> m_link;
    QAtomicInt m_run{1};
    QAtomicInt m_replyPending{0};
};
