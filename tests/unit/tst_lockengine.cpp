#include <QtTest>

#include "LockSourceElement.h"
#include "RecordingSink.h"
#include "elements/DocumentTables.h"
#include "elements/LockToolTip.h"
#include "model/LockEngine.h"

// The lock engine on small stand-in elements: what a lock does to its
// target, conflicts between sources, hand-over, the messages with their
// singular and plural forms, bad strings, runaway chains, the overflow
// conflicts of math labels and the range-change report.
class TestLockEngine : public QObject
{
    Q_OBJECT

private:
    DocumentTables *tables = nullptr;
    LockEngine *engine = nullptr;
    QWidget *owner = nullptr;
    RecordingSink *sink = nullptr;

    LockSourceElement *make(const QString &define, const QString &type, const QStringList &values = {})
    {
        auto *e = new LockSourceElement(define, type, owner);
        for (const QString &v : values)
            e->addOption(v, QStringLiteral("L") + v);
        tables->addElement(define, e);
        connect(e, &LockSourceElement::sendLock, engine, &LockEngine::on_sendLock);
        connect(e, &LockSourceElement::sendUnlock, engine, &LockEngine::on_sendUnlock);
        e->connectSignals();
        return e;
    }
    LockSourceElement *checkBox(const QString &define, const QStringList &locks)
    {
        LockSourceElement *e = make(define, QStringLiteral("CheckBox"));
        e->setLocks(QStringLiteral("0"), locks);
        return e;
    }
    // A list target with values 1, 2, 3 and labels L1, L2, L3; reference 1.
    LockSourceElement *target(const QString &define = QStringLiteral("T"))
    {
        return make(define, QStringLiteral("ComboBox"), {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")});
    }
    static QString warning(const QString &target, const QStringList &waiting, const QStringList &lockers, int count)
    {
        auto links = [](const QStringList &names) {
            QStringList parts;
            for (const QString &n : names)
                parts << QStringLiteral("<a href=\"%1\">%1</a>").arg(n);
            return parts.join(QStringLiteral(" and "));
        };
        return QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"%1\">%1</a> is waiting to be locked by ")
                   .arg(target)
            + links(waiting) + QStringLiteral(" and is locked by ") + links(lockers)
            + (count < 2 ? QStringLiteral(" (%1 conflict in current project)<br>")
                         : QStringLiteral(" (%1 conflicts in current project)<br>"))
                  .arg(count);
    }
    static QString cleared(const QString &target, int remaining)
    {
        return QStringLiteral("<font color=\"green\"><b>Conflict cleared:</font></b> %1  (%2 %3 remaining)<br>")
            .arg(target)
            .arg(remaining)
            .arg(remaining == 1 ? QStringLiteral("conflict") : QStringLiteral("conflicts"));
    }

private slots:
    void init()
    {
        sink = new RecordingSink;
        tables = new DocumentTables;
        engine = new LockEngine(tables);
        owner = new QWidget;
    }
    void cleanup()
    {
        delete owner;
        delete engine;
        delete tables;
        delete sink;
    }

    // ---------------------------------------------------------- one source

    void invertedLockHoldsWhileUnchecked()
    {
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {QStringLiteral("T=2")});
        s->QObject::setProperty("lockinverted", 1u);
        // Unchecked from the start: the lock is in force as soon as the
        // element announces its locks.
        s->emitLocks();
        QCOMPARE(t->value(0), QStringLiteral("2"));
        QVERIFY(t->locked);
        s->setValue(QStringLiteral("1"), 0);
        QVERIFY(!t->locked);
        QCOMPARE(t->value(0), QStringLiteral("1"));
    }

    void readOnlyTargetStaysDisabledAfterUnlock()
    {
        LockSourceElement *t = target();
        t->QObject::setProperty("my_readonly", QStringLiteral("1"));
        t->setEnabled(false);
        LockSourceElement *s = checkBox(QStringLiteral("S"), {QStringLiteral("T=2")});
        s->setValue(QStringLiteral("1"), 0);
        s->setValue(QStringLiteral("0"), 0);
        QVERIFY(!t->isEnabled());
        QCOMPARE(t->restoreCalls, 1);
    }

