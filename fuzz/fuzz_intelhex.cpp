// Intel HEX images reach the program through WRITEBSL scripts and
// downloads. One input is one .hex file.
#include "FuzzEnvironment.h"

#include "device/IntelHexReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QList<MemoryBlock> blocks = IntelHexReader::parse(QByteArray(reinterpret_cast<const char *>(data), int(size)));
    // Touch every byte so that a block claiming more than it holds shows.
    quint64 sum = 0;
    for (const MemoryBlock &block : blocks)
        for (char c : block.bytes)
            sum += quint8(c);
    (void)sum;
    return 0;
}
