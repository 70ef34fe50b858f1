#include "elements/ItemLookup.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"

#include <QRegularExpression>

QString ItemLookup::resolve(const QString &text)
{
    if (!Selectors::hasSelector(text))
        return text;
    DocumentTables *tables = DocumentTables::current();
    if (!tables)
        return text;
    ActiveElement *element = tables->element(Selectors::stripSelector(text));
    if (!element)
        return text;
    return element->value(Selectors::selectorKind(text));
}

bool ItemLookup::itemNumber(const QString &text, QString *decimal)
{
    static const QRegularExpression hex(QStringLiteral("^\\(?0x[0-9a-fA-F]+u?\\)?$"));
    static const QRegularExpression dec(QStringLiteral("^-?\\d+$"));
    if (!hex.match(text).hasMatch() && !dec.match(text).hasMatch())
        return false;
    *decimal = NumberFormat::normaliseNumber(text);
    return true;
}

bool ItemLookup::integer(const QString &text, qint64 *value)
{
    const NumberFormat::NumberClass cls = NumberFormat::classifyNumber(text);
    if (cls != NumberFormat::Decimal && cls != NumberFormat::Hexadecimal && cls != NumberFormat::Binary)
        return false;
    bool ok = false;
    *value = NumberFormat::toInt64(text, &ok);
    return ok;
}

bool ItemLookup::number(const QString &text, double *value)
{
    const NumberFormat::NumberClass cls = NumberFormat::classifyNumber(text);
    if (cls == NumberFormat::Floating) {
        bool ok = false;
        *value = NumberFormat::normaliseNumber(text).toDouble(&ok);
        return ok;
    }
    // A negative float is not of the floating class; read it directly.
    if (cls == NumberFormat::OtherText) {
        bool ok = false;
        *value = text.trimmed().toDouble(&ok);
        return ok;
    }
    qint64 i = 0;
    if (!integer(text, &i))
        return false;
    *value = double(i);
    return true;
}
