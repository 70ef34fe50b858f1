#include "automation/ScriptInterpreter.h"

#include "automation/ScriptCommands.h"
#include "automation/ScriptHost.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "shell/Console.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QFileInfo>

ScriptInterpreter::ScriptInterpreter(ScriptHost &host, QObject *parent)
    : QObject(parent)
    , m_host(host)
{
}

void ScriptInterpreter::resetState()
{
    scriptLine = 1;
    singleStep = false;
    waitTime = 0;
    loopDefine.clear();
    loopStart = loopStep = loopStop = loopCurrent = 0;
    loopPosition = 0;
    dirLoopFiles.clear();
    dirLoopIndex = 0;
    dirLoopPosition = 0;
    dirLoopCurrent.clear();
    failedAsserts = 0;
    bslBlocks.clear();
    m_stopRequested = false;
}

void ScriptInterpreter::processEventsFor(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms) {
        const int left = int(ms - timer.elapsed());
        QCoreApplication::processEvents(QEventLoop::AllEvents, qBound(1, left, 100));
        // processEvents returns at once when nothing is pending: rest a
        // moment so that a long wait does not keep a core busy.
        QThread::msleep(1);
    }
}

void ScriptInterpreter::runBatchfile(const QString &fileName)
{
    resetState();
    const QFileInfo info(fileName);
    m_scriptPath = info.absoluteFilePath();
    m_host.setWorkingDir(info.absolutePath());

    if (scriptFile.isOpen())
        scriptFile.close();
    scriptFile.setFileName(fileName);
    if (!scriptFile.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(m_scriptPath, scriptFile.errorString());
        return;
    }
    if (!m_outputFileName.isEmpty()) {
        if (scriptOutput.isOpen())
            scriptOutput.close();
        scriptOutput.setFileName(m_outputFileName);
        if (!scriptOutput.open(QIODevice::ReadWrite | QIODevice::Text | QIODevice::Truncate)) {
            Report::cannotOpenFile(QFileInfo(m_outputFileName).absoluteFilePath(), scriptOutput.errorString());
            scriptFile.close();
            return;
        }
    }

    m_running = true;
    while (true) {
        const QString line = QString::fromUtf8(scriptFile.readLine());
        if (!execScriptLine(line, scriptLine))
            break;
        ++scriptLine;
        if (m_stopRequested || m_host.exitRequested())
            break;
        if (singleStep && !m_host.quiet()) {
            const auto answer = Dialogs::question(m_host.hostWindow(), QMessageBox::Question, tr("SingleStep"),
                                                  tr("Continue with next command ?"),
                                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
            if (answer == QMessageBox::No)
                break;
        }
        if (waitTime != 0)
            processEventsFor(waitTime);
        else if ((scriptLine & 0xFF) == 0)
            // A loop that never waits (step 0 runs for ever, as asked) must
            // still let the user close the window or stop the run.
            QCoreApplication::processEvents();
        if (scriptFile.atEnd())
            break;
    }
    m_running = false;
    scriptFile.close();
    if (scriptOutput.isOpen())
        scriptOutput.close();
}

QString ScriptInterpreter::lineLink(unsigned lineNumber) const
{
    return QStringLiteral("$xmlopen$%1$-n%2$-c1").arg(Console::linkTarget(m_scriptPath)).arg(lineNumber);
}

void ScriptInterpreter::reportUnknownDefine(const QString &define, const QString &line, unsigned lineNumber)
{
    consolePrint(QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>Unknown define: %1 in line %2 <b><a href=\"%3\">file</a> line %4</b><b><br>")
                     .arg(define, line.trimmed(), lineLink(lineNumber))
                     .arg(lineNumber));
}

void ScriptInterpreter::writeOutput(const QString &text)
{
    if (scriptOutput.isOpen()) {
        scriptOutput.write(text.toUtf8());
        scriptOutput.flush();
    }
}

QString ScriptInterpreter::withDirLoop(const QString &parameter) const
{
    return parameter == QLatin1String("$DIR$") ? dirLoopCurrent : parameter;
}

QString ScriptInterpreter::withLoopValue(const QString &value) const
{
    if (!loopDefine.isEmpty() && value == loopDefine) {
        if (DataClass *data = m_host.tables().dataValue(loopDefine))
            return QString::number(data->getValue());
    }
    return value;
}

bool ScriptInterpreter::checkParameters(const QString &line, const ScriptLine &parsed, int count, unsigned lineNumber)
{
    for (int i = 0; i < count; ++i) {
        if (parsed.parameter(i).isEmpty()) {
            consolePrint(QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>Missing parameter: %1 in <b><a href=\"%2\">file</a> line %3</b><b><br>")
                             .arg(line.trimmed(), lineLink(lineNumber))
                             .arg(lineNumber));
            return false;
        }
    }
    return true;
}

bool ScriptInterpreter::execScriptLine(const QString &line, unsigned lineNumber)
{
    const ScriptLine parsed = ScriptLexer::lex(line);
    if (parsed.hasComment) {
        consolePrint(parsed.comment.toHtmlEscaped() + QStringLiteral("<br>"));
        writeOutput(parsed.comment + QLatin1Char('\n'));
    }
    if (parsed.isShort)
        return true;

    const ScriptCommands::Command *command = ScriptCommands::find(parsed.keyword);
    if (!command) {
        consolePrint(QStringLiteral("<font color=\"red\"> <b>Script Error: </b></font><b>Unknown command: %1 in line %2 <b><a href=\"%3\">file</a> line %4</b><b><br>")
                         .arg(parsed.keyword, line.trimmed(), lineLink(lineNumber))
                         .arg(lineNumber));
        return true;
    }
    if (!checkParameters(line, parsed, command->need, lineNumber))
        return false;
    ScriptCommands commands(*this, line.trimmed(), parsed, lineNumber);
    return commands.run(command->code);
}
