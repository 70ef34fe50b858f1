#pragma once
#include <QString>

class ActiveElement;
class QAbstractButton;
class QObject;
class QWidget;

// The steps every value element takes the same way, whatever its widget:
// the end of connectSignals, the actions of a change, the bookkeeping after
// a change, and the register form of a number.
class ElementCommon
{
public:
    // After the widget's own connections: a first refresh of the formulas
    // that read the element, its tool tip, and the confirmation filter.
    static void finishConnect(ActiveElement *element);

    // The "changed" actions and setDef texts of an enabled element.
    static void runChangedActions(QWidget *widget);

    // The checked or unchecked actions and setDef texts of a flag element.
    static void runFlagActions(QWidget *widget, bool checked);

    // A check box's or toggle's locks (key 0) are in force while its state
    // differs from lockinverted: their sendLock, else their sendUnlock.
    static void emitFlagLocks(QWidget *widget, bool checked);

    // Sends sendUnlock for every lock the element holds or waits to take,
    // as a source does when it is switched off as a whole (a tree branch
    // whose control went off). Its value stays as it is.
    static void releaseLocks(ActiveElement *element);

    // After a value change: the header is marked, the tool tip follows, and
    // the dependents are told.
    static void afterChange(ActiveElement *element);

    // The value as it sits in the register: shifted left by the element's
    // lsb (none for -1) within 32 bits.
    static QString shiftedValue(const QObject *element, quint32 value);

    // A check box or toggle of its own: unchecking a button outside any
    // QButtonGroup makes Qt search every button below the button's parent,
    // which in a container of thousands of elements costs the whole form
    // on each click. A group of one, not exclusive, answers at once.
    static void standAlone(QAbstractButton *button);
};
