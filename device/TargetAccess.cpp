#include "device/TargetAccess.h"

#include "device/JLinkApi.h"
#include "device/JLinkConnection.h"
#include "device/JLinkTargetMemory.h"
#include "device/SeggerThread.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"

#include <algorithm>

TargetAccess::TargetAccess(QObject *parent)
    : QObject(parent)
    , m_memory(new JLinkTargetMemory)
{
}

TargetAccess::~TargetAccess()
{
    stop();
    if (TargetMemory::current() == m_memory.get())
        TargetMemory::install(nullptr);
}

QList<TargetVariable *> TargetAccess::collect(const DocumentTables &tables)
{
    QList<DataClass *> data;
    for (DataClass *d : tables.dataValues) {
        if (d && d->target())
            data.append(d);
    }
    std::sort(data.begin(), data.end(),
              [](const DataClass *a, const DataClass *b) { return a->objectName() < b->objectName(); });
    QList<TargetVariable *> records;
    for (DataClass *d : data)
        records.append(d->target());
    return records;
}

void TargetAccess::open(const DocumentTables &tables)
{
    stop();
    m_records = collect(tables);
    if (m_records.isEmpty())
        return;
    // Writes and reads on access go through the probe from now on.
    TargetMemory::install(m_memory.get());
    if (!JLinkApi::JLINKARM_IsOpen()) {
        JLinkConnection::prepareJLink(m_project);
        m_lastConnect = JLinkConnection::connectJLink(m_project);
    }
    // A failed connect still polls: reads on a closed link leave the values.
    m_run = true;
    m_thread = new SeggerThread(m_records, &m_run, this);
    m_thread->start(QThread::InheritPriority);
}

void TargetAccess::stop()
{
    m_run = false;
    if (m_thread) {
        if (!m_thread->wait(100)) {
            m_thread->terminate();
            m_thread->wait();
        }
        delete m_thread;
    }
    m_records.clear();
}

bool TargetAccess::polling() const
{
    return m_thread && m_thread->isRunning();
}
