#include "device/TargetVariable.h"

namespace {
TargetMemory *g_memory = nullptr;
}

TargetMemory *TargetMemory::current()
{
    return g_memory;
}

void TargetMemory::install(TargetMemory *memory)
{
    g_memory = memory;
}
