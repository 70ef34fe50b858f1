#include "elements/LogLabel.h"

#include "elements/DefineLookup.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"

#include <QDateTime>
#include <QFile>

LogLabel::LogLabel(QWidget *parent)
    : QLabel(parent)
{
    setText(tr("Log"));
}

int LogLabel::addColumn(const QString &define, const QString &title)
{
    m_defines.append(define);
    m_titles.append(title);
    m_values.append(QString());
    return m_defines.size() - 1;
}

bool LogLabel::take(DocumentTables *tables, const QString &define)
{
    int changed = -1;
    for (int i = 0; i < m_defines.size(); ++i) {
        // A column may read another kind of the element (".label"); the
        // change comes under the element's own name.
        const QString column = m_defines.at(i);
        if (column != define && Selectors::stripSelector(column) != define)
            continue;
        bool found = false;
        const QString text = DefineLookup::valueText(tables, column, &found);
        if (!found)
            continue;
        m_values[i] = text;
        changed = i;
    }
    if (changed < 0)
        return false;
    valueChanged(changed);
    return true;
}

QString LogLabel::fileStamp(int mode, const QDateTime &utc, QChar delimiter)
{
    const QDate d = utc.date();
    const QTime t = utc.time();
    if (mode == DateAndTime)
        return QString::asprintf("%d.%02d.%02d/%02d:%02d:%02d%c", d.year(), d.month(), d.day(), t.hour(), t.minute(),
                                 t.second(), char(delimiter.toLatin1()));
    if (mode == TimeOnly)
        return QString::asprintf("%02d:%02d:%02d:%04d%c", t.hour(), t.minute(), t.second(), t.msec(),
                                 char(delimiter.toLatin1()));
    return QString();
}

QString LogLabel::consoleStamp(int mode, const QDateTime &utc)
{
    const QDate d = utc.date();
    const QTime t = utc.time();
    if (mode == DateAndTime)
        return QString::asprintf("</b>%d.%02d.%02d/%02d:%02d:%02d ", d.year(), d.month(), d.day(), t.hour(),
                                 t.minute(), t.second());
    if (mode == TimeOnly)
        return QString::asprintf("</b>%02d:%02d:%02d:%04d ", t.hour(), t.minute(), t.second(), t.msec());
    return QStringLiteral("</b>");
}

void LogLabel::valueChanged(int val)
{
    Q_UNUSED(val);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QString values = m_values.join(m_delimiter);
    m_lastLine = fileStamp(m_timestamp, now, m_delimiter) + values;

    if (!m_fileName.isEmpty()) {
        QFile file(m_fileName);
        const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Text
            | (m_append ? QIODevice::Append : QIODevice::Truncate);
        if (file.open(mode)) {
            file.write(m_lastLine.toUtf8());
            file.write("\n");
            m_openFailureReported = false;
        } else if (!m_openFailureReported) {
            m_openFailureReported = true;
            Report::cannotOpenFile(m_fileName, file.errorString());
        }
    }
    if (m_console)
        consolePrint(QStringLiteral("<b>%1: %2%3<br>")
                         .arg(objectName().toHtmlEscaped(), consoleStamp(m_timestamp, now), values.toHtmlEscaped()));
}

bool LogLabel::setValue(const QString &text, int)
{
    Report::invalidSetValue(define(), text);
    return false;
}

bool LogLabel::loadValue(const QString &)
{
    // A log has nothing to restore from a configuration.
    return true;
}

QString LogLabel::value(int kind, bool)
{
    switch (kind) {
    case Selectors::Value:
        return m_lastLine;
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, define());
        return QString();
    }
}

void LogLabel::setElementEnabled(bool enabled)
{
    if (!enableLocked)
        setEnabled(enabled);
}

bool LogLabel::setBits(int, int)
{
    return true;
}
