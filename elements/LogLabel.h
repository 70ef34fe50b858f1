#pragma once
#include <QChar>
#include <QDateTime>
#include <QLabel>
#include <QStringList>

#include "elements/ActiveElement.h"

class DocumentTables;

// Writes the values of some defines to a file, one line per change: each
// `logitem` is a column, fed by the define it names. The line may begin
// with a UTC time stamp and may be echoed to the console.
class LogLabel : public QLabel, public ActiveElement
{
    Q_OBJECT
public:
    enum Timestamp { NoTimestamp = 0, TimeOnly = 1, DateAndTime = 2 };

    explicit LogLabel(QWidget *parent = nullptr);

    void setFileName(const QString &path) { m_fileName = path; }
    QString fileName() const { return m_fileName; }
    // Append to the file; otherwise each line replaces its content.
    void setAppend(bool append) { m_append = append; }
    void setConsoleEcho(bool echo) { m_console = echo; }
    void setDelimiter(QChar delimiter) { m_delimiter = delimiter; }
    QChar delimiter() const { return m_delimiter; }
    void setTimestamp(int mode) { m_timestamp = mode; }
    void setType(const QString &type) { m_type = type; }
    QString type() const { return m_type; }

    // A column fed by `define`; returns its index.
    int addColumn(const QString &define, const QString &title);
    int columnCount() const { return m_defines.size(); }
    QStringList columnDefines() const { return m_defines; }
    QStringList columnTitles() const { return m_titles; }
    QStringList columnValues() const { return m_values; }

    // Takes the define's current value into every column that reads it (in
    // any of its kinds) and writes a line. False when no column reads it.
    bool take(DocumentTables *tables, const QString &define);

    // The time stamp of a line and of its console echo for this moment.
    static QString fileStamp(int mode, const QDateTime &utc, QChar delimiter);
    static QString consoleStamp(int mode, const QDateTime &utc);
    // The last line written, without its line end.
    QString lastLine() const { return m_lastLine; }

    // ActiveElement. Kind 0 is the last line written, 4 "LogLabel".
    bool setValue(const QString &text, int kind) override;
    bool loadValue(const QString &text) override;
    QString value(int kind, bool flag = false) override;
    QString referenceValue() override { return QString(); }
    void connectSignals() override {}
    void emitLocks() override {}
    void setElementEnabled(bool enabled) override;
    bool setBits(int msb, int lsb) override;
    QWidget *widget() override { return this; }
    QString typeInfo() const override { return QStringLiteral("LogLabel"); }

public slots:
    // Writes one line with the current column values; `val` is the column
    // that changed.
    void valueChanged(int val);

signals:
    void updateMathLabels();

private:
    QString m_fileName;
    bool m_append = false;
    bool m_console = false;
    QChar m_delimiter = QLatin1Char(';');
    int m_timestamp = NoTimestamp;
    QString m_type;
    QStringList m_defines;
    QStringList m_titles;
    QStringList m_values;
    QString m_lastLine;
    // A file that can't be written is reported once, not at every line.
    bool m_openFailureReported = false;
};
