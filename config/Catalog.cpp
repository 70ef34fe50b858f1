#include "config/Catalog.h"

#include "config/CatalogMessages.h"
#include "elements/Reports.h"

#include <QFile>
#include <QXmlStreamReader>

QString CatalogRecord::value(const QString &id) const
{
    for (const auto &field : fields) {
        if (field.first == id)
            return field.second;
    }
    return QString();
}

bool CatalogRecord::has(const QString &id) const
{
    for (const auto &field : fields) {
        if (field.first == id)
            return true;
    }
    return false;
}

bool Catalog::readFile(const QString &path)
{
    records.clear();
    fileName = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(path, file.errorString());
        return false;
    }
    return read(&file, path);
}

bool Catalog::read(QIODevice *device, const QString &name)
{
    records.clear();
    fileName = name;
    QXmlStreamReader xml(device);
    if (xml.readNextStartElement()) {
        if (xml.name() != QLatin1String("Catalog")) {
            xml.raiseError(QStringLiteral("The root element is not <Catalog>."));
        } else {
            while (xml.readNextStartElement()) {
                if (xml.name() != QLatin1String("CatalogEntry")) {
                    xml.skipCurrentElement();
                    continue;
                }
                CatalogRecord record;
                for (const QXmlStreamAttribute &a : xml.attributes())
                    record.fields.append({a.name().toString(), a.value().toString()});
                record.text = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
                // A record cut short by an XML error is not a record.
                if (!xml.hasError())
                    records.append(record);
            }
        }
    }
    if (xml.hasError()) {
        CatalogMessages::xmlError(xml, name);
        return false;
    }
    return true;
}
