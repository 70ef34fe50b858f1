#pragma once
#include <QString>

// What the command line asked for; handed to MainWindow's constructor.
struct StartOptions
{
    QString fileName;
    QString batchFile;
    QString outputLogFile;
    bool generate = false;
    bool save = false;
    bool keil = false;
    bool quiet = false;
    bool exitAfterKeil = false;
    QString saveFile;
    QString consoleLogFile;
    QString defines;
    QString includePaths;
    // -? was given (the usage is shown while parsing).
    bool usageRequested = false;
};
