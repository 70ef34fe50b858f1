#pragma once
#include <QFile>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include "automation/ScriptLexer.h"
#include "device/IntelHexReader.h"

class ScriptHost;

// Runs .script files: a flat list of command lines with one counted loop,
// one directory loop, the console for results and an output log for
// machines. Lives as long as the window; its state is set up anew for each
// run.
class ScriptInterpreter : public QObject
{
    Q_OBJECT
public:
    explicit ScriptInterpreter(ScriptHost &host, QObject *parent = nullptr);

    // The output log of the next runs (-o).
    void setOutputFileName(const QString &name) { m_outputFileName = name; }

    // Runs a whole script file.
    void runBatchfile(const QString &fileName);

    // Runs one line; false when the script must stop.
    bool execScriptLine(const QString &line, unsigned lineNumber);

    // Verifies that the first count parameters are present.
    bool checkParameters(const QString &line, const ScriptLine &parsed, int count, unsigned lineNumber);

    // Interpreter state, public for the commands and for tests.
    QFile scriptFile;
    QFile scriptOutput;
    quint16 scriptLine = 1;
    bool singleStep = false;
    int waitTime = 0;
    QString loopDefine;
    quint32 loopStart = 0;
    quint32 loopStep = 0;
    quint32 loopStop = 0;
    quint32 loopCurrent = 0;
    qint64 loopPosition = 0;
    QStringList dirLoopFiles;
    quint32 dirLoopIndex = 0;
    qint64 dirLoopPosition = 0;
    QString dirLoopCurrent;
    int failedAsserts = 0;
    QList<MemoryBlock> bslBlocks;

    ScriptHost &host() { return m_host; }

    // The link of messages about the line being run.
    QString lineLink(unsigned lineNumber) const;
    void reportUnknownDefine(const QString &define, const QString &line, unsigned lineNumber);
    // Writes a line to the output log when it is open.
    void writeOutput(const QString &text);
    // "$DIR$" stands for the directory loop's current name.
    QString withDirLoop(const QString &parameter) const;
    // A value equal to the counted loop's define stands for its value.
    QString withLoopValue(const QString &value) const;
    // Pumps the event loop for ms milliseconds.
    static void processEventsFor(int ms);

    // Set while a script runs, for the window's stop request.
    bool isRunning() const { return m_running; }
    // Ends the running script after the current command.
    void requestStop() { m_stopRequested = true; }

private:
    void resetState();

    ScriptHost &m_host;
    QString m_outputFileName;
    QString m_scriptPath;
    bool m_running = false;
    bool m_stopRequested = false;
};
