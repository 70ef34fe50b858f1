#include "tooling/ComboItemText.h"

#include <QStringList>
#include <QXmlStreamWriter>

ComboItemText ComboItemText::parse(const QString &entry)
{
    ComboItemText item;
    const QString separator = QStringLiteral("#$#");
    if (!entry.contains(separator)) {
        item.label = entry;
        return item;
    }
    const QStringList parts = entry.split(separator);
    item.value = parts.at(0);
    item.label = parts.value(1);
    item.override = parts.value(2);
    item.hide = parts.value(3);
    return item;
}

void ComboItemText::writeAttributes(QXmlStreamWriter &xml) const
{
    xml.writeAttribute(QStringLiteral("label"), label);
    if (!hide.isEmpty())
        xml.writeAttribute(QStringLiteral("hide"), hide);
    else if (!override.isEmpty())
        xml.writeAttribute(QStringLiteral("override"), override);
    else if (!value.isEmpty())
        xml.writeAttribute(QStringLiteral("value"), value);
}
