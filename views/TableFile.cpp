#include "views/TableFile.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/Reports.h"
#include "views/Table.h"
#include "views/ViewContext.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace {

QString baseName(const QString &path)
{
    return QFileInfo(path).fileName();
}

} // namespace

QByteArray TableFile::build(const QString &define, const QString &value)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("qlnpxml"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    xml.writeTextElement(QStringLiteral("XmlFile"), baseName(ViewContext::descriptionFile()));
    xml.writeTextElement(QStringLiteral("XmlVersion"), ViewContext::descriptionVersion());
    xml.writeStartElement(QStringLiteral("ActiveElements"));
    xml.writeStartElement(QStringLiteral("Table"));
    xml.writeTextElement(QStringLiteral("define"), define);
    xml.writeTextElement(QStringLiteral("value"), value);
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

bool TableFile::writeText(const QString &fileName, const QByteArray &bytes)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        Report::cannotOpenFile(path, file.errorString());
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        file.cancelWriting();
        Report::writeError(path);
        return false;
    }
    return true;
}

bool TableFile::save(const QString &fileName, const QString &define, const QString &value)
{
    return writeText(fileName, build(define, value));
}

bool TableFile::load(const QString &fileName, Table *table)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Report::cannotOpenFile(path, file.errorString());
        return false;
    }
    QXmlStreamReader xml(&file);
    QString define;
    QString value;
    bool found = false;
    QString fileXml;
    QString fileVersion;
    bool haveXml = false;
    bool haveVersion = false;
    if (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("qlnpxml")) {
            xml.raiseError(QStringLiteral("Warning: Wrong QLNP Version"));
        } else {
            while (xml.readNextStartElement()) {
                if (xml.name() == QLatin1String("XmlFile")) {
                    fileXml = xml.readElementText().trimmed();
                    haveXml = true;
                } else if (xml.name() == QLatin1String("XmlVersion")) {
                    fileVersion = xml.readElementText().trimmed();
                    haveVersion = true;
                } else if (xml.name() == QLatin1String("ActiveElements")) {
                    bool first = true;
                    while (xml.readNextStartElement()) {
                        if (first && xml.name() == QLatin1String("Table")) {
                            while (xml.readNextStartElement()) {
                                if (xml.name() == QLatin1String("define"))
                                    define = xml.readElementText();
                                else if (xml.name() == QLatin1String("value"))
                                    value = xml.readElementText();
                                else
                                    xml.skipCurrentElement();
                            }
                            found = true;
                        } else {
                            xml.skipCurrentElement();
                        }
                        first = false;
                    }
                } else {
                    xml.skipCurrentElement();
                }
            }
        }
    }
    if (xml.hasError()) {
        // A broken file loads nothing, not the part before the break.
        Report::cannotReadFile(path, QStringLiteral("%1 (line %2, column %3)")
                                         .arg(xml.errorString())
                                         .arg(xml.lineNumber())
                                         .arg(xml.columnNumber()));
        return false;
    }
    const QString current = baseName(ViewContext::descriptionFile());
    if (haveXml && !current.isEmpty() && baseName(fileXml) != current)
        Report::tableFromOtherXml(fileXml, current);
    if (haveVersion && !ViewContext::descriptionFile().isEmpty() && fileVersion != ViewContext::descriptionVersion())
        Report::tableVersionMismatch(fileVersion, ViewContext::descriptionVersion());
    if (!found)
        return true;
    ActiveElement *target = nullptr;
    if (DocumentTables *tables = DocumentTables::current())
        target = tables->element(define);
    if (!target && table && define == table->define())
        target = table;
    if (!target) {
        Report::notFoundIn(define, path);
        return false;
    }
    target->loadValue(value);
    return true;
}
