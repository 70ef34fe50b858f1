#pragma once
#include <QString>

class DocumentTables;
class QWidget;

// The `setDef` command: "target=source;target=source...". Each part moves a
// value (a number, an element's value, a record's value, or the value of
// "element.selector") to a target: a record, an element (as a program
// change, which also moves its reference value), or, with a selector, an
// appearance of an element, picture, LED, container or push button
// ("X.visible=0", "X.color=0xff0000").
class SetDef
{
public:
    // Runs the text against `tables` (null: the current document). A part
    // without exactly one "=" reports "Invalid value in setdef" and stops
    // the whole call; so does a target that is found nowhere. Returns false
    // when the call was stopped.
    static bool run(const QString &text, DocumentTables *tables = nullptr);

    // The trace switch: each call prints "setDef(<text>)" to the console.
    static void setTrace(bool on);
    static bool trace();

    // Sets a widget's background from a number 0xRRGGBB.
    static void setBackgroundColor(QWidget *widget, quint32 rgb);
    static void setTextColor(QWidget *widget, quint32 rgb);

private:
    static bool runPart(DocumentTables &tables, const QString &part);
};
