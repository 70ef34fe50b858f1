#include "device/JLinkTargetMemory.h"

#include "device/JLinkApi.h"
#include "device/SeggerThread.h"

bool JLinkTargetMemory::read(quint32 address, quint32 size, quint8 *bytes)
{
    // A failed read leaves the bytes as they were; the library's result is
    // not trusted further than that.
    JLinkApi::JLINKARM_ReadMem(address, size, bytes);
    return true;
}

bool JLinkTargetMemory::write(quint32 address, quint32 size, const quint8 *bytes)
{
    if (SeggerThread::inPollingThread())
        return false;
    JLinkApi::JLINKARM_WriteMem(address, size, bytes);
    return true;
}
