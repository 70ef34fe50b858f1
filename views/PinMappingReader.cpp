#include "views/PinMappingReader.h"

#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "shell/Console.h"
#include "views/PinMappingDocument.h"

#include <QColor>
#include <QFile>
#include <QPointF>
#include <QSet>
#include <QXmlStreamReader>

namespace {

class Reading
{
public:
    Reading(QXmlStreamReader &xml, const QString &fileName, PinMappingDocument &doc)
        : xml(xml), fileName(fileName), doc(doc)
    {
    }

    void readRoot();
    void checkReferences();

    QXmlStreamReader &xml;
    QString fileName;
    PinMappingDocument &doc;

private:
    QString attr(const char *name) const { return xml.attributes().value(QLatin1String(name)).toString(); }
    bool has(const char *name) const { return xml.attributes().hasAttribute(QLatin1String(name)); }
    void warn(const QString &text);
    // A u32 attribute within 0..max; out of range or not a number keeps
    // the former value.
    void readSize(const char *name, quint32 &value, quint32 max);
    void readColor(const char *name, QColor &color);
    void readPoint(const char *name, QPointF &point);
    void readGeometry();
    void readMapping();
    void readConditions();
    quint16 readU16(const char *name, const QString &what);
};

void Reading::warn(const QString &text)
{
    const QString position = QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b>")
                                 .arg(Console::fileLink(fileName, xml.lineNumber(), xml.columnNumber()))
                                 .arg(xml.lineNumber())
                                 .arg(xml.columnNumber());
    consolePrint(QStringLiteral("<b><font color=\"orange\"> XML Warning: </font>%1 <a href=\"%2\">%3</a> (%4)<br>")
                     .arg(text.toHtmlEscaped(), QString(), QString(), position));
}

void Reading::readSize(const char *name, quint32 &value, quint32 max)
{
    if (!has(name))
        return;
    bool ok = false;
    const qlonglong v = attr(name).trimmed().toLongLong(&ok);
    if (!ok || v < 0) {
        warn(QStringLiteral("\"%1\" of <%2> is not a size: %3").arg(QLatin1String(name), xml.name().toString(), attr(name)));
        return;
    }
    if (quint64(v) > max) {
        warn(QStringLiteral("\"%1\" of <%2> is too large (%3), %4 is used")
                 .arg(QLatin1String(name), xml.name().toString(), attr(name))
                 .arg(max));
        value = max;
        return;
    }
    value = quint32(v);
}

void Reading::readColor(const char *name, QColor &color)
{
    if (!has(name))
        return;
    if (!PinMappingReader::parseColor(attr(name), color))
        warn(QStringLiteral("\"%1\" of <%2> is not three numbers joined by \";\": %3")
                 .arg(QLatin1String(name), xml.name().toString(), attr(name)));
}

void Reading::readPoint(const char *name, QPointF &point)
{
    if (!has(name))
        return;
    // Anything but two parts is ignored.
    PinMappingReader::parsePoint(attr(name), point);
}

quint16 Reading::readU16(const char *name, const QString &what)
{
    if (!has(name))
        return 0;
    bool ok = false;
    const uint v = attr(name).trimmed().toUInt(&ok);
    if (!ok || v > 0xFFFF) {
        warn(QStringLiteral("\"%1\" of %2 is not a number from 0 to 65535: %3").arg(QLatin1String(name), what, attr(name)));
        return 0;
    }
    return quint16(v);
}

void Reading::readGeometry()
{
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("pin")) {
            xml.skipCurrentElement();
            continue;
        }
        Pin pin;
        pin.pinname = attr("pinname");
        const QString what = QStringLiteral("pin \"%1\"").arg(pin.pinname);
        pin.nr = readU16("nr", what);
        pin.quadrant = readU16("quadrant", what);
        pin.index = readU16("index", what);
        readColor("color", pin.color);
        if (pin.quadrant > 3)
            warn(QStringLiteral("Pin %1 lies in quadrant %2 (0 to 3 allowed): it is not drawn").arg(pin.pinname).arg(pin.quadrant));
        if (pin.pinname.isEmpty()) {
            warn(QStringLiteral("Pin without \"pinname\" is skipped"));
        } else if (doc.pinsByName.contains(pin.pinname)) {
            warn(QStringLiteral("Pin %1 is listed twice; the first is kept").arg(pin.pinname));
        } else {
            doc.pinsByName.insert(pin.pinname, doc.pins.size());
            doc.pins.append(pin);
        }
        xml.skipCurrentElement();
    }
}

