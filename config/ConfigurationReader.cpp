#include "config/ConfigurationReader.h"

#include "config/Checksum.h"
#include "config/ConfigurationWriter.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "shell/Console.h"

#include <QDir>
#include <QFileInfo>
#include <QIODevice>
#include <QSet>
#include <QXmlStreamReader>

namespace {

const QStringList &savedClasses()
{
    static const QStringList names = {
        QStringLiteral("ComboBox"), QStringLiteral("CheckBox"), QStringLiteral("ButtonGroup"),
        QStringLiteral("SpinBox"), QStringLiteral("DoubleSpinBox"), QStringLiteral("Knob"),
        QStringLiteral("Slider"), QStringLiteral("ToggleButton"), QStringLiteral("LineEdit"),
        QStringLiteral("TextEdit"), QStringLiteral("Table"), QStringLiteral("RegisterView"),
        QStringLiteral("HexSpinBox")};
    return names;
}

} // namespace

ConfigurationReader::ConfigurationReader(ConfigurationHost &host)
    : m_host(host)
{
}

ConfigurationReader::~ConfigurationReader() = default;

bool ConfigurationReader::isXmlConfiguration(const QByteArray &firstLine)
{
    return firstLine.trimmed() == "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
}

QString ConfigurationReader::errorString() const
{
    return m_error;
}

bool ConfigurationReader::read(QIODevice *device, const QString &fileName, bool compareOnly)
{
    m_fileName = QFileInfo(fileName).absoluteFilePath();
    m_folder = QFileInfo(fileName).absolutePath();
    m_error.clear();
    unresolved.clear();
    unseen.clear();
    differences.clear();

    m_content = device->readAll();
    device->seek(0);
    QXmlStreamReader xml(m_content);
    m_xml = &xml;
    if (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("qlnpxml"))
            xml.raiseError(QStringLiteral("Warning: Wrong QLNP Version"));
        else
            readXmlFile(compareOnly);
    }
    m_xml = nullptr;
    if (!m_error.isEmpty())
        return false;
    if (xml.hasError()) {
        m_error = xml.errorString() + QStringLiteral(" <b><a href=\"%1\">file</a> line %2, column %3</b><b><br>")
                                          .arg(Console::fileLink(m_fileName, xml.lineNumber(), xml.columnNumber()))
                                          .arg(xml.lineNumber())
                                          .arg(xml.columnNumber());
        return false;
    }
    return true;
}

bool ConfigurationReader::readXmlFile(bool compareOnly)
{
    QXmlStreamReader &xml = *m_xml;

    // The checksum is advisory: the user is told, and the values load.
    bool pending = false;
    if (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("checksum")) {
            const QString stated = xml.readElementText().trimmed();
            const QString digest = Checksum::computeChecksum(m_content, m_fileName);
            if (!digest.isEmpty() && digest != stated)
                Report::fileManipulated(m_fileName);
        } else {
            Report::noChecksumElement(m_fileName);
            pending = true;
        }
    }

    while (!xml.hasError() && (pending || xml.readNextStartElement())) {
        pending = false;
        if (xml.name() == QLatin1String("XmlFile")) {
            const QString name = xml.readElementText().trimmed();
            if (!compareOnly && !openDescription(name))
                return false;
        } else if (xml.name() == QLatin1String("XmlVersion")) {
            const QString version = xml.readElementText().trimmed();
            if (!compareOnly && version != m_host.descriptionVersion())
                Report::qlnpVersionMismatch(version, m_host.descriptionVersion());
        } else if (xml.name() == QLatin1String("ActiveElements")) {
            readRecords(compareOnly);
        } else {
            xml.skipCurrentElement();
        }
    }
    return !xml.hasError();
}

bool ConfigurationReader::openDescription(const QString &name)
{
    QStringList candidates;
    const QFileInfo given(name);
    candidates << (given.isAbsolute() ? name : QDir(m_folder).filePath(name));
    candidates << QDir(m_host.homeFolder()).filePath(name);
    candidates << QDir(m_host.homeFolder()).filePath(given.fileName());
    for (const QString &candidate : candidates) {
        if (!QFileInfo(candidate).isFile())
            continue;
        const QString path = QFileInfo(candidate).absoluteFilePath();
        if (path == m_host.currentDescription())
            return true;
        if (m_host.openDescription(path, QFileInfo(m_fileName).absoluteFilePath()))
            return true;
        m_error = Report::cannotReadFileText(path, QStringLiteral("The description could not be opened."));
        return false;
    }
    Report::scriptNotFound(name);
    m_error = QStringLiteral("Could not find \"%1\".\nPlease check script folder settings.").arg(name);
    return false;
}

void ConfigurationReader::readRecords(bool compareOnly)
{
    QXmlStreamReader &xml = *m_xml;
    DocumentTables &tables = m_host.tables();
    if (!compareOnly)
        m_host.resetToDefaults();
    // The defines a file is expected to mention, in the form's order; those
    // it did not mention are listed at the end (a set keeps that linear).
    QStringList expected;
    for (ActiveElement *element : tables.elementList) {
        const QString define = element->define();
        if (!define.isEmpty() && !define.contains(QLatin1String("$DIR$"))
            && !ConfigurationWriter::recordName(element).isEmpty())
            expected.append(define);
    }
    m_loaded.clear();

    while (!xml.hasError() && xml.readNextStartElement()) {
        const QString className = xml.name().toString();
        if (!savedClasses().contains(className)) {
            xml.skipCurrentElement();
            continue;
        }
        QString define;
        QString value;
        while (!xml.hasError() && xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("define"))
                define = xml.readElementText();
            else if (xml.name() == QLatin1String("value"))
                value = xml.readElementText();
            else
                xml.skipCurrentElement();
        }
        if (xml.hasError())
            break;
        applyRecord(define, value, compareOnly);
    }
    for (const QString &define : qAsConst(expected)) {
        if (!m_loaded.contains(define))
            unseen.append(define);
    }
}

void ConfigurationReader::applyRecord(const QString &define, const QString &value, bool compareOnly)
{
    ActiveElement *element = m_host.tables().element(define);
    if (!element) {
        if (compareOnly)
            consolePrint(QStringLiteral("%1 does not exist in current setting<br>").arg(define));
        else
            unresolved.append(QStringLiteral("#define ") + define + QLatin1Char(' ') + value);
        return;
    }
    if (compareOnly) {
        const QString current = element->value(Selectors::Value);
        if (normaliseNumber(current) != normaliseNumber(value))
            differences.append(QStringLiteral("%1#:#%2!=%3").arg(define, current, value));
        return;
    }
    element->loadValue(value);
    m_loaded.insert(define);
}
