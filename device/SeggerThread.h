#pragma once
#include <QList>
#include <QThread>

#include <atomic>

struct TargetVariable;

// Polls the target variables through the probe: each record is read when
// its interval has passed (always, for 0xFFFFFFFF), and its DataClass is set
// when the word changed or the record forces it; longer variables are read
// straight into their buffers. Runs until the run flag is cleared. When no
// record is due the thread sleeps until the next one is (20 ms at most), so
// an idle form does not hold a core.
class SeggerThread : public QThread
{
public:
    SeggerThread(const QList<TargetVariable *> &records, std::atomic<bool> *runFlag, QObject *parent = nullptr);

    // One pass over the records at the given time (milliseconds since the
    // epoch); returns how many were due. The thread calls this in a loop;
    // tests and benchmarks call it directly.
    int pollOnce(qint64 now);
    // Milliseconds until the next record is due after a pass at `now`; -1
    // when no record polls at all.
    qint64 idleTime(qint64 now) const;

    // Whether the calling thread is a polling thread: values it sets came
    // from the target and are not written back.
    static bool inPollingThread();

protected:
    void run() override;

private:
    QList<TargetVariable *> m_records;
    std::atomic<bool> *m_run;
};
