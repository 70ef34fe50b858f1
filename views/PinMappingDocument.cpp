#include "views/PinMappingDocument.h"

QStringList MapEntry::links() const
{
    QStringList out;
    for (const QString &part : link.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty() && !out.contains(trimmed))
            out.append(trimmed);
    }
    return out;
}

void PinMappingDocument::clear()
{
    *this = PinMappingDocument();
}

QList<int> PinMappingDocument::entriesOfPin(const QString &pinName) const
{
    QList<int> out;
    for (int i = 0; i < entries.size(); ++i) {
        if (entries.at(i).pinname == pinName)
            out.append(i);
    }
    return out;
}

QList<int> PinMappingDocument::conditionsOfFunction(const QString &function) const
{
    QList<int> out;
    for (int i = 0; i < conditions.size(); ++i) {
        if (conditions.at(i).function == function)
            out.append(i);
    }
    return out;
}
