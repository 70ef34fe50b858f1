#include "device/SeggerThread.h"

#include "device/JLinkApi.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"

#include <QDateTime>

#include <cstring>

namespace {

constexpr quint32 kAlways = 0xFFFFFFFFu;
constexpr qint64 kLongestNap = 20;

thread_local bool t_polling = false;

bool isDue(const TargetVariable *r, qint64 now)
{
    if (r->interval == kAlways || !r->lastRead.isValid())
        return true;
    return r->lastRead.toMSecsSinceEpoch() + qint64(r->interval) <= now;
}

} // namespace

SeggerThread::SeggerThread(const QList<TargetVariable *> &records, std::atomic<bool> *runFlag, QObject *parent)
    : QThread(parent)
    , m_records(records)
    , m_run(runFlag)
{
}

bool SeggerThread::inPollingThread()
{
    return t_polling;
}

int SeggerThread::pollOnce(qint64 now)
{
    int due = 0;
    const QDateTime stamp = QDateTime::fromMSecsSinceEpoch(now);
    for (TargetVariable *r : qAsConst(m_records)) {
        if (m_run && !m_run->load(std::memory_order_relaxed))
            break;
        if (r->interval == 0 || !isDue(r, now))
            continue;
        ++due;
        r->lastRead = stamp;
        DataClass *data = r->dataClass;
        if (r->size < 5) {
            quint32 word = 0;
            JLinkApi::JLINKARM_ReadMem(r->address, r->size, &word);
            if (word != r->lastValue || r->forceSet) {
                r->lastValue = word;
                if (data) {
                    const bool was = t_polling;
                    t_polling = true;
                    if (data->datatype == DataClass::Float)
                        std::memcpy(&data->floatValue, &word, sizeof word);
                    data->setValue(word);
                    t_polling = was;
                }
                r->valid = 1;
            }
        } else if (data && data->buffer().size() >= int(r->size)) {
            JLinkApi::JLINKARM_ReadMem(r->address, r->size, data->buffer().data());
            r->valid = 1;
        }
    }
    return due;
}

qint64 SeggerThread::idleTime(qint64 now) const
{
    qint64 next = -1;
    for (const TargetVariable *r : m_records) {
        if (r->interval == 0)
            continue;
        if (isDue(r, now))
            return 0;
        const qint64 wait = r->lastRead.toMSecsSinceEpoch() + qint64(r->interval) - now;
        if (next < 0 || wait < next)
            next = wait;
    }
    return next;
}

void SeggerThread::run()
{
    t_polling = true;
    for (TargetVariable *r : qAsConst(m_records))
        r->lastValue = 0;
    while (m_run->load()) {
        const qint64 now = QDateTime::currentMSecsSinceEpoch();
        if (pollOnce(now) > 0)
            continue;
        // Nothing was due: the reads keep their order and timing, but the
        // wait until the next one does not spin.
        const qint64 idle = idleTime(now);
        msleep(unsigned(idle < 0 || idle > kLongestNap ? kLongestNap : qMax<qint64>(idle, 1)));
    }
}
