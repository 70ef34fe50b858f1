#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ButtonGroup.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/DocumentTables.h"
#include "elements/LineEdit.h"
#include "elements/SetDef.h"
#include "elements/SpinBox.h"
#include "elements/ToggleButton.h"
#include "model/LockEngine.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "views/LockDialog.h"

#include <QRadioButton>
#include <QTemporaryDir>

static const QByteArray kForm = R"(
<verticalcontainer label="Locks">
 <header file="locks.h">
  <checkbox define="P.R.EN" label="Target"/>
 </header>
 <checkbox define="A" svd="0" lockon="P.R.EN=1"/>
 <checkbox define="B" svd="0" lockon="P.R.EN=0"/>
 <checkbox define="C" svd="0" lockon="P.R.EN=1"/>
 <checkbox define="INV" svd="0" lockinverted="1" lockon="SP=7"/>
 <spinbox define="SP" svd="0" range="0;10" default="2"/>
 <checkbox define="LBL" svd="0" lockon="SP.label=x"/>
 <checkbox define="NOEQ" svd="0" lockon="P.R.EN"/>
 <checkbox define="MISS" svd="0" lockon="X.Y=1"/>
 <combo define="R1" svd="0"><item label="a" value="0"/><item label="b" value="1" lockon="R2=1"/></combo>
 <combo define="R2" svd="0"><item label="a" value="0"/><item label="b" value="1" lockon="R3=1"/></combo>
 <combo define="R3" svd="0"><item label="a" value="0"/><item label="b" value="1" lockon="R1=1"/></combo>
 <combo define="L" svd="0"><item label="Slow" value="0"/><item label="Fast" value="0x10" lockon="M.label=On;;"/></combo>
 <radio define="M" svd="0">
  <radiobutton label="Off" value="0"/>
  <radiobutton label="On" value="5"/>
 </radio>
 <togglebutton define="TG" svd="0" lockon="ED=locked text"/>
 <edit define="ED" svd="0" default="free"/>
</verticalcontainer>
)";

