#pragma once
#include <QString>

// The rule by which a list (ComboBox, ButtonGroup) finds the item a text
// stands for, and the number forms shared by the value elements.
class ItemLookup
{
public:
    // A text that names an element with a selector ("ADC.MODE.label") is
    // replaced by that element's value in that form; any other text, and a
    // define whose element does not exist, stays as it is.
    static QString resolve(const QString &text);

    // Kind 0 and 2 texts: "^\(?0x[0-9a-fA-F]+u?\)?$" (hexadecimal) or
    // "^-?\d+$" (decimal), as decimal text; false for anything else.
    static bool itemNumber(const QString &text, QString *decimal);

    // An integer in decimal, hexadecimal or binary form.
    static bool integer(const QString &text, qint64 *value);
    // An integer, or for a floating text the number itself.
    static bool number(const QString &text, double *value);
};
