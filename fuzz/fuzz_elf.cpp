// Firmware files reach the program through a description's `elf` element.
// One input is one ELF file; every symbol found is looked up again.
#include "FuzzEnvironment.h"

#include "device/ELFReader.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ELFReader reader;
    if (reader.ReadBytes(QByteArray(reinterpret_cast<const char *>(data), int(size))) != 0)
        return 0;
    unsigned long address = 0;
    unsigned long length = 0;
    for (const char *name : {"main", "counter", "_start", ""})
        reader.GetAddress(name, &address, &length);
    return 0;
}
