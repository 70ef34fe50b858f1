#pragma once
#include <QList>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <memory>

#include "device/JLinkProject.h"

class DocumentTables;
class JLinkTargetMemory;
class SeggerThread;
struct TargetVariable;

// The probe side of an open document: the target variable records, the
// connect at load, and the polling thread with its run flag. Without
// records nothing here touches the probe library.
class TargetAccess : public QObject
{
    Q_OBJECT

public:
    explicit TargetAccess(QObject *parent = nullptr);
    ~TargetAccess() override;

    // The records of the document's `var` defines, by define name.
    static QList<TargetVariable *> collect(const DocumentTables &tables);

    // At the end of a load: with records, connects (unless the probe is
    // already open; the result is not examined) and starts polling.
    void open(const DocumentTables &tables);
    // Clears the run flag, waits 100 ms and ends a thread that is still
    // running. At close and before a reload.
    void stop();

    bool polling() const;
    const QList<TargetVariable *> &records() const { return m_records; }
    const JLinkProject &project() const { return m_project; }
    // The result of the last connect (0, -1), or 1 when none was made.
    int lastConnect() const { return m_lastConnect; }

private:
    QList<TargetVariable *> m_records;
    JLinkProject m_project;
    std::atomic<bool> m_run{false};
    QPointer<SeggerThread> m_thread;
    std::unique_ptr<JLinkTargetMemory> m_memory;
    int m_lastConnect = 1;
};