// Locks on a real form opened by the main window: `lockon` read from the
// description, the check after load, and the locks at run time between the
// real element classes, with their console lines and the refusal of header
// export while a conflict stands.
class TestLocks : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_form.write(miniSvd("<field><name>EN</name><lsb>0</lsb><msb>0</msb></field>\n"), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open());
    }

    void cleanup()
    {
        m_form.close();
    }

    void checkAfterLoad()
    {
        const QStringList expected{
            xmlError(QStringLiteral("LBL wants to lock label on spinbox: SP.<br>")),
            xmlError(QStringLiteral("Found lockon without \"=\" at definition of: NOEQ<br>")),
            xmlError(QStringLiteral("MISS wants to lock X.Y to 1.<br>")),
            xmlError(QStringLiteral("Circular lock R1 --> R2 --> R3 --> R1.<br>")),
        };
        for (const QString &line : expected)
            QVERIFY2(m_form.openMessages.count(line) == 1, qPrintable(line + QStringLiteral("\n") + m_form.openMessages.join('\n')));
        QCOMPARE(m_form.openMessages.filter(QStringLiteral("XML Error")).size(), expected.size());
        // The item strings were split at ";" with the empty parts dropped.
        QCOMPARE(m_form.element<ComboBox>(QStringLiteral("L"))->property("locks").toMap().value(QStringLiteral("16")).toStringList(),
                 QStringList{QStringLiteral("M.label=On")});
        QCOMPARE(engine().conflictCount(), 0);
    }

    void invertedLockHoldsFromTheStart()
    {
        auto *sp = m_form.element<SpinBox>(QStringLiteral("SP"));
        auto *inv = m_form.element<CheckBox>(QStringLiteral("INV"));
        QCOMPARE(sp->value(0), QStringLiteral("7"));
        QVERIFY(!sp->isEnabled());
        QCOMPARE(lockPeers(sp->lockedBy), QStringList{QStringLiteral("INV")});
        QVERIFY(sp->toolTip().contains(QStringLiteral("Locked by: INV")));
        // Checking the inverted box releases the spin box to its default.
        inv->click();
        QCOMPARE(sp->value(0), QStringLiteral("2"));
        QVERIFY(sp->isEnabled());
        QVERIFY(!sp->locked);
        inv->click();
        QCOMPARE(sp->value(0), QStringLiteral("7"));
    }

    void twoSourcesConflictAndHandOver()
    {
        auto *t = m_form.element<CheckBox>(QStringLiteral("P.R.EN"));
        auto *a = m_form.element<CheckBox>(QStringLiteral("A"));
        auto *b = m_form.element<CheckBox>(QStringLiteral("B"));
        a->click();
        QVERIFY(t->isChecked());
        QVERIFY(!t->isEnabled());
        QCOMPARE(m_form.window->conflictCount(), 0);
        QVERIFY(m_form.sink->console.isEmpty());

        b->click();
        QVERIFY(t->isChecked());
        QCOMPARE(m_form.window->conflictCount(), 1);
        QCOMPARE(m_form.sink->console,
                 QStringList{QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"P.R.EN\">P.R.EN</a> is waiting "
                                            "to be locked by <a href=\"B\">B</a> and is locked by <a href=\"A\">A</a> "
                                            "(1 conflict in current project)<br>")});

        // Header export is refused while the conflict stands.
        m_form.sink->clear();
        m_form.window->exportHeaderFiles(true);
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("Could not export headerfiles")),
                 QStringList{QStringLiteral("<font color=\"red\"><b>Warning: </font></b> Could not export headerfiles. "
                                            "<a href=\"P.R.EN\">P.R.EN</a> is in a conflicted state!<br>")});
        QVERIFY(!QFileInfo::exists(m_form.dir.filePath(QStringLiteral("locks.h"))));

        // Releasing the holder hands the target to the waiting source.
        m_form.sink->clear();
        a->click();
        QVERIFY(!t->isChecked());
        QVERIFY(!t->isEnabled());
        QCOMPARE(lockPeers(t->lockedBy), QStringList{QStringLiteral("B")});
        QCOMPARE(m_form.window->conflictCount(), 0);
        QCOMPARE(m_form.sink->console, QStringList{QStringLiteral("<font color=\"green\"><b>Conflict cleared:</font></b> P.R.EN  "
                                                             "(0 conflicts remaining)<br>")});
        b->click();
        QVERIFY(t->isEnabled());
        QVERIFY(!t->locked);
    }

    void labelLockOnRadioGroup()
    {
        auto *list = m_form.element<ComboBox>(QStringLiteral("L"));
        auto *group = m_form.element<ButtonGroup>(QStringLiteral("M"));
        QVERIFY(list->setValue(QStringLiteral("16"), 0));
        QCOMPARE(group->value(1), QStringLiteral("On"));
        QCOMPARE(group->lockedBy.first().kind, 1);
        for (QAbstractButton *button : group->buttons())
            QVERIFY(!button->isEnabled());
        QVERIFY(list->setValue(QStringLiteral("0"), 0));
        QCOMPARE(group->value(1), QStringLiteral("Off"));
        QVERIFY(!group->locked);
    }

    void toggleLocksLineEdit()
    {
        auto *toggle = m_form.element<ToggleButton>(QStringLiteral("TG"));
        auto *edit = m_form.element<LineEdit>(QStringLiteral("ED"));
        toggle->click();
        QCOMPARE(edit->value(0), QStringLiteral("locked text"));
        QVERIFY(!edit->isEnabled());
        toggle->click();
        QCOMPARE(edit->value(0), QStringLiteral("free"));
        QVERIFY(edit->isEnabled());
    }

    void badLocksAtRunTime()
    {
        m_form.element<CheckBox>(QStringLiteral("NOEQ"))->click();
        QVERIFY(m_form.sink->console.isEmpty());
        QVERIFY(m_form.sink->errors.isEmpty());
        m_form.element<CheckBox>(QStringLiteral("MISS"))->click();
        QCOMPARE(m_form.sink->errors, QStringList{QStringLiteral("XML ERROR!\nInvalid lock: \"X.Y=1\"")});
        // The label lock on a spin box is refused by the spin box itself.
        m_form.sink->clear();
        auto *sp = m_form.element<SpinBox>(QStringLiteral("SP"));
        m_form.element<CheckBox>(QStringLiteral("INV"))->click();
        m_form.element<CheckBox>(QStringLiteral("LBL"))->click();
        QCOMPARE(sp->value(0), QStringLiteral("2"));
        QCOMPARE(m_form.window->conflictCount(), 0);
    }

    void diagramAndClose()
    {
        const LockGraph &graph = engine().graph();
        QVERIFY(graph.blockIndex(QStringLiteral("R1")) >= 0);
        QVERIFY(graph.blockIndex(QStringLiteral("P.R.EN")) >= 0);
        LockDialog dialog(graph);
        QVERIFY(dialog.block(QStringLiteral("A")));
        QCOMPARE(dialog.connections().size(), graph.links.size());
        // Quiet runs never open it.
        m_form.window->showLocks();
        QVERIFY(m_form.window->findChildren<LockDialog *>().isEmpty());

        m_form.element<CheckBox>(QStringLiteral("A"))->click();
        m_form.element<CheckBox>(QStringLiteral("B"))->click();
        QCOMPARE(m_form.window->conflictCount(), 1);
        // A new document starts without conflicts.
        QVERIFY(m_form.window->open(m_form.path));
        QCOMPARE(m_form.window->conflictCount(), 0);
    }

    void boardExampleFlowControl()
    {
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        m_form.sink->clear();
        QVERIFY(m_form.window->open(example));
        m_form.window->startUp(false);
        QVERIFY2(m_form.sink->console.filter(QStringLiteral("XML Error")).isEmpty(), qPrintable(m_form.sink->console.join('\n')));
        QVERIFY2(m_form.sink->errors.isEmpty(), qPrintable(m_form.sink->errors.join('\n')));
        auto *hwfc = m_form.element<CheckBox>(QStringLiteral("UARTE0.CONFIG.HWFC"));
        auto *rts = m_form.element<ComboBox>(QStringLiteral("UARTE0.PSEL_RTS.CONNECT"));
        auto *cts = m_form.element<ComboBox>(QStringLiteral("UARTE0.PSEL_CTS.CONNECT"));
        QVERIFY(hwfc && rts && cts);
        // Flow control off: both lines are held disconnected.
        for (ComboBox *line : {rts, cts}) {
            QCOMPARE(line->value(1), QStringLiteral("Disconnected"));
            QVERIFY(!line->isEnabled());
        }
        hwfc->click();
        for (ComboBox *line : {rts, cts}) {
            QVERIFY(line->isEnabled());
            QVERIFY(line->setValue(QStringLiteral("0"), 0));
        }
        // Off again: the lines are pinned whatever the user chose.
        hwfc->click();
        QCOMPARE(rts->value(1), QStringLiteral("Disconnected"));
        QCOMPARE(m_form.window->conflictCount(), 0);

        // A tick rate of 1 Hz needs a prescaler beyond its 12 bits.
        auto *tick = m_form.element<SpinBox>(QStringLiteral("RTC0_TICK_HZ"));
        QVERIFY(tick);
        m_form.sink->clear();
        QVERIFY(tick->setValue(QStringLiteral("1"), 0));
        QCOMPARE(m_form.window->conflictCount(), 1);
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("overflow")),
                 QStringList{QStringLiteral("<font color=\"red\"><b>Warning: </font></b> <a href=\"RTC0_TICK_HZ\">RTC0_TICK_HZ</a> "
                                            "has caused an overflow in <a href=\"RTC0.PRESCALER.PRESCALER\">"
                                            "RTC0.PRESCALER.PRESCALER</a>. Highest possible value: 4095<br>")});
        QVERIFY(tick->setValue(QStringLiteral("8"), 0));
        QCOMPARE(m_form.window->conflictCount(), 0);
        QVERIFY(m_form.sink->console.last().contains(QStringLiteral("Over-/Underflow in: ")));
    }

    void rangeChangeBySetDef()
    {
        auto *sp = m_form.element<SpinBox>(QStringLiteral("SP"));
        m_form.element<CheckBox>(QStringLiteral("INV"))->click();
        QCOMPARE(sp->value(0), QStringLiteral("2"));
        // Three bounds in one burst make one line, from the first old range to
        // the last new one; the first moves nothing and is no news.
        QVERIFY(SetDef::run(QStringLiteral("SP.max=20;SP.min=9;SP.max=12")));
        QCOMPARE(sp->value(0), QStringLiteral("9"));
        QVERIFY(m_form.sink->console.filter(QStringLiteral("darkorange")).isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(m_form.sink->console.filter(QStringLiteral("darkorange")).size(), 1, 1000);
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("darkorange")).first(),
                 QStringLiteral("<font color=\"darkorange\"><a href = \"SP\">SP</a> was set from 2 to 9 because its range "
                                "was changed from 0..20 to 9..12</font><br>"));
        QTest::qWait(150);
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("darkorange")).size(), 1);
    }

    void locksFollowResetAndLoad()
    {
        auto *t = m_form.element<CheckBox>(QStringLiteral("P.R.EN"));
        auto *a = m_form.element<CheckBox>(QStringLiteral("A"));
        auto *list = m_form.element<ComboBox>(QStringLiteral("L"));
        auto *group = m_form.element<ButtonGroup>(QStringLiteral("M"));
        auto *sp = m_form.element<SpinBox>(QStringLiteral("SP"));
        a->click();
        // As the user picks it: the choice is what a configuration keeps.
        QVERIFY(m_form.window->execScriptLine(QStringLiteral("SET(L, 1)"), 1));
        QVERIFY(t->locked && group->locked);
        const QString saved = m_form.dir.filePath(QStringLiteral("locked.qlnp"));
        QVERIFY(m_form.window->saveConfiguration(saved));

        // Defaults are set quietly; the list's lock of its old item must not
        // outlive the reset.
        m_form.window->resetGUI();
        QVERIFY(!t->locked);
        QVERIFY(t->isEnabled());
        QVERIFY(!group->locked);
        QVERIFY(group->buttons().first()->isEnabled());
        QCOMPARE(group->value(1), QStringLiteral("Off"));
        QVERIFY(list->locking.isEmpty());
        QVERIFY(sp->locked);

        // Values come back with signals blocked; their locks come back too.
        m_form.sink->clear();
        QVERIFY(m_form.window->load(saved));
        QVERIFY(a->isChecked());
        QVERIFY(t->isChecked());
        QVERIFY(!t->isEnabled());
        QCOMPARE(lockPeers(t->lockedBy), QStringList{QStringLiteral("A")});
        QCOMPARE(group->value(1), QStringLiteral("On"));
        QCOMPARE(lockPeers(group->lockedBy), QStringList{QStringLiteral("L")});
        QCOMPARE(lockPeers(sp->lockedBy), QStringList{QStringLiteral("INV")});
        QCOMPARE(m_form.window->conflictCount(), 0);
        // The target was saved with its own choice, which returns on release.
        a->click();
        QVERIFY(!t->isChecked());
        QVERIFY(t->isEnabled());
    }

private:
    LockEngine &engine() const { return m_form.window->document()->locks(); }
    static QString xmlError(const QString &text)
    {
        return QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>") + text;
    }

    FormWindow m_form;
};

QTEST_MAIN(TestLocks)
#include "tst_locks.moc"
