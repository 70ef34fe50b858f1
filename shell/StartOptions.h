#pragma once
#include <QString>
#include <QStringList>

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
    // Notes for the user about arguments that were probably meant otherwise
    // (the program prints them on standard error).
    QStringList hints;
};
