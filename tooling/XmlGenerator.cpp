#include "tooling/XmlGenerator.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QXmlStreamReader>

#include "config/Checksum.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "model/BitField.h"
#include "model/EnumeratedValue.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "shell/Console.h"

namespace {

// A fixed placeholder; signing replaces it with the true digest.
const char kPlaceholderHash[] = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";

// SVD texts become attribute values: mark-up characters are escaped and
// line breaks folded, so that any vendor description gives a well-formed
// file.
QString attributeText(const QString &text)
{
    return text.simplified().toHtmlEscaped();
}

// As the SVD reader takes numbers: normalised, then signed 32 bits.
int svdNumber(const QString &text)
{
    bool ok = false;
    const int n = normaliseNumber(text).toInt(&ok, 10);
    return ok ? n : 0;
}

} // namespace

QString XmlGenerator::outputPathFor(const QString &svdPath)
{
    const QFileInfo info(svdPath);
    return info.dir().filePath(info.completeBaseName() + QStringLiteral("_Generated.xml"));
}

QString XmlGenerator::text()
{
    return m_xml->readElementText(QXmlStreamReader::SkipChildElements).trimmed();
}

void XmlGenerator::skip()
{
    m_xml->skipCurrentElement();
}

bool XmlGenerator::generateXMLFromSVD(const QString &fileName, bool bOutputTree)
{
    m_fileName = fileName;
    m_tree = bOutputTree;
    m_out.clear();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(fileName, file.errorString());
        return false;
    }
    m_outputPath = outputPathFor(fileName);
    QString svdRelative = QFileInfo(m_outputPath).absoluteDir().relativeFilePath(QFileInfo(fileName).absoluteFilePath());
    if (svdRelative.startsWith(QLatin1String("../")))
        svdRelative.remove(0, 3);

    m_out += QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    m_out += QStringLiteral("<nvxmlcfg version=\"2.0.2\">\n");
    m_out += QStringLiteral("  <checksum>%1</checksum>\n").arg(QLatin1String(kPlaceholderHash));
    m_out += QStringLiteral("  <version label=\"V2.0.1\"/>\n");
    m_out += QStringLiteral("  <svd file=\"%1\"/>\n").arg(attributeText(svdRelative));
    m_out += QStringLiteral("  <disclaimer file=\"disclaimer.txt\"/>\n");
    m_out += QStringLiteral("  <tabcontainer label = \"Peripherals\" resize=\"1\">\n");

    QXmlStreamReader xml(&file);
    m_xml = &xml;
    if (m_model)
        m_model->peripheralItemCounter = 0;
    DocumentTables *tables = m_model ? m_model->tables() : nullptr;
    m_hasPeripheralsList = tables && tables->element(QStringLiteral("$PERIPHERALS$"));
    if (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("device"))
            readDevice();
        else
            xml.raiseError(QStringLiteral("Warning"));
    }
    const bool broken = xml.hasError();
    QString errorText;
    if (broken)
        errorText = xml.errorString()
            + QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b><br>")
                  .arg(Console::fileLink(fileName, xml.lineNumber(), xml.columnNumber()))
                  .arg(xml.lineNumber())
                  .arg(xml.columnNumber());
    m_xml = nullptr;
    file.close();
    if (!broken) {
        m_out += QStringLiteral("  </tabcontainer>\n");
        m_out += QStringLiteral("</nvxmlcfg>\n");
    }

    // Written whole or not at all, also when the SVD file broke off.
    QSaveFile out(m_outputPath);
    const QByteArray bytes = broken ? m_out.toUtf8() : Checksum::signedText(m_out, m_outputPath);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text) || out.write(bytes) != bytes.size() || !out.commit()) {
        Report::cannotOpenFile(m_outputPath, out.errorString());
        return false;
    }
    if (broken) {
        Report::cannotReadFile(fileName, errorText);
        return false;
    }
    return true;
}

