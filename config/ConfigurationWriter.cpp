#include "config/ConfigurationWriter.h"

#include "config/Checksum.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "shell/AppVersion.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QWidget>
#include <QXmlStreamWriter>
#include <algorithm>

namespace {

const char *const kSavedClasses[] = {"ComboBox", "CheckBox", "ButtonGroup", "SpinBox", "DoubleSpinBox",
                                     "Knob", "Slider", "ToggleButton", "LineEdit", "TextEdit",
                                     "Table", "RegisterView", "HexSpinBox"};

} // namespace

QString ConfigurationWriter::recordName(ActiveElement *element)
{
    const QString className = QString::fromLatin1(element->widget()->metaObject()->className());
    for (const char *saved : kSavedClasses) {
        if (className == QLatin1String(saved))
            return className;
    }
    // A ButtonGroup is a QButtonGroup, not a widget: its record name comes
    // from the element's class word.
    if (element->typeInfo() == QLatin1String("ButtonGroup"))
        return QStringLiteral("ButtonGroup");
    return QString();
}

QString ConfigurationWriter::withoutFirstFontFamily(const QString &html)
{
    const int at = html.indexOf(QLatin1String("font-family:"));
    if (at < 0)
        return html;
    const int end = html.indexOf(QLatin1Char(';'), at);
    if (end < 0)
        return html;
    QString text = html;
    text.remove(at, end - at + 1);
    return text;
}

QByteArray ConfigurationWriter::build(const DocumentTables &tables, const QString &xmlFile, const QString &xmlVersion,
                                      bool sorted)
{
    QList<ActiveElement *> elements = tables.elementList.toList();
    if (sorted) {
        std::stable_sort(elements.begin(), elements.end(), [](ActiveElement *a, ActiveElement *b) {
            return a->define() < b->define();
        });
    }

    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("qlnpxml"));
    xml.writeAttribute(QStringLiteral("version"), AppVersion::text());
    xml.writeTextElement(QStringLiteral("checksum"), Checksum::placeholder());
    xml.writeTextElement(QStringLiteral("XmlFile"), xmlFile);
    xml.writeTextElement(QStringLiteral("XmlVersion"), xmlVersion);
    xml.writeStartElement(QStringLiteral("ActiveElements"));
    for (ActiveElement *element : elements) {
        const QString define = element->define();
        if (define.contains(QLatin1String("$DIR$")))
            continue;
        const QString name = recordName(element);
        if (name.isEmpty())
            continue;
        QString value = element->referenceValue();
        if (name == QLatin1String("TextEdit"))
            value = withoutFirstFontFamily(value);
        xml.writeStartElement(name);
        xml.writeTextElement(QStringLiteral("define"), define);
        xml.writeTextElement(QStringLiteral("value"), value);
        if (name != QLatin1String("Table") && name != QLatin1String("RegisterView"))
            xml.writeTextElement(QStringLiteral("dispValue"), element->value(Selectors::Value));
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();

    // The digest covers the text from "</checksum>" on, so it can be put in
    // place of the zeros without changing what it covers.
    const QByteArray digest = Checksum::digestOf(bytes).toLatin1();
    const int open = bytes.indexOf("<checksum>") + int(qstrlen("<checksum>"));
    bytes.replace(open, digest.size(), digest);
    return bytes;
}

bool ConfigurationWriter::writeAtomically(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        Report::cannotOpenFile(QFileInfo(path).absoluteFilePath(), file.errorString());
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        file.cancelWriting();
        Report::writeError(QFileInfo(path).absoluteFilePath());
        return false;
    }
    return true;
}
