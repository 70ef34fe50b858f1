#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

// A contiguous run of bytes of a firmware image.
struct MemoryBlock
{
    quint32 address = 0;
    QByteArray bytes;
};

// Reads an Intel HEX file into blocks of contiguous bytes. Data records
// (type 00) go into the current block or start a new one where the address
// jumps; extended linear address records (type 04) give the upper 16 bits.
// Reading ends at the first line that is not a record.
class IntelHexReader
{
public:
    static QList<MemoryBlock> read(const QString &fileName, QString *error = nullptr);
    static QList<MemoryBlock> parse(const QByteArray &text);
};