void Reading::readMapping()
{
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("mapentry")) {
            xml.skipCurrentElement();
            continue;
        }
        MapEntry entry;
        entry.pinname = attr("pinname");
        entry.output = attr("direction").trimmed().toUpper() == QLatin1String("O");
        entry.function = attr("function");
        entry.dispname = attr("dispname");
        entry.info = attr("info");
        entry.link = attr("link");
        readColor("color", entry.color);
        if (doc.functionsByName.contains(entry.function))
            warn(QStringLiteral("Function %1 is mapped twice; the later entry is used").arg(entry.function));
        doc.functionsByName.insert(entry.function, doc.entries.size());
        doc.entries.append(entry);
        xml.skipCurrentElement();
    }
}

void Reading::readConditions()
{
    while (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("mapcondentry")) {
            xml.skipCurrentElement();
            continue;
        }
        MapCondEntry entry;
        entry.cond = attr("cond");
        entry.function = attr("function");
        entry.compiled.compile(entry.cond);
        doc.conditions.append(entry);
        xml.skipCurrentElement();
    }
}

void Reading::readRoot()
{
    if (!xml.readNextStartElement())
        return;
    if (xml.name() != QLatin1String("pinmapping")) {
        xml.raiseError(QStringLiteral("Warning"));
        return;
    }
    while (xml.readNextStartElement()) {
        const QStringRef name = xml.name();
        if (name == QLatin1String("name")) {
            doc.name = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
            continue;
        }
        if (name == QLatin1String("geometry")) {
            readGeometry();
            continue;
        }
        if (name == QLatin1String("mapping")) {
            readMapping();
            continue;
        }
        if (name == QLatin1String("mapconditions")) {
            readConditions();
            continue;
        }
        if (name == QLatin1String("chipsize")) {
            readSize("len", doc.chipSize, PinMappingDocument::kMaxChipSize);
            if (doc.chipSize < PinMappingDocument::kMinChipSize) {
                warn(QStringLiteral("\"len\" of <chipsize> leaves no room for the chip body; %1 is used")
                         .arg(PinMappingDocument::kMinChipSize));
                doc.chipSize = PinMappingDocument::kMinChipSize;
            }
        } else if (name == QLatin1String("colors")) {
            readColor("chip", doc.chipColor);
            readColor("background", doc.backgroundColor);
        } else if (name == QLatin1String("buttonpos")) {
            readPoint("details", doc.detailsButtonPos);
            readPoint("export", doc.exportButtonPos);
        } else if (name == QLatin1String("tooltips")) {
            if (has("activated"))
                doc.tooltipsActive = attr("activated").trimmed() != QLatin1String("0");
        } else if (name == QLatin1String("pinsize")) {
            readSize("len", doc.pinSize, PinMappingDocument::kMaxBoxSize);
        } else if (name == QLatin1String("arrowsize")) {
            readSize("len", doc.arrowSize, PinMappingDocument::kMaxBoxSize);
        } else if (name == QLatin1String("margins")) {
            readSize("TopY", doc.marginTopY, PinMappingDocument::kMaxChipSize);
            readSize("BottomY", doc.marginBottomY, PinMappingDocument::kMaxChipSize);
            readSize("LeftX", doc.marginLeftX, PinMappingDocument::kMaxChipSize);
            readSize("RightX", doc.marginRightX, PinMappingDocument::kMaxChipSize);
        } else if (name == QLatin1String("image")) {
            PinImage image;
            image.file = attr("file");
            image.moveable = has("moveable") && attr("moveable").trimmed() != QLatin1String("0");
            readPoint("pos", image.pos);
            doc.images.append(image);
        }
        xml.skipCurrentElement();
    }
}

