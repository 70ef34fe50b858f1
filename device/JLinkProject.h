#pragma once
#include <QByteArray>

// The connection settings of the probe. The program fills in its defaults
// (prepareJLink) and nothing in a description changes them: one device over
// SWD at 4000 kHz, with the settings file "Settings.jlink" from the current
// directory.
struct JLinkProject
{
    int hostInterface = 1;   // 1 USB, 2 TCP/IP
    int targetInterface = 1; // 1 SWD
    unsigned serialNumber = 0;
    unsigned speed = 4000;   // kHz
    // Null (empty and not set) means "none", as the library's null pointers.
    QByteArray ipAddress;
    QByteArray projectFile = "Settings.jlink";
    QByteArray device = "NVC4207";
};
