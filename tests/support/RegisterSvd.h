#pragma once
#include <QByteArray>

// An SVD file of the device MINI whose peripheral P (at 0x40000000) has
// registers that show every case of a register view and a decode tooltip:
//   R     (0x10, 32 bits, reset 0x305): EN[0], MODE[2..1] with Off/Slow/Fast,
//         COUNT[11..8], read-only STATUS[12] with Idle/Busy; gaps 7..3 and
//         31..13
//   RO    (0x14, 16 bits): read-only V[15..0]
//   EMPTY (0x18, 8 bits): no fields
QByteArray registerSvd();