void Reading::checkReferences()
{
    auto plain = [this](const QString &text) {
        consolePrint(QStringLiteral("<b><font color=\"orange\"> XML Warning: </font>%1 (%2)<br>")
                         .arg(text.toHtmlEscaped(), fileName.toHtmlEscaped()));
    };
    QSet<QString> reported;
    for (const MapEntry &entry : qAsConst(doc.entries)) {
        if (!doc.pinsByName.contains(entry.pinname) && !reported.contains(entry.pinname)) {
            reported.insert(entry.pinname);
            plain(QStringLiteral("Map entry %1 names the unknown pin %2; it is not drawn").arg(entry.function, entry.pinname));
        }
    }
    reported.clear();
    for (const MapCondEntry &cond : qAsConst(doc.conditions)) {
        if (!doc.functionsByName.contains(cond.function) && !reported.contains(cond.function)) {
            reported.insert(cond.function);
            plain(QStringLiteral("Map condition names the unknown function %1; it is skipped").arg(cond.function));
        }
    }
}

} // namespace

bool PinMappingReader::parseColor(const QString &text, QColor &color)
{
    const QStringList parts = text.split(QLatin1Char(';'));
    if (parts.size() != 3)
        return false;
    int rgb[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        rgb[i] = parts.at(i).trimmed().toInt(&ok);
        if (!ok || rgb[i] < 0 || rgb[i] > 255)
            return false;
    }
    color = QColor(rgb[0], rgb[1], rgb[2], 255);
    return true;
}

bool PinMappingReader::parsePoint(const QString &text, QPointF &point)
{
    const QStringList parts = text.split(QLatin1Char(';'));
    if (parts.size() != 2)
        return false;
    bool okX = false;
    bool okY = false;
    const double x = parts.at(0).trimmed().toDouble(&okX);
    const double y = parts.at(1).trimmed().toDouble(&okY);
    // A scene position far outside any screen is a typo, not a layout.
    if (!okX || !okY || qAbs(x) > 1e6 || qAbs(y) > 1e6)
        return false;
    point = QPointF(x, y);
    return true;
}

namespace {
// Empties the document but keeps where it belongs (set by its owner).
void reset(PinMappingDocument &document, const QString &fileName)
{
    const QString folder = document.descriptionFolder;
    HardwareModel *model = document.model;
    document.clear();
    document.fileName = fileName;
    document.descriptionFolder = folder;
    document.model = model;
}
} // namespace

bool PinMappingReader::readFile(const QString &path, PinMappingDocument &document)
{
    reset(document, path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(path, file.errorString());
        return false;
    }
    return read(&file, path, document);
}

bool PinMappingReader::read(QIODevice *device, const QString &fileName, PinMappingDocument &document)
{
    reset(document, fileName);

    QXmlStreamReader xml(device);
    Reading reading(xml, fileName, document);
    reading.readRoot();
    if (xml.hasError()) {
        const QString position = QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b>")
                                     .arg(Console::fileLink(fileName, xml.lineNumber(), xml.columnNumber()))
                                     .arg(xml.lineNumber())
                                     .arg(xml.columnNumber());
        consolePrint(QStringLiteral("<b><font color=\"red\"> XML Error: </font>%1 <a href=\"%2\">%3</a> (%4)<br>")
                         .arg(xml.errorString().toHtmlEscaped(), QString(), QString(), position));
        // Half a mapping would show wrong pins: the mapper stays empty.
        reset(document, fileName);
        return false;
    }
    reading.checkReferences();
    return true;
}
