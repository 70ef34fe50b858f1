#pragma once
#include "device/TargetVariable.h"

// Target memory through the probe. A value that the polling thread has just
// read is not written back: the write would only race the firmware.
class JLinkTargetMemory : public TargetMemory
{
public:
    bool read(quint32 address, quint32 size, quint8 *bytes) override;
    bool write(quint32 address, quint32 size, const quint8 *bytes) override;
};