void XmlGenerator::readDevice()
{
    while (m_xml->readNextStartElement()) {
        if (m_xml->name() == QLatin1String("name")) {
            const QString name = text();
            if (m_model)
                m_model->deviceName = name;
        } else if (m_xml->name() == QLatin1String("peripherals")) {
            while (m_xml->readNextStartElement()) {
                if (m_xml->name() == QLatin1String("peripheral"))
                    readPeripheral();
                else
                    skip();
            }
        } else {
            skip();
        }
    }
}

void XmlGenerator::readPeripheral()
{
    QString name, description;
    Peripheral *peripheral = nullptr;
    m_baseAddress = -1;
    while (m_xml->readNextStartElement()) {
        const QStringRef tag = m_xml->name();
        if (tag == QLatin1String("name")) {
            const qint64 line = m_xml->lineNumber();
            const qint64 column = m_xml->columnNumber();
            name = text();
            if (m_model) {
                peripheral = m_model->addPeripheral(name);
                if (m_hasPeripheralsList
                    && !m_model->addListItem(QStringLiteral("$PERIPHERALS$"), name, name, m_model->peripheralItemCounter++))
                    consolePrint(QStringLiteral("<font color=\"red\"> <b>XML-ERROR: Couldn't set EnumeratedValue %1 in $PERIPHERALS$ <a href=\"%2\">file</a> line %3, column %4</b></font><b>: %4<br>")
                                     .arg(name, Console::fileLink(m_fileName, line, column))
                                     .arg(line)
                                     .arg(column));
            }
        } else if (tag == QLatin1String("description")) {
            description = text();
            if (peripheral)
                peripheral->description = description;
        } else if (tag == QLatin1String("baseAddress")) {
            m_baseAddress = svdNumber(text());
        } else if (tag == QLatin1String("registers")) {
            const QString n = attributeText(name);
            const QString d = attributeText(description);
            if (m_tree)
                m_out += QStringLiteral("    <treecontainer headerlabels=\"Structure;Settings;\" label=\"%1\" desc=\"%2\" columnwidths=\"50;600\">\n").arg(n, d);
            else
                m_out += QStringLiteral("    <gridcontainer columns=\"3\" label=\"%1\" desc=\"%2\">\n").arg(n, d);
            m_out += QStringLiteral("    <header file=\"%1_defines.h\">\n").arg(n);
            while (m_xml->readNextStartElement()) {
                if (m_xml->name() == QLatin1String("register"))
                    readRegister(peripheral, name);
                else
                    skip();
            }
            m_out += QStringLiteral("    </header>\n");
            m_out += m_tree ? QStringLiteral("    </treecontainer>\n") : QStringLiteral("    </gridcontainer>\n");
        } else {
            skip();
        }
    }
}

void XmlGenerator::readRegister(Peripheral *peripheral, const QString &module)
{
    QString name, description;
    Register *reg = nullptr;
    bool hasFields = false;
    while (m_xml->readNextStartElement()) {
        const QStringRef tag = m_xml->name();
        if (tag == QLatin1String("name")) {
            name = text();
            if (peripheral) {
                reg = peripheral->findRegister(name);
                if (!reg) {
                    m_model->addListItem(QStringLiteral("$REGISTERS$"), name, name, m_model->registerItemCounter++);
                    reg = peripheral->addRegister(name, QString());
                }
            }
        } else if (tag == QLatin1String("addressOffset")) {
            const int offset = svdNumber(text());
            if (reg)
                reg->address = offset + m_baseAddress;
        } else if (tag == QLatin1String("description")) {
            description = text();
            if (reg)
                reg->description = description;
        } else if (tag == QLatin1String("size")) {
            const int size = text().toInt();
            if (reg) {
                if (size <= reg->highestBit)
                    Report::svdOutOfSize(module, name, QString(), size);
                else
                    reg->size = size;
            }
        } else if (tag == QLatin1String("fields")) {
            hasFields = true;
            const QString n = attributeText(name);
            if (m_tree) {
                m_out += QStringLiteral("        <branch label=\"%1\">\n").arg(n);
            } else {
                m_out += QStringLiteral("        <groupcontainer label=\"%1\" sizepolicy=\"fixed;fixed\">\n").arg(n);
                m_out += QStringLiteral("        <verticalcontainer>\n");
            }
            while (m_xml->readNextStartElement()) {
                if (m_xml->name() == QLatin1String("field"))
                    readField(reg, module, name);
                else
                    skip();
            }
            if (m_tree) {
                m_out += QStringLiteral("        </branch>\n");
            } else {
                m_out += QStringLiteral("        </verticalcontainer>\n");
                m_out += QStringLiteral("        </groupcontainer>\n");
            }
        } else {
            skip();
        }
    }
    if (!hasFields && !m_xml->hasError()) {
        m_out += QStringLiteral("          <horizontalcontainer>\n");
        m_out += QStringLiteral("            <text label=\"%1\" size=\"120;-1\" wordwrap=\"1\"/>\n").arg(attributeText(description));
        m_out += QStringLiteral("            <spinbox define=\"%1.%2\" />\n").arg(attributeText(module), attributeText(name));
        m_out += QStringLiteral("          </horizontalcontainer>\n");
    }
}

