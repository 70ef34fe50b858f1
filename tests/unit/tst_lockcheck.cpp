#include <QtTest>
#include <QRadioButton>

#include "LockSourceElement.h"
#include "RecordingSink.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DocumentTables.h"
#include "elements/DoubleSpinBox.h"
#include "elements/HexSpinBox.h"
#include "elements/LineEdit.h"
#include "elements/SpinBox.h"
#include "elements/TextEdit.h"
#include "elements/ToggleButton.h"
#include "model/LockCheck.h"
#include "model/LockEngine.h"

// The check of a description's lock strings after load, on the real
// target classes: the form of the string, whether the value fits the
// target, label locks on spin boxes, circles of locks, and the graph.
class TestLockCheck : public QObject
{
    Q_OBJECT

private:
    DocumentTables *tables = nullptr;
    QWidget *owner = nullptr;
    RecordingSink *sink = nullptr;

    template <typename T>
    T *add(T *element, const QString &define)
    {
        element->widget()->setObjectName(define);
        tables->addElement(define, element);
        return element;
    }
    LockSourceElement *source(const QString &define, const QStringList &locks,
                              const QString &type = QStringLiteral("CheckBox"))
    {
        auto *s = add(new LockSourceElement(define, type, owner), define);
        s->setLocks(QStringLiteral("0"), locks);
        return s;
    }
    // One of each target class, named after its class.
    void addTargets()
    {
        add(new CheckBox(owner), QStringLiteral("CB"));
        add(new ToggleButton(owner), QStringLiteral("TB"));
        auto *combo = add(new ComboBox(owner), QStringLiteral("CO"));
        combo->addListItem(QStringLiteral("Slow"), QStringLiteral("1"));
        combo->addListItem(QStringLiteral("Fast"), QStringLiteral("16"));
        auto *group = add(new ButtonGroup(owner, QStringLiteral("RG")), QStringLiteral("RG"));
        group->addRadioButton(new QRadioButton(QStringLiteral("Off"), owner), QStringLiteral("0"));
        group->addRadioButton(new QRadioButton(QStringLiteral("On"), owner), QStringLiteral("5"));
        auto *spin = add(new SpinBox(owner), QStringLiteral("SP"));
        spin->setRange(0, 10);
        auto *hex = add(new HexSpinBox(owner), QStringLiteral("HX"));
        hex->setRange(0, 255);
        auto *dspin = add(new DoubleSpinBox(owner), QStringLiteral("DS"));
        dspin->setRange(0.0, 1.5);
        add(new LineEdit(owner), QStringLiteral("LE"));
        add(new TextEdit(owner), QStringLiteral("TE"));
    }
    QStringList run()
    {
        LockCheck check(*tables);
        check.run();
        return sink->console;
    }
    static QString error(const QString &text) { return QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>") + text; }

private slots:
    void init()
    {
        sink = new RecordingSink;
        tables = new DocumentTables;
        DocumentTables::setCurrent(tables);
        owner = new QWidget;
    }
    void cleanup()
    {
        delete owner;
        DocumentTables::setCurrent(nullptr);
        delete tables;
        delete sink;
    }

    void valueMustFitTheTarget_data()
    {
        QTest::addColumn<QString>("lock");
        QTest::addColumn<QString>("message");
        const QString wants = QStringLiteral("S wants to lock %1 to %2.<br>");
        QTest::newRow("check box 1") << "CB=1" << QString();
        QTest::newRow("check box 0x0") << "CB=0x0" << QString();
        QTest::newRow("check box 2") << "CB=2" << wants.arg("CB", "2");
        QTest::newRow("check box text") << "CB=on" << wants.arg("CB", "on");
        QTest::newRow("toggle 0") << "TB=0" << QString();
        QTest::newRow("toggle label 1") << "TB.label=1" << QString();
        QTest::newRow("toggle 3") << "TB=3" << wants.arg("TB", "3");
        QTest::newRow("combo value") << "CO=16" << QString();
        QTest::newRow("combo hex value") << "CO=0x10" << QString();
        QTest::newRow("combo missing value") << "CO=2" << wants.arg("CO", "2");
        QTest::newRow("combo label") << "CO.label=Fast" << QString();
        QTest::newRow("combo missing label") << "CO.label=fast" << wants.arg("CO.label", "fast");
        QTest::newRow("combo index") << "CO.index=1" << QString();
        QTest::newRow("combo index too high") << "CO.index=2" << wants.arg("CO.index", "2");
        QTest::newRow("radio value") << "RG=5" << QString();
        QTest::newRow("radio missing value") << "RG=1" << wants.arg("RG", "1");
        QTest::newRow("radio label") << "RG.label=On" << QString();
        QTest::newRow("radio missing label") << "RG.label=Maybe" << wants.arg("RG.label", "Maybe");
        QTest::newRow("spin in range") << "SP=10" << QString();
        QTest::newRow("spin hex in range") << "SP=0xA" << QString();
        QTest::newRow("spin above") << "SP=11" << wants.arg("SP", "11");
        QTest::newRow("spin below") << "SP=-1" << wants.arg("SP", "-1");
        QTest::newRow("spin float") << "SP=1.5" << wants.arg("SP", "1.5");
        QTest::newRow("spin label") << "SP.label=x" << "S wants to lock label on spinbox: SP.<br>";
        QTest::newRow("hex in range") << "HX=255" << QString();
        QTest::newRow("hex above") << "HX=256" << wants.arg("HX", "256");
        QTest::newRow("hex label") << "HX.label=x" << "S wants to lock label on hexspinbox: HX.<br>";
        QTest::newRow("double in range") << "DS=1.25" << QString();
        QTest::newRow("double above") << "DS=1.75" << wants.arg("DS", "1.75");
        QTest::newRow("double text") << "DS=abc" << wants.arg("DS", "abc");
        QTest::newRow("double label") << "DS.label=x" << "S wants to lock label on doublespinbox: DS.<br>";
        QTest::newRow("line edit") << "LE=any text" << QString();
        QTest::newRow("line edit empty") << "LE=" << QString();
        QTest::newRow("text edit label") << "TE.label=x" << QString();
        QTest::newRow("missing target") << "X.Y=1" << wants.arg("X.Y", "1");
        QTest::newRow("several equals") << "LE=a=b" << wants.arg("LE", "a=b");
        QTest::newRow("no equals") << "CB" << "Found lockon without \"=\" at definition of: S<br>";
    }
    void valueMustFitTheTarget()
    {
        QFETCH(QString, lock);
        QFETCH(QString, message);
        addTargets();
        source(QStringLiteral("S"), {lock});
        const QStringList console = run();
        QCOMPARE(console, message.isEmpty() ? QStringList() : QStringList{error(message)});
    }

    void everyStringIsChecked()
    {
        addTargets();
        LockSourceElement *s = source(QStringLiteral("S"), {QStringLiteral("CB=1"), QStringLiteral("CB=7")});
        s->addOption(QStringLiteral("4"));
        s->setLocks(QStringLiteral("1"), {QStringLiteral("SP=99")});
        QCOMPARE(run(), (QStringList{error(QStringLiteral("S wants to lock CB to 7.<br>")),
                                     error(QStringLiteral("S wants to lock SP to 99.<br>"))}));
    }

    void ringOfThreeListsIsOneCircle()
    {
        const QStringList values{QStringLiteral("0"), QStringLiteral("1")};
        LockSourceElement *a = add(new LockSourceElement(QStringLiteral("A"), QStringLiteral("ComboBox"), owner), QStringLiteral("A"));
        LockSourceElement *b = add(new LockSourceElement(QStringLiteral("B"), QStringLiteral("ComboBox"), owner), QStringLiteral("B"));
        LockSourceElement *c = add(new LockSourceElement(QStringLiteral("C"), QStringLiteral("ComboBox"), owner), QStringLiteral("C"));
        for (LockSourceElement *e : {a, b, c}) {
            for (const QString &v : values)
                e->addOption(v);
        }
        a->setLocks(QStringLiteral("1"), {QStringLiteral("B=1")});
        b->setLocks(QStringLiteral("1"), {QStringLiteral("C=1")});
        c->setLocks(QStringLiteral("1"), {QStringLiteral("A=1")});
        LockCheck check(*tables);
        check.run();
        QCOMPARE(sink->console, QStringList{error(QStringLiteral("Circular lock A --> B --> C --> A.<br>"))});
        QCOMPARE(check.circles(), QStringList{QStringLiteral("A --> B --> C --> A")});
    }

    void listPassesOnOnlyTheLockedItemsLocks_data()
    {
        // A check box locks list B; B's item 1 locks A back. The walk from
        // A goes on through B only under the item A selects; from B itself
        // every item counts, since B reaching B is a fight in any case.
        QTest::addColumn<QString>("bLock");
        QTest::addColumn<QString>("circle");
        QTest::newRow("locked item has the lock back") << "B=1" << "A --> B --> A";
        QTest::newRow("other item has it") << "B=2" << "B --> A --> B";
        QTest::newRow("by label") << "B.label=one" << "A --> B --> A";
        QTest::newRow("by other label") << "B.label=two" << "B --> A --> B";
        QTest::newRow("by index") << "B.index=0" << "A --> B --> A";
        QTest::newRow("by other index") << "B.index=1" << "B --> A --> B";
    }
    void listPassesOnOnlyTheLockedItemsLocks()
    {
        QFETCH(QString, bLock);
        QFETCH(QString, circle);
        source(QStringLiteral("A"), {bLock});
        LockSourceElement *b = add(new LockSourceElement(QStringLiteral("B"), QStringLiteral("ComboBox"), owner), QStringLiteral("B"));
        b->addOption(QStringLiteral("1"), QStringLiteral("one"));
        b->addOption(QStringLiteral("2"), QStringLiteral("two"));
        b->setLocks(QStringLiteral("1"), {QStringLiteral("A=1")});
        QCOMPARE(run(), QStringList{error(QStringLiteral("Circular lock %1.<br>").arg(circle))});
    }

    void circleThatMissesTheStartEndsTheWalk()
    {
        // S leads into the ring of B and C but is not part of it: the walk
        // from S must end, and the ring is told once.
        source(QStringLiteral("S"), {QStringLiteral("B=1")});
        source(QStringLiteral("B"), {QStringLiteral("C=1")});
        source(QStringLiteral("C"), {QStringLiteral("B=1")});
        const QStringList console = run();
        QCOMPARE(console, QStringList{error(QStringLiteral("Circular lock B --> C --> B.<br>"))});
    }

    void graphHasBlocksPortsAndLinks()
    {
        addTargets();
        LockSourceElement *s = source(QStringLiteral("S"), {QStringLiteral("CB=1"), QStringLiteral("CO.label=Fast"),
                                                            QStringLiteral("X=1"), QStringLiteral("LE")});
        s->setLocks(QStringLiteral("1"), {QStringLiteral("SP=2")});
        LockCheck check(*tables);
        check.run();
        const LockGraph &g = check.graph();
        QCOMPARE(g.blocks.size(), 4);
        QCOMPARE(g.blocks.at(g.blockIndex(QStringLiteral("S"))).ports, (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
        QVERIFY(g.blockIndex(QStringLiteral("CB")) >= 0);
        QVERIFY(g.blockIndex(QStringLiteral("CO")) >= 0);
        QVERIFY(g.blockIndex(QStringLiteral("SP")) >= 0);
        QVERIFY(g.blockIndex(QStringLiteral("X")) < 0);
        QCOMPARE(g.links.size(), 3);
        QCOMPARE(g.links.at(1).target, QStringLiteral("CO"));
        QCOMPARE(g.links.at(1).value, QStringLiteral("Fast"));
        QCOMPARE(g.links.at(2).port, QStringLiteral("1"));
    }

    void engineKeepsTheGraphUntilCleared()
    {
        addTargets();
        source(QStringLiteral("S"), {QStringLiteral("CB=1")});
        LockEngine engine(tables);
        engine.checkAfterLoad();
        QCOMPARE(engine.graph().links.size(), 1);
        engine.clear();
        QVERIFY(engine.graph().isEmpty());
    }

    void lockEntriesAcceptListsAndTexts()
    {
        LockSourceElement e(QStringLiteral("E"));
        QVariantMap map;
        map.insert(QStringLiteral("10"), QStringList{QStringLiteral("A=1")});
        map.insert(QStringLiteral("2"), QStringLiteral("B=1;;C=2;"));
        map.insert(QStringLiteral("3"), QStringList());
        e.QObject::setProperty("locks", map);
        const auto entries = LockCheck::lockEntries(&e);
        QCOMPARE(entries.size(), 2);
        QCOMPARE(entries.at(0).first, QStringLiteral("2"));
        QCOMPARE(entries.at(0).second, (QStringList{QStringLiteral("B=1"), QStringLiteral("C=2")}));
        QCOMPARE(entries.at(1).first, QStringLiteral("10"));
    }

    void rangeChangeOfARealSpinBox()
    {
        LockEngine engine(tables);
        LockEngine::setCurrent(&engine);
        auto *spin = add(new SpinBox(owner), QStringLiteral("P:S"));
        spin->setRange(0, 100);
        spin->QSpinBox::setValue(5);
        double v = 0, lo = 0, hi = 0;
        QVERIFY(LockEngine::rangeState(spin, &v, &lo, &hi));
        spin->setMinimum(10);
        LockEngine::noteRangeChange(spin, v, lo, hi, QStringLiteral("C"));
        // A bound that leaves the value alone is no news.
        auto *dspin = add(new DoubleSpinBox(owner), QStringLiteral("D"));
        dspin->setRange(0, 2);
        dspin->QDoubleSpinBox::setValue(1.5);
        QVERIFY(LockEngine::rangeState(dspin, &v, &lo, &hi));
        dspin->setMaximum(1.75);
        LockEngine::noteRangeChange(dspin, v, lo, hi);
        QTRY_COMPARE_WITH_TIMEOUT(sink->console.size(), 1, 1000);
        QCOMPARE(sink->console.first(),
                 QStringLiteral("<font color=\"darkorange\"><a href = \"P$$$COLON$$$S\">P:S</a> was set from 5 to 10 "
                                "because its range was changed from 0..100 to 10..100 by <a href = \"C\">C</a></font><br>"));
        LockEngine::setCurrent(nullptr);
    }
};

QTEST_MAIN(TestLockCheck)
#include "tst_lockcheck.moc"
