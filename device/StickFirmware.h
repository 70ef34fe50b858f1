#pragma once
#include <QObject>
#include <QString>
#include <functional>

class DataTasks;
class QWidget;

// The stick's firmware: the version range a description accepts, the query
// of the stick's version with its comparison, and the run of the separate
// updater program, whose exit code 5 means success.
class StickFirmware : public QObject
{
    Q_OBJECT
public:
    struct Version
    {
        quint16 major = 0;
        quint16 minor = 0;
        quint16 patch = 0;
    };

    StickFirmware(DataTasks &tasks, QWidget *dialogParent, QObject *parent = nullptr);

    // "major.minor.patch"; missing or non-numeric parts count 0.
    static Version parse(const QString &text);
    // (major*10 + minor)*10 + patch in 16 bits, so 1.12.0 equals 2.2.0.
    static quint16 fold(const Version &v);
    // 1, -1 or 0 by the folded numbers.
    static int compare(const Version &a, const Version &b);

    // The range of the `fwversion` element; both 0.0.0 means none.
    void setRange(const QString &min, const QString &max);

    // Queries the stick and reports: a box, or with quiet the console and
    // only when the version is not valid. Returns the state: 0 valid,
    // -1 too low, 1 too high, 99 nothing to compare with, -2 no answer,
    // -3 not a stick port.
    int checkFirmwareVersion(bool quiet);

    // The menu action: asks, finds the updater, asks for the file, runs.
    void updateTAVFW();
    // Runs the updater on a firmware file and reports; true on success.
    bool runUpdater(const QString &firmwareFile);

    // Folder of the updater and firmware files; by default
    // <application folder>/Tav-Stick_Firmware.
    void setFolder(const QString &folder) { m_folder = folder; }
    QString folder() const { return m_folder; }
    static QString updaterName() { return QStringLiteral("Tav-Updater.exe"); }

    // Around an update the timers of the form rest.
    std::function<void(bool running)> setTimersRunning;

    // The pause between the query and reading its answer.
    static const int kAnswerDelayMs = 300;

private:
    DataTasks &m_tasks;
    QWidget *m_dialogParent;
    QString m_folder;
    Version m_min;
    Version m_max;
};
