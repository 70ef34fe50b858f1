#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

// Per-installation preferences: keyed by the folder of the executable, so
// two installed copies keep their own windows and folders. Also reaches the
// small global store that all installations share.
class Preferences
{
public:
    // Reads the per-installation store.
    void read();

    // Setters that write through at once.
    void setWorkingDir(const QString &dir);
    void setScriptsDir(const QString &dir);
    void setGeometry(const QByteArray &geometry);

    // The settings dialog's save.
    void write(quint16 mode, bool timestamps, const QString &fileName, int period, int toolbar);

    QByteArray geometry;
    QString workingDir;
    QString scriptsDir;
    quint16 tavLoggingMode = 0;
    bool tavLoggingTimeStamps = false;
    QString tavLoggingFilename;
    int toolbarEnabled = 1;
    int updatePeriod = 2;
    QDateTime lastUpdate;

    // The global store: scripts folders ever chosen.
    static QStringList scriptDirList();
    static void setScriptDirList(const QStringList &list);

    // Name of the application key of the per-installation store.
    static QString applicationKey();
};
