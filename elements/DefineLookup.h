#pragma once
#include <QString>

class DocumentTables;

// Reads what a display shows for a define: a DataClass record's number, or
// an element's value. Displays look their defines up at every refresh and
// keep no copy, so they always show the current form.
class DefineLookup
{
public:
    // The record's value as decimal text, or the element's value(0); a define
    // with a selector (".label", ".index", ...) reads that kind. Empty and
    // *found false when the define is neither.
    static QString valueText(DocumentTables *tables, const QString &define, bool *found = nullptr);
};
