#pragma once

struct JLinkProject;

// Opening the probe: selection, settings file, device, interface, speed and
// the connect to the target. Errors go to the debug channel with "ERROR: ",
// the library's log lines with "Log: ".
class JLinkConnection
{
public:
    // Fills in the program's defaults; returns 0.
    static int prepareJLink(JLinkProject &project);
    // 0 when connected, -1 at the first failing step.
    static int connectJLink(const JLinkProject &project);

    static void logCallback(const char *text);
    static void errorCallback(const char *text);
};
