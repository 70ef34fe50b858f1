#include "config/ParameterMap.h"

#include "config/CatalogMessages.h"
#include "elements/Reports.h"

#include <QFile>
#include <QXmlStreamReader>

bool Parameter::isNumeric() const
{
    return type == QLatin1String("float") || type == QLatin1String("ul32");
}

bool Parameter::isUrl() const
{
    return type == QLatin1String("URL");
}

bool Parameter::hasFilter() const
{
    return ParameterMap::isSet(filter);
}

bool Parameter::isShown() const
{
    return ParameterMap::isSet(displayMask);
}

QString Parameter::headerText() const
{
    return unit.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, unit);
}

bool ParameterMap::isSet(const QString &mark)
{
    const QString m = mark.trimmed().toLower();
    return !m.isEmpty() && m != QLatin1String("0") && m != QLatin1String("false") && m != QLatin1String("no");
}

bool ParameterMap::readFile(const QString &path)
{
    parameters.clear();
    fileName = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(path, file.errorString());
        return false;
    }
    return read(&file, path);
}

namespace {

void readGroup(QXmlStreamReader &xml, QList<Parameter> &out)
{
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("parametergroup")) {
            readGroup(xml, out);
            continue;
        }
        if (xml.name() != QLatin1String("parameter")) {
            xml.skipCurrentElement();
            continue;
        }
        const QXmlStreamAttributes a = xml.attributes();
        auto attr = [&a](const char *name) { return a.value(QLatin1String(name)).toString(); };
        Parameter p;
        p.nr = attr("Nr");
        p.id = attr("ID");
        p.varName = attr("VarName");
        p.min = attr("min");
        p.max = attr("max");
        p.text = attr("Text");
        p.unit = attr("Unit");
        p.type = attr("type");
        p.comment = attr("comment");
        p.readonly = attr("readonly");
        p.formula = attr("formula");
        p.filter = attr("Filter");
        p.displayMask = attr("DisplayMask");
        p.elementText = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
        if (!p.id.trimmed().isEmpty())
            out.append(p);
    }
}

} // namespace

bool ParameterMap::read(QIODevice *device, const QString &name)
{
    parameters.clear();
    fileName = name;
    QXmlStreamReader xml(device);
    if (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("parameters"))
            readGroup(xml, parameters);
        else
            xml.raiseError(QStringLiteral("The root element is not <parameters>."));
    }
    if (xml.hasError()) {
        CatalogMessages::xmlError(xml, name);
        return false;
    }
    if (parameters.isEmpty())
        CatalogMessages::warning(QStringLiteral("Parameter map %1 holds no parameter with an ID.").arg(name));
    return true;
}
