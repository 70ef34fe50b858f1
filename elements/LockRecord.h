#pragma once
#include <QList>
#include <QString>
#include <QStringList>

// One lock between two elements, as the source or the target keeps it: the
// other element's define, the locked value and the value kind of the
// target's suffix (0 plain, 1 label, 2 index).
struct LockRecord
{
    QString peer;
    QString value;
    int kind = 0;

    bool operator==(const LockRecord &other) const
    {
        return peer == other.peer && value == other.value && kind == other.kind;
    }
};

using LockRecords = QList<LockRecord>;

// The peers of a list of records, in order (for tool tips and scripts).
inline QStringList lockPeers(const LockRecords &records)
{
    QStringList peers;
    for (const LockRecord &r : records)
        peers << r.peer;
    return peers;
}
