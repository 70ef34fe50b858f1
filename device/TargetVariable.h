#pragma once
#include <QDateTime>
#include <QString>
#include <QtGlobal>

class DataClass;

// Reads and writes the target's memory. The J-Link layer provides the real
// one; without a probe there is none and bound variables only keep values.
class TargetMemory
{
public:
    virtual ~TargetMemory() = default;
    virtual bool read(quint32 address, quint32 size, quint8 *bytes) = 0;
    virtual bool write(quint32 address, quint32 size, const quint8 *bytes) = 0;

    static TargetMemory *current();
    static void install(TargetMemory *memory);
};

// Binding of a DataClass to a variable in the target's memory.
struct TargetVariable
{
    QString svdSymbol;
    quint32 address = 0;
    qint32 index = -1;
    quint8 channel = 255;
    quint32 size = 0;
    quint32 bitOffset = 0;
    quint32 bitWidth = 0;
    quint32 interval = 0;
    quint8 readOnly = 0;
    quint8 forceSet = 0;
    quint8 valid = 0;
    // A triggered variable is read on the next write of a non-zero value.
    bool nextReadPending = true;
    DataClass *dataClass = nullptr;
    quint32 lastValue = 0;
    QDateTime lastRead;
    // The description gave the place itself (`address` or an ELF `symbol`):
    // a firmware variable, not a register for the SVD file to place.
    bool ownAddress = false;
};
