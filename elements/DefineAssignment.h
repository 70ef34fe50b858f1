#pragma once
#include <QString>

class DocumentTables;
class QWidget;

// Assigns a value to a define the way a user would: for a value element the
// widget is changed and its by-user path runs (so actions, locks and
// formulas follow); a DataClass takes the number. Used by -d on the command
// line and by the script command SET.
class DefineAssignment
{
public:
    enum Result { Done, UnknownDefine, Refused };

    // Reports every failure but the unknown define, which the caller words
    // (the script's line, the command line's item).
    static Result setDefineValue(DocumentTables &tables, const QString &name, const QString &value);

    // Brings the tab pages and tree rows that hold the widget to the front.
    static void raise(QWidget *widget);

    // The console line for a define that is neither element nor record.
    static QString unknownDefineText(const QString &define, const QString &line, const QString &link, int lineNumber);
};
