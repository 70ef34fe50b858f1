#pragma once
#include <QString>
#include <QStringList>

class QObject;

// Carries out an element's action entries at run time: the entries of its
// `data` property under one key whose event matches and whose condition
// holds leave, in order, as the element's `<event>_<cmd>(QString)` signals,
// which the reader wired to the main window's command slots.
class ActionRunner
{
public:
    // Runs the entries of `event` under `key`. A sendUSB entry also emits
    // `<event>_recData(recdata)` when it has a reply text, then waits its
    // `delay` with the event loop running. Returns how many entries ran.
    static int run(QObject *element, const QString &key, const QString &event);

    // Emits each text through `<signalName>(QString)` (the set-defs of the
    // `setDef` and `setDefInv` attributes).
    static void emitEach(QObject *element, const char *signalName, const QStringList &texts);

    // Whether an entry's `cond` holds: empty holds; otherwise the expression
    // (or the text comparison of a line or text edit) decides, and an
    // unknown define does not hold.
    static bool conditionHolds(const QString &condition);

    // Waits with the event loop running, so the form stays alive and
    // further changes can enter (and nest) meanwhile.
    static void wait(int milliseconds);

    // Emits `<name>(text)` when the element declares that signal.
    static bool emitSignal(QObject *element, const QString &name, const QString &text);
};
