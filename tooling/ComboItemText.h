#pragma once
#include <QString>

class QXmlStreamWriter;

// One entry of a combo box's `itemText` property, as the reader keeps it
// and the items dialog writes it: value and label, and from the dialog an
// override value and a hidden value, joined by "#$#". An entry without the
// separator is a bare label.
struct ComboItemText
{
    QString value;
    QString label;
    QString override;
    QString hide;

    static ComboItemText parse(const QString &entry);

    // The attributes of its `item` element: the label, then the hidden
    // value, the override value or the value, whichever the entry has first.
    void writeAttributes(QXmlStreamWriter &xml) const;
};
