#pragma once
#include <QFile>
#include <QObject>
#include <QString>
#include <memory>

class QTextStream;

// The file side of recording a script from the user's hand: the open file,
// its text stream and the comment for the next line. While the stream is
// open it is installed as the writer of RecordingHook, so every element's
// user change lands here; what a line looks like is the element's affair.
//
// The recording flag and the stream are apart on purpose: a file that
// can't be opened still turns the recording on (the action then offers the
// stop), but with no stream nothing is written.
class ScriptRecorder : public QObject
{
    Q_OBJECT
public:
    explicit ScriptRecorder(QObject *parent = nullptr);
    ~ScriptRecorder() override;

    bool isRecording() const { return m_recording; }
    bool hasStream() const { return m_stream != nullptr; }
    QString fileName() const { return m_file.fileName(); }

    // Opens the file (truncating) and writes the header naming the
    // description. Turns recording on in any case; false (and a console
    // message) when the file could not be opened.
    bool start(const QString &fileName, const QString &description);
    // Writes the footer, closes the file and turns recording off. Does
    // nothing but say so when no recording runs.
    void stop();

    // The comment set in the dialog; it stands behind each element line.
    QString comment() const { return m_comment; }
    void setComment(const QString &comment) { m_comment = comment; }

    // An element's command: written with the comment and a line end, and
    // echoed to the console with "<br>".
    void writeCommand(const QString &command);
    // A line of the dialog: fileText goes to the file as it stands,
    // consoleText to the console. Nothing happens without a stream.
    void writeRaw(const QString &fileText, const QString &consoleText);

signals:
    void recordingChanged(bool recording);

private:
    void closeStream();

    bool m_recording = false;
    QFile m_file;
    std::unique_ptr<QTextStream> m_stream;
    QString m_comment;
};