    void repeatedLockOfSameSourceHasNoEffect()
    {
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {QStringLiteral("T=2")});
        s->setValue(QStringLiteral("1"), 0);
        const int sets = t->setValueCalls;
        s->emitLocks();
        QCOMPARE(t->setValueCalls, sets);
        QCOMPARE(t->lockedBy.size(), 1);
        QCOMPARE(s->locking.size(), 1);
    }

    void labelAndIndexLocks_data()
    {
        QTest::addColumn<QString>("lock");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("kind");
        QTest::newRow("label") << "T.label=L3" << "3" << 1;
        QTest::newRow("index") << "T.index=1" << "2" << 2;
        QTest::newRow("plain") << "T=3" << "3" << 0;
    }
    void labelAndIndexLocks()
    {
        QFETCH(QString, lock);
        QFETCH(QString, value);
        QFETCH(int, kind);
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {lock});
        s->setValue(QStringLiteral("1"), 0);
        QCOMPARE(t->value(0), value);
        QCOMPARE(t->lockedBy.first().kind, kind);
        QCOMPARE(LockEngine::lockString(QStringLiteral("T"), t->lockedBy.first().value, kind), lock);
    }

    // ---------------------------------------------------------- conflicts

    // Check boxes named by their first letter lock the lists T and U; the
    // steps tick (+) and untick (-) them, or choose a list value (T~2).
    // The console column holds the distinct lines the last step printed.
    void sources_data()
    {
        QTest::addColumn<QStringList>("sources");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QStringList>("lockers");
        QTest::addColumn<QStringList>("waiting");
        QTest::addColumn<int>("conflicts");
        QTest::addColumn<QStringList>("console");
        QTest::addColumn<int>("restores");   // -1: not counted
        const QStringList ab{"A:T=1", "B:T=3"};
        const QStringList abc{"A:T=1", "B:T=2", "C:T=3"};
        const QStringList same{"A:T=2", "B:T=2"};
        const QStringList none;
        QTest::newRow("one source pins") << QStringList{"S:T=3"} << "T~2 S+" << "3" << QStringList{"S"} << none << 0 << none << 0;
        // Back to what the user chose, not to the locked value.
        QTest::newRow("unlock returns the choice") << QStringList{"S:T=3"} << "T~2 S+ S-" << "2" << none << none << 0 << none << 1;
        QTest::newRow("second source waits") << ab << "A+ B+" << "1" << QStringList{"A"} << QStringList{"B"} << 1
                                             << QStringList{warning("T", {"B"}, {"A"}, 1)} << 0;
        QTest::newRow("waiter takes over") << ab << "A+ B+ A-" << "3" << QStringList{"B"} << none << 0
                                           << QStringList{cleared("T", 0)} << -1;
        QTest::newRow("two wait") << abc << "A+ B+ C+" << "1" << QStringList{"A"} << QStringList{"B", "C"} << 2
                                  << QStringList{warning("T", {"B", "C"}, {"A"}, 2)} << 0;
        // B came first and takes the target; C now waits on B.
        QTest::newRow("first waiter takes over") << abc << "A+ B+ C+ A-" << "2" << QStringList{"B"} << QStringList{"C"} << 1
                                                 << QStringList{warning("T", {"C"}, {"B"}, 1)} << -1;
        QTest::newRow("then the next") << abc << "A+ B+ C+ A- B-" << "3" << QStringList{"C"} << none << 0
                                       << QStringList{cleared("T", 0)} << -1;
        // The target's line is repeated with the waiters that are left.
        QTest::newRow("waiter leaves") << abc << "A+ B+ C+ C-" << "1" << QStringList{"A"} << QStringList{"B"} << 1
                                       << QStringList{warning("T", {"B"}, {"A"}, 1)} << 0;
        QTest::newRow("last waiter leaves") << abc << "A+ B+ C+ C- B-" << "1" << QStringList{"A"} << none << 0
                                            << QStringList{cleared("T", 0)} << 0;
        QTest::newRow("cleared line counts other conflicts")
            << QStringList{"A:T=1;U=1", "B:T=2", "C:U=2"} << "A+ B+ C+ B-" << "1" << QStringList{"A"} << none << 1
            << QStringList{cleared("T", 1)} << 0;
        QTest::newRow("same value holds together") << same << "A+ B+" << "2" << QStringList{"A", "B"} << none << 0 << none << 0;
        QTest::newRow("one holder lets go") << same << "A+ B+ A-" << "2" << QStringList{"B"} << none << 0 << none << 0;
        QTest::newRow("both let go") << same << "A+ B+ A- B-" << "1" << none << none << 0 << none << 1;
    }
    void sources()
    {
        QFETCH(QStringList, sources);
        QFETCH(QString, steps);
        QFETCH(QStringList, lockers);
        QFETCH(QStringList, waiting);
        QFETCH(int, restores);
        LockSourceElement *t = target(QStringLiteral("T"));
        target(QStringLiteral("U"));
        QMap<QString, LockSourceElement *> boxes;
        for (const QString &source : sources) {
            const QString name = source.section(QLatin1Char(':'), 0, 0);
            boxes.insert(name, checkBox(name, source.section(QLatin1Char(':'), 1).split(QLatin1Char(';'))));
        }
        const QStringList list = steps.split(QLatin1Char(' '));
        int setsBefore = 0;
        for (int i = 0; i < list.size(); ++i) {
            const QString &step = list.at(i);
            if (i == list.size() - 1) {
                sink->clear();
                setsBefore = t->setValueCalls;
            }
            if (step.startsWith(QLatin1String("T~")))
                t->choose(step.mid(2));
            else
                boxes.value(step.left(1))->setValue(step.endsWith(QLatin1Char('+')) ? QStringLiteral("1") : QStringLiteral("0"), 0);
        }
        QTEST(t->value(0), "value");
        QCOMPARE(lockPeers(t->lockedBy), lockers);
        QCOMPARE(t->locked, !lockers.isEmpty());
        QCOMPARE(t->isEnabled(), lockers.isEmpty());
        QCOMPARE(lockPeers(t->waitingToBeLockedBy), waiting);
        QCOMPARE(engine->conflicts().value(QStringLiteral("T")), waiting);
        QCOMPARE(t->toolTip().contains(QStringLiteral("Waiting to be locked by: ") + waiting.value(0) + QLatin1Char('\n')),
                 !waiting.isEmpty());
        QCOMPARE(engine->conflictedElements().contains(qMakePair(QStringLiteral("T"), QStringLiteral("T"))), !waiting.isEmpty());
        QCOMPARE(t->toolTip().contains(QStringLiteral("Locked by: ") + lockers.value(0) + QLatin1Char('\n')), !lockers.isEmpty());
        QCOMPARE(t->toolTip().isEmpty(), lockers.isEmpty() && waiting.isEmpty());
        for (auto it = boxes.cbegin(); it != boxes.cend(); ++it) {
            QCOMPARE(it.value()->locking.contains(LockRecord{QStringLiteral("T"), t->value(0), 0}), lockers.contains(it.key()));
            QCOMPARE(it.value()->toolTip().contains(QStringLiteral("Locking: T\n")), lockers.contains(it.key()));
            QCOMPARE(lockPeers(it.value()->locking).contains(QStringLiteral("T")), lockers.contains(it.key()));
            QCOMPARE(lockPeers(it.value()->waitingToLock).contains(QStringLiteral("T")), waiting.contains(it.key()));
            QCOMPARE(it.value()->toolTip().contains(QStringLiteral("Waiting to lock: T\n")), waiting.contains(it.key()));
        }
        QTEST(engine->conflictCount(), "conflicts");
        // A hand-over may tell the same waiting line twice: once as the new
        // holder takes the target, once as the next waiter queues again.
        QStringList printed = sink->console;
        printed.removeDuplicates();
        QTEST(printed, "console");
        if (restores >= 0)
            QCOMPARE(t->restoreCalls, restores);
        // A second holder of the same value does not set it again.
        if (steps == QLatin1String("A+ B+"))
            QCOMPARE(t->setValueCalls, setsBefore);
        QVERIFY(sink->errors.isEmpty());
    }

    void handOverKeepsTheWaitersValueKind()
    {
        LockSourceElement *t = target();
        LockSourceElement *a = checkBox(QStringLiteral("A"), {QStringLiteral("T=1")});
        LockSourceElement *b = checkBox(QStringLiteral("B"), {QStringLiteral("T.label=L2")});
        a->setValue(QStringLiteral("1"), 0);
        b->setValue(QStringLiteral("1"), 0);
        QCOMPARE(b->waitingToLock.first().kind, 1);
        QSignalSpy spy(b, &LockSourceElement::sendLock);
        a->setValue(QStringLiteral("0"), 0);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toString(), QStringLiteral("T.label=L2"));
        QCOMPARE(t->value(0), QStringLiteral("2"));
    }

    void anchorsWriteColons()
    {
        target(QStringLiteral("P:R"));
        LockSourceElement *a = checkBox(QStringLiteral("A:1"), {QStringLiteral("P:R=1")});
        LockSourceElement *b = checkBox(QStringLiteral("B"), {QStringLiteral("P:R=2")});
        a->setValue(QStringLiteral("1"), 0);
        b->setValue(QStringLiteral("1"), 0);
        QCOMPARE(sink->console.last(),
                 QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"P$$$COLON$$$R\">P:R</a> is waiting "
                                "to be locked by <a href=\"B\">B</a> and is locked by <a href=\"A$$$COLON$$$1\">A:1</a> "
                                "(1 conflict in current project)<br>"));
        QCOMPARE(engine->conflictedElements().first().first, QStringLiteral("P$$$COLON$$$R"));
    }

    // ---------------------------------------------------------- bad input

    void badStringsChangeNothing_data()
    {
        QTest::addColumn<QString>("lock");
        QTest::addColumn<QString>("error");
        QTest::newRow("no equals") << "T" << QString();
        QTest::newRow("two equals") << "T=1=2" << QString();
        QTest::newRow("empty") << "" << QString();
        QTest::newRow("missing target") << "X.Y=1" << "XML ERROR!\nInvalid lock: \"X.Y=1\"";
        QTest::newRow("missing label target") << "X.label=1" << "XML ERROR!\nInvalid lock: \"X.label=1\"";
    }
    void badStringsChangeNothing()
    {
        QFETCH(QString, lock);
        QFETCH(QString, error);
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {lock});
        s->setValue(QStringLiteral("1"), 0);
        s->setValue(QStringLiteral("0"), 0);
        QVERIFY(!t->locked);
        QVERIFY(t->isEnabled());
        QVERIFY(s->locking.isEmpty() && s->waitingToLock.isEmpty());
        QCOMPARE(engine->conflictCount(), 0);
        QCOMPARE(sink->console, QStringList());
        // Only the lock reports; its unlock stays silent.
        QCOMPARE(sink->errors, error.isEmpty() ? QStringList() : QStringList{error});
    }

    void lockWithoutSourceElementIsInvalid()
    {
        target();
        QObject stranger;
        engine->lock(&stranger, QStringLiteral("T=1"));
        engine->lock(nullptr, QStringLiteral("T=1"));
        QCOMPARE(sink->errors, (QStringList{QStringLiteral("XML ERROR!\nInvalid lock: \"T=1\""),
                                            QStringLiteral("XML ERROR!\nInvalid lock: \"T=1\"")}));
        engine->unlock(&stranger, QStringLiteral("T=1"));
        QCOMPARE(sink->errors.size(), 2);
    }

    void unlockOfNothingIsHarmless()
    {
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {QStringLiteral("T=2")});
        engine->unlock(s, QStringLiteral("T=2"));
        QVERIFY(!t->locked);
        QCOMPARE(t->restoreCalls, 0);
        QVERIFY(sink->console.isEmpty());
    }

    void locksThatFightAreStopped()
    {
        // A's item 1 locks B to 1, and B's item 1 locks A to 2, which
        // releases B, whose release returns A to 1, which locks B again...
        LockSourceElement *a = make(QStringLiteral("A"), QStringLiteral("ComboBox"), {QStringLiteral("2"), QStringLiteral("1")});
        LockSourceElement *b = make(QStringLiteral("B"), QStringLiteral("ComboBox"), {QStringLiteral("0"), QStringLiteral("1")});
        a->setLocks(QStringLiteral("1"), {QStringLiteral("B=1")});
        b->setLocks(QStringLiteral("1"), {QStringLiteral("A=2")});
        engine->maxDepth = 20;
        a->choose(QStringLiteral("1"));
        QVERIFY(sink->contains(QStringLiteral("stopped after 20 nested locks")));
        QCOMPARE(sink->console.filter(QStringLiteral("stopped after")).size(), 1);
        // Unwound completely: a fresh lock is handled again.
        LockSourceElement *t = target();
        LockSourceElement *s = checkBox(QStringLiteral("S"), {QStringLiteral("T=3")});
        s->setValue(QStringLiteral("1"), 0);
        QCOMPARE(t->value(0), QStringLiteral("3"));
    }

    void ringOfListsSettles()
    {
        LockSourceElement *a = make(QStringLiteral("A"), QStringLiteral("ComboBox"), {QStringLiteral("0"), QStringLiteral("1")});
        LockSourceElement *b = make(QStringLiteral("B"), QStringLiteral("ComboBox"), {QStringLiteral("0"), QStringLiteral("1")});
        LockSourceElement *c = make(QStringLiteral("C"), QStringLiteral("ComboBox"), {QStringLiteral("0"), QStringLiteral("1")});
        a->setLocks(QStringLiteral("1"), {QStringLiteral("B=1")});
        b->setLocks(QStringLiteral("1"), {QStringLiteral("C=1")});
        c->setLocks(QStringLiteral("1"), {QStringLiteral("A=1")});
        a->choose(QStringLiteral("1"));
        QCOMPARE(b->value(0), QStringLiteral("1"));
        QCOMPARE(c->value(0), QStringLiteral("1"));
        QVERIFY(b->locked && c->locked && a->locked);
        QVERIFY(!sink->contains(QStringLiteral("stopped after")));
    }

    // ---------------------------------------------------------- overflow

    void overflowCountsUntilItLeaves()
    {
        QObject label;
        label.setObjectName(QStringLiteral("M:L"));
        engine->enterOverflow(&label, 15, QStringLiteral("S"), true);
        engine->enterOverflow(&label, 15, QStringLiteral("S"), true);
        QCOMPARE(engine->conflictCount(), 1);
        QVERIFY(engine->isOverflowing(&label));
        QCOMPARE(sink->console,
                 QStringList{QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"S\">S</a> has caused an "
                                            "overflow in <a href=\"M$$$COLON$$$L\">M:L</a>. Highest possible value: 15<br>")});
        const QList<QPair<QString, QString>> expected{{QStringLiteral("M$$$COLON$$$L"), QStringLiteral("M:L")}};
        QCOMPARE(engine->conflictedElements(), expected);

        sink->clear();
        engine->leaveOverflow(&label);
        engine->leaveOverflow(&label);
        QCOMPARE(engine->conflictCount(), 0);
        QCOMPARE(sink->console,
                 QStringList{QStringLiteral("<font color=\"green\"><b>Conflict cleared: </font></b> Over-/Underflow in: "
                                            "<a href=\"M$$$COLON$$$L\">M:L</a>. (0 conflicts in current project)<br>")});
    }

    void underflowAndDeletedLabels()
    {
        auto *label = new QObject;
        label->setObjectName(QStringLiteral("M"));
        engine->enterOverflow(label, 7, QStringLiteral("S"), false);
        QVERIFY(sink->console.last().contains(QStringLiteral("has caused an underflow in")));
        QCOMPARE(engine->conflictCount(), 1);
        delete label;
        QCOMPARE(engine->conflictCount(), 0);
        engine->enterOverflow(nullptr, 7, QStringLiteral("S"), true);
        QCOMPARE(engine->conflictCount(), 0);
    }

    void countAddsBothKinds()
    {
        target();
        LockSourceElement *a = checkBox(QStringLiteral("A"), {QStringLiteral("T=1")});
        LockSourceElement *b = checkBox(QStringLiteral("B"), {QStringLiteral("T=2")});
        QObject label;
        label.setObjectName(QStringLiteral("M"));
        engine->enterOverflow(&label, 1, QStringLiteral("S"), true);
        a->setValue(QStringLiteral("1"), 0);
        b->setValue(QStringLiteral("1"), 0);
        QCOMPARE(engine->conflictCount(), 2);
        QVERIFY(sink->console.last().endsWith(QStringLiteral(" (2 conflicts in current project)<br>")));
        engine->clear();
        QCOMPARE(engine->conflictCount(), 0);
        QVERIFY(engine->conflictedElements().isEmpty());
    }

    void outsideOverflowCounts()
    {
        QStringList outside{QStringLiteral("M:2")};
        engine->setOverflowSource([&outside] { return outside; });
        QCOMPARE(engine->conflictCount(), 1);
        const QList<QPair<QString, QString>> expected{{QStringLiteral("M$$$COLON$$$2"), QStringLiteral("M:2")}};
        QCOMPARE(engine->conflictedElements(), expected);
        target();
        LockSourceElement *a = checkBox(QStringLiteral("A"), {QStringLiteral("T=1")});
        LockSourceElement *b = checkBox(QStringLiteral("B"), {QStringLiteral("T=2")});
        a->setValue(QStringLiteral("1"), 0);
        b->setValue(QStringLiteral("1"), 0);
        QVERIFY(sink->console.last().endsWith(QStringLiteral(" (2 conflicts in current project)<br>")));
        outside.clear();
        b->setValue(QStringLiteral("0"), 0);
        QCOMPARE(sink->console.last(), cleared(QStringLiteral("T"), 0));
    }

    // ---------------------------------------------------------- ranges

    void rangeChangesAreReportedOncePerElement()
    {
        LockEngine::RangeChange first{QStringLiteral("S:1"), QStringLiteral("C"), 5, 10, 0, 100, 10, 100};
        LockEngine::RangeChange second{QStringLiteral("S:1"), QStringLiteral("D"), 10, 8, 10, 100, 2, 8};
        LockEngine::RangeChange other{QStringLiteral("F"), QString(), 0.5, 1.25, 0, 1, 1.25, 2};
        engine->queueRangeChange(first);
        engine->queueRangeChange(second);
        engine->queueRangeChange(other);
        QVERIFY(engine->rangeReportPending());
        QVERIFY(sink->console.isEmpty());
        QElapsedTimer clock;
        clock.start();
        QTRY_COMPARE_WITH_TIMEOUT(sink->console.size(), 2, 1000);
        QVERIFY(clock.elapsed() >= 90);
        QCOMPARE(sink->console.at(0),
                 QStringLiteral("<font color=\"darkorange\"><a href = \"S$$$COLON$$$1\">S:1</a> was set from 5 to 8 because "
                                "its range was changed from 0..100 to 2..8 by <a href = \"D\">D</a></font><br>"));
        QCOMPARE(sink->console.at(1),
                 QStringLiteral("<font color=\"darkorange\"><a href = \"F\">F</a> was set from 0.5 to 1.25 because its "
                                "range was changed from 0..1 to 1.25..2</font><br>"));
        QVERIFY(!engine->rangeReportPending());
        QTest::qWait(150);
        QCOMPARE(sink->console.size(), 2);

        // A later burst starts its own timer; a clear drops what is queued.
        engine->queueRangeChange(other);
        QTRY_COMPARE_WITH_TIMEOUT(sink->console.size(), 3, 1000);
        engine->queueRangeChange(first);
        engine->clear();
        QVERIFY(!engine->rangeReportPending());
        QTest::qWait(150);
        QCOMPARE(sink->console.size(), 3);
    }

    // ---------------------------------------------------------- tips

    void toolTipSections_data()
    {
        QTest::addColumn<quint32>("mask");
        QTest::addColumn<QString>("expected");
        QTest::newRow("all") << quint32(0xffff)
                             << "Locked by: A\nB\nLocking: C\nWaiting to lock: D\nWaiting to be locked by: E\nF\n";
        QTest::newRow("locked by only") << quint32(2) << "Locked by: A\nB\n";
        QTest::newRow("waiting only") << quint32(8 | 16) << "Waiting to lock: D\nWaiting to be locked by: E\nF\n";
        QTest::newRow("none") << quint32(1 | 32) << "";
    }
    void toolTipSections()
    {
        QFETCH(quint32, mask);
        QFETCH(QString, expected);
        LockSourceElement e(QStringLiteral("X"));
        e.lockedBy = {{QStringLiteral("A"), QStringLiteral("1"), 0}, {QStringLiteral("B"), QStringLiteral("1"), 0}};
        e.locking = {{QStringLiteral("C"), QStringLiteral("1"), 0}};
        e.waitingToLock = {{QStringLiteral("D"), QStringLiteral("2"), 1}};
        e.waitingToBeLockedBy = {{QStringLiteral("E"), QStringLiteral("2"), 0}, {QStringLiteral("F"), QStringLiteral("3"), 0}};
        QCOMPARE(LockToolTip::sections(e, mask), expected);
        e.locking.clear();
        QVERIFY(!LockToolTip::sections(e, 0xffff).contains(QStringLiteral("Locking")));
    }
};

QTEST_MAIN(TestLockEngine)
#include "tst_lockengine.moc"
