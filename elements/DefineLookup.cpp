#include "elements/DefineLookup.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/Selectors.h"

QString DefineLookup::valueText(DocumentTables *tables, const QString &define, bool *found)
{
    if (found)
        *found = false;
    if (!tables || define.isEmpty())
        return QString();
    if (DataClass *data = tables->dataValue(define)) {
        if (found)
            *found = true;
        if (data->datatype == DataClass::Float)
            return QString::number(double(data->getFloat()), 'g', 6);
        return QString::number(data->getValue());
    }
    if (ActiveElement *element = tables->element(define)) {
        if (found)
            *found = true;
        return element->value(Selectors::Value);
    }
    const int kind = Selectors::selectorKind(define);
    if (kind != Selectors::Value) {
        if (ActiveElement *element = tables->element(Selectors::removeSelector(define, kind))) {
            if (found)
                *found = true;
            return element->value(kind);
        }
    }
    return QString();
}
