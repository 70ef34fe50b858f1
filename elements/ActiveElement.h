#pragma once
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "elements/LockRecord.h"

class QObject;
class QWidget;

// One enumerated value that the SVD file offers for an element's bits.
struct EnumeratedItem
{
    QString name;
    QString description;
    int value = 0;
};

// Second base of every value element; the first is its widget class, so one
// object is both. Values live in the widget: this interface is how the rest
// of the program reads, writes, loads and resets them by "kind" (the selector
// number of Selectors).
class ActiveElement
{
public:
    virtual ~ActiveElement();

    // Sets the value as if it came from the program: the widget's signals
    // run. Reports and returns false when the text is unusable.
    virtual bool setValue(const QString &text, int kind) = 0;
    // A value from a configuration file: set with signals blocked and
    // remembered as the reference value.
    virtual bool loadValue(const QString &text) = 0;
    // Reads in the form of kind; an unsupported kind reports and gives "".
    virtual QString value(int kind, bool flag = false) = 0;
    // What the user last chose, else the last loaded one or the default.
    virtual QString referenceValue() = 0;
    virtual void connectSignals() = 0;
    virtual void applyDefault() {}
    virtual void emitLocks() = 0;
    virtual void setElementEnabled(bool enabled) = 0;
    virtual void restoreReference() {}
    virtual void setProperty(const char *name, const QVariant &value);
    virtual QVariant property(const char *name) const;
    // Whether the element can represent bits msb..lsb; adapts itself.
    virtual bool setBits(int msb, int lsb) = 0;
    virtual void updateToolTip() {}
    // An enumerated value from the SVD file.
    virtual void addItem(const QString &name, const QString &description, int value);
    // Emits the element's updateMathLabels() signal.
    virtual void updateMathLabels() = 0;

    // The widget this element is; never null.
    virtual QWidget *widget() = 0;
    const QWidget *widget() const { return const_cast<ActiveElement *>(this)->widget(); }

    // The define, which is the widget's object name.
    QString define() const;
    // The class word reported by value(TypeInfo).
    virtual QString typeInfo() const = 0;

    QMap<int, EnumeratedItem> enumerated;
    bool enableLocked = false;
    // Lock bookkeeping, shown in the tool tip as "Locked by: ", "Locking: ",
    // "Waiting to lock: " and "Waiting to be locked by: ". The first of
    // lockedBy decided the value the element shows.
    bool locked = false;
    LockRecords locking;
    LockRecords lockedBy;
    LockRecords waitingToLock;
    LockRecords waitingToBeLockedBy;
    int raised = 0;
};

// The ActiveElement behind a widget or other object, or null.
ActiveElement *asActiveElement(QObject *object);