void XmlGenerator::readField(Register *reg, const QString &module, const QString &registerName)
{
    QString name, description;
    BitField *field = nullptr;
    int lsb = 0, msb = 0;
    bool enumerated = false;
    while (m_xml->readNextStartElement()) {
        const QStringRef tag = m_xml->name();
        if (tag == QLatin1String("name")) {
            name = text();
            if (reg)
                field = reg->addField(name);
        } else if (tag == QLatin1String("description")) {
            description = text();
            if (field)
                field->description = description;
        } else if (tag == QLatin1String("access")) {
            const bool readOnly = text().compare(QLatin1String("read-only"), Qt::CaseInsensitive) == 0;
            if (field)
                field->readOnly = readOnly;
        } else if (tag == QLatin1String("lsb")) {
            lsb = text().toInt();
        } else if (tag == QLatin1String("msb")) {
            msb = text().toInt();
            if (field) {
                const int width = msb - lsb + 1;
                if (reg && reg->size > 0 && msb >= reg->size)
                    Report::svdOutOfSize(module, registerName, name, width);
                field->width = width;
                field->msb = msb;
                field->lsb = lsb;
            }
        } else if (tag == QLatin1String("enumeratedValues")) {
            enumerated = true;
            readEnumeratedValues(field, reg, lsb);
        } else {
            skip();
        }
    }
    if (m_xml->hasError())
        return;
    const QString define = attributeText(module + QLatin1Char('.') + registerName + QLatin1Char('.') + name);
    m_out += QStringLiteral("          <horizontalcontainer>\n");
    m_out += QStringLiteral("            <text label=\"%1\" size=\"120;-1\" wordwrap=\"1\"/>\n").arg(attributeText(description));
    if (enumerated)
        m_out += QStringLiteral("            <combo define=\"%1\" size=\"400;-1\" />\n").arg(define);
    else if (lsb == msb)
        m_out += QStringLiteral("            <checkbox define=\"%1\" />\n").arg(define);
    else
        m_out += QStringLiteral("            <spinbox define=\"%1\" />\n").arg(define);
    m_out += QStringLiteral("          </horizontalcontainer>\n");
}

void XmlGenerator::readEnumeratedValues(BitField *field, Register *reg, int lsb)
{
    while (m_xml->readNextStartElement()) {
        if (m_xml->name() != QLatin1String("enumeratedValue")) {
            skip();
            continue;
        }
        EnumeratedValue value;
        while (m_xml->readNextStartElement()) {
            const QStringRef tag = m_xml->name();
            if (tag == QLatin1String("name")) {
                value.name = text();
            } else if (tag == QLatin1String("description")) {
                value.description = text();
            } else if (tag == QLatin1String("value")) {
                QString v = text();
                v.replace(QLatin1Char('#'), QStringLiteral("0b"));
                value.value = svdNumber(v);
            } else {
                skip();
            }
        }
        if (field)
            field->enumeratedValues.append(value);
        if (reg)
            reg->enumerated.insert(lsb + value.value, value);
    }
}
