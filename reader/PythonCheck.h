#pragma once
#include <QString>

// Whether descriptions that use Python can run: the bridge is a plug-in
// library beside the executable, loaded only when a description asks.
class PythonCheck
{
public:
    // Path of the bridge plug-in beside the executable.
    static QString bridgePath();
    static bool bridgeAvailable();
    // The warning shown when a description needs the bridge and it is
    // missing (on the console in quiet mode).
    static void warnMissing();
    static QString missingText();
};
