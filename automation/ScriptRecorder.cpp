#include "automation/ScriptRecorder.h"

#include "elements/MessageSink.h"
#include "elements/RecordingHook.h"

#include <QTextStream>

ScriptRecorder::ScriptRecorder(QObject *parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("ScriptRecorder"));
}

ScriptRecorder::~ScriptRecorder()
{
    // A window that goes while recording still leaves a complete script.
    // No console line: the console may already be gone.
    if (m_stream)
        *m_stream << "//Exit(2)\n";
    RecordingHook::setWriter(RecordingHook::Writer());
    if (m_stream)
        m_stream->flush();
}

bool ScriptRecorder::start(const QString &fileName, const QString &description)
{
    if (m_stream)
        closeStream();
    m_file.setFileName(fileName);
    bool opened = m_file.open(QIODevice::ReadWrite | QIODevice::Text | QIODevice::Truncate);
    if (opened) {
        m_stream = std::make_unique<QTextStream>(&m_file);
        *m_stream << "//Macro recorded with XML " << description << "\n";
        *m_stream << "SetWaitTime(10)\n";
        m_stream->flush();
        RecordingHook::setWriter([this](const QString &command) { writeCommand(command); });
        consolePrint(QStringLiteral("Starting macro recording<br>"));
    } else {
        consolePrint(QStringLiteral("<font color=\"red\"><b>Recording: </b></font>Cannot open %1 for writing: %2. "
                                    "Nothing will be recorded.<br>")
                         .arg(fileName.toHtmlEscaped(), m_file.errorString().toHtmlEscaped()));
    }
    m_recording = true;
    emit recordingChanged(true);
    return opened;
}

void ScriptRecorder::stop()
{
    if (!m_recording) {
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Recording: </b></font>No recording is running.<br>"));
        return;
    }
    if (m_stream)
        *m_stream << "//Exit(2)\n";
    consolePrint(QStringLiteral("Macro recording stopped<br>"));
    closeStream();
    m_recording = false;
    emit recordingChanged(false);
}

void ScriptRecorder::closeStream()
{
    RecordingHook::setWriter(RecordingHook::Writer());
    if (m_stream) {
        m_stream->flush();
        m_stream.reset();
    }
    if (m_file.isOpen()) {
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            consolePrint(QStringLiteral("<font color=\"red\"><b>Recording: </b></font>Writing %1 failed: %2<br>")
                             .arg(m_file.fileName().toHtmlEscaped(), m_file.errorString().toHtmlEscaped()));
    }
}

void ScriptRecorder::writeCommand(const QString &command)
{
    if (!m_stream)
        return;
    QString line = command;
    if (!m_comment.isEmpty())
        line += QStringLiteral("//") + m_comment;
    *m_stream << line << "\n";
    // Flushed per line: a crash or a kill later on keeps what was recorded.
    m_stream->flush();
    consolePrint(line.toHtmlEscaped() + QStringLiteral("<br>"));
}

void ScriptRecorder::writeRaw(const QString &fileText, const QString &consoleText)
{
    if (!m_stream)
        return;
    *m_stream << fileText;
    m_stream->flush();
    consolePrint(consoleText);
}
