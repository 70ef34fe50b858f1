#include "reader/ToolTipConfig.h"

namespace {
quint32 g_mask = 65535;
}

quint32 ToolTipConfig::mask()
{
    return g_mask;
}

void ToolTipConfig::set(quint32 mask)
{
    g_mask = mask;
}
