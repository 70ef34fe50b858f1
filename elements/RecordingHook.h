#pragma once
#include <functional>
#include <QString>

class ActiveElement;
class QObject;

// The one point where a user's change to an element reaches the recording
// of scripts. Nothing is written until a recorder installs its writer (while
// a recording runs with an open file); every element goes through here.
//
// For elements that write a command of their own (a table's
// "SetTableValue(table, row, column, value)", a register view's
// "SetRegViewValue(view, word)"), the entry is record():
//
//     RecordingHook::record(QStringLiteral("SetTableValue(%1, %2, %3, %4)")
//                               .arg(objectName()).arg(row).arg(column).arg(text));
//
// It appends the recording comment and the line end, and echoes the line to
// the console. Pass the widget as focusOwner where only a change by the
// user's hand may be recorded and the widget's keyboard focus tells it.
class RecordingHook
{
public:
    // Receives a finished command (without comment and line end).
    using Writer = std::function<void(const QString &command)>;

    // Installed by the recorder while its stream is open; an empty writer
    // turns recording off.
    static void setWriter(Writer writer);
    // Whether lines written now would reach a file.
    static bool recording();

    // Writes the command when a recording runs and, if focusOwner is given,
    // that object has the keyboard focus (for a QButtonGroup: one of its
    // buttons).
    static void record(const QString &command, const QObject *focusOwner = nullptr);

    // Called by value elements before they emit changedByUser(): writes the
    // element's own line if the element has the focus.
    static void userChange(ActiveElement *element);
    // A push button's click, recorded as "Clicked(name)".
    static void clicked(const QObject *button);

    // The line an element records for its current value: "Set(name, value)"
    // with the value as the element holds it (a list's index, a check box's
    // state as shown), or "Clicked(name)" for a toggle button. Empty for
    // elements that record nothing.
    static QString lineFor(ActiveElement *element);
    // Whether the object (or one of a button group's buttons) has the focus.
    static bool hasFocus(const QObject *object);
};
