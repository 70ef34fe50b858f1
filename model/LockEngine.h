#pragma once
#include <QBasicTimer>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <functional>

#include "model/LockGraph.h"

class ActiveElement;
class DocumentTables;

// Runs the locks between elements. A source element announces "target=value"
// texts through its sendLock/sendUnlock signals; the engine pins the target
// to the value and greys it out, lets a second source with another value
// wait (a conflict), and hands the target over to a waiting source once the
// last holder lets go. It also keeps the second kind of conflict, math labels
// whose result does not fit their bits, and the report of values moved by a
// changed range.
//
// The traffic is all by text, so a target needs no knowledge of its sources;
// the bookkeeping lives in the four LockRecords lists of each ActiveElement.
class LockEngine : public QObject
{
    Q_OBJECT
public:
    // A spin box whose value was moved by a new minimum or maximum.
    struct RangeChange
    {
        QString element;
        // The element whose setDef changed the range; may be empty.
        QString setter;
        double oldValue = 0;
        double newValue = 0;
        double oldMin = 0;
        double oldMax = 0;
        double newMin = 0;
        double newMax = 0;
    };

    // A lock string taken apart: "UART.BAUD.label=Fast" gives the name
    // "UART.BAUD", kind 1 and the value "Fast".
    struct ParsedLock
    {
        bool valid = false;
        QString target;
        int kind = 0;
        QString value;
    };

    // Lookups go to tables, or, when null, to DocumentTables::current().
    explicit LockEngine(DocumentTables *tables = nullptr, QObject *parent = nullptr);
    ~LockEngine() override;

    // The engine of the open document, for elements that have no other way
    // to it (setDef's range changes, the math cascade); may be null.
    static LockEngine *current();
    static void setCurrent(LockEngine *engine);

    // Splits at "=" (exactly two parts), takes a ".label" or ".index" suffix
    // off the target unless the full text names an element itself.
    ParsedLock parse(const QString &lock) const;
    // The lock string that asks for the record's value on target (the
    // inverse of parse).
    static QString lockString(const QString &target, const QString &value, int kind);

    // The handling of a source's sendLock/sendUnlock; sender is the source
    // element's widget.
    void lock(QObject *sender, const QString &lock);
    void unlock(QObject *sender, const QString &lock);

    // Waiting sources per target plus the labels out of range.
    int conflictCount() const;
    // Target define -> sources waiting to lock it.
    const QMap<QString, QStringList> &conflicts() const { return m_conflicts; }
    // A conflict that no lock string caused (a gauge bound that would leave
    // its value outside): counted and reported like a waiting source.
    void addConflict(const QString &target, const QString &source);
    // Link target and name of every element in a conflicting state: the
    // targets that sources wait on, then the labels out of range. This is
    // what refuses header export.
    QList<QPair<QString, QString>> conflictedElements() const;

    // A math label's result does not fit its bits (tooHigh: above max,
    // otherwise negative). Counted until leaveOverflow.
    void enterOverflow(QObject *label, qint64 max, const QString &sender, bool tooHigh);
    void leaveOverflow(QObject *label);
    bool isOverflowing(const QObject *label) const;
    // The labels out of range: those entered here, then those of the
    // outside source, if one is set.
    QStringList overflowLabels() const;
    // Labels out of range that another part keeps (the math cascade keeps
    // its own list); they count as conflicts like those entered here.
    void setOverflowSource(std::function<QStringList()> source) { m_overflowSource = std::move(source); }

    // Queues a value moved by a changed range; the queue is written to the
    // console 100 ms after the first change of a burst, one line per
    // element.
    void queueRangeChange(const RangeChange &change);
    // For the code that sets a minimum or maximum: read the element's value
    // and range (its "value", "minimum" and "maximum" properties) before
    // the change, then hand them in after it. When the value moved, the
    // change is queued with the engine of the open document.
    //     double v, lo, hi;
    //     const bool known = LockEngine::rangeState(spin, &v, &lo, &hi);
    //     spin->setMinimum(bound);
    //     if (known) LockEngine::noteRangeChange(spin, v, lo, hi, setterDefine);
    static bool rangeState(const QObject *element, double *value, double *minimum, double *maximum);
    static void noteRangeChange(const QObject *element, double oldValue, double oldMin, double oldMax,
                                const QString &setter = QString());
    bool rangeReportPending() const { return m_rangeTimer.isActive(); }
    // Writes the queue at once (the timer does this).
    void flushRangeChanges();

    // Checks every element's locks after a document is read and builds the
    // graph of them.
    void checkAfterLoad();
    const LockGraph &graph() const { return m_graph; }

    // A closed document: no conflicts, no queue, no graph.
    void clear();

    // Lets go of every lock and forgets every waiting source, without a
    // console line: each element that was held gets its widget back and
    // returns to its reference value. Used before the sources announce
    // their locks anew for values set with signals blocked (a reset, a
    // loaded configuration), which left the old bookkeeping stale.
    void releaseAll();

    // Nested lock handling deeper than this is refused with a console line:
    // locks that set each other in a circle would otherwise recurse until
    // the stack runs out.
    int maxDepth = 64;

    // The link target of a define: ":" is written "$$$COLON$$$".
    static QString anchor(const QString &define);

public slots:
    // For sources wired straight to the engine (no window in between).
    void on_sendLock(const QString &lock);
    void on_sendUnlock(const QString &lock);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    // The element whose signal is handled now, also when it came through a
    // SignalRelay (where QObject::sender() is null).
    QObject *signalSender() const;

private:
    DocumentTables *tables() const;
    ActiveElement *element(const QString &name) const;
    bool enter(QObject *sender);
    void leave();
    void handOver(ActiveElement *target, const QString &targetName);
    void clearConflict(const QString &source, const QString &target);
    void conflictMessage(const QString &target);
    static QString links(const QStringList &names);

    DocumentTables *m_tables = nullptr;
    QMap<QString, QStringList> m_conflicts;
    QList<QPointer<QObject>> m_overflow;
    std::function<QStringList()> m_overflowSource;
    QList<RangeChange> m_rangeChanges;
    QBasicTimer m_rangeTimer;
    LockGraph m_graph;
    int m_depth = 0;
    bool m_depthReported = false;
};
