#pragma once
#include <QString>

// The `usesPython` element: the Python bridge is started (once) with the
// main window bound as `application`. Without the bridge plug-in or without
// Python the warning "Python integration" is shown (on the console in quiet
// mode) and the description can't be read.
class PythonCheck
{
public:
    // Path of the bridge plug-in beside the executable.
    static QString bridgePath();
    // Starts the bridge or warns; true when Python is ready.
    static bool startBridge();
};
