#pragma once
#include "automation/python/PythonBridgeInterface.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <atomic>
#include <thread>

// The Python plug-in: embeds the system's Python 3 through pybind11. Python
// runs in the main thread, as everything else. So that a run that loops
// does not freeze the program for ever, a watchdog thread asks the
// interpreter every 50 ms (a pending call, taken between two bytecode
// steps) to let the Qt event loop work for a moment; a close of the window,
// a requested interrupt or the time limit then raise KeyboardInterrupt in
// the running code.
class PythonBridgePlugin : public QObject, public PythonBridgeInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PythonBridgeInterface_iid)
    Q_INTERFACES(PythonBridgeInterface)
public:
    PythonBridgePlugin();
    ~PythonBridgePlugin() override;

    bool initialize(QString *error) override;
    QString pythonVersion() const override;
    QObject *outputObject() override { return this; }
    void addObject(const QString &name, QObject *object) override;
    void evalFile(const QString &fileName) override;
    void evalScript(const QString &text) override;
    bool isRunning() const override { return m_depth > 0; }
    void requestInterrupt() override;
    void setTimeLimit(int milliseconds) override { m_timeLimit = milliseconds; }

    // From the Python side: text written to sys.stdout (0) or sys.stderr (1).
    void write(int channel, const QString &text);
    // The pending call of the watchdog, in the main thread between bytecode
    // steps; -1 with KeyboardInterrupt set stops the run.
    int pump();

Q_SIGNALS:
    void pythonStdOut(const QString &s);
    void pythonStdErr(const QString &s);

private:
    // Runs code (the text of a file or a script) in the main module's
    // dictionary, prints what it raised.
    void run(const QString &code, const QString &fileName);
    void flush(int channel, bool all);
    void watch();

    bool m_initialized = false;
    int m_depth = 0;
    bool m_inPump = false;
    std::atomic<bool> m_interrupt{false};
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_callQueued{false};
    std::atomic<bool> m_quit{false};
    int m_timeLimit = 0;
    QElapsedTimer m_runTime;
    qint64 m_lastRaise = -1;
    std::thread m_watchdog;
    QString m_pending[2];
    qint64 m_written = 0;
    qint64 m_dropped = 0;
};
