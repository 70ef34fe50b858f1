#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QTemporaryDir>

static const QByteArray kForm = R"(
<verticalcontainer label="Values">
 <checkbox define="CB" svd="0"/>
 <combo define="CO" svd="0"><item label="a" value="0"/><item label="b" value="5"/><item label="c" value="9"/></combo>
 <radio define="RB" svd="0"><radiobutton label="x" value="0"/><radiobutton label="y" value="3"/></radio>
 <spinbox define="SP" svd="0" range="0;100"/>
 <hexspinbox define="HX" svd="0" range="0;0xFFFF"/>
 <slider define="SL" svd="0" range="0;10"/>
 <knob define="KN" svd="0" range="0;10"/>
 <doublespinbox define="DS" svd="0" range="0;10"/>
 <edit define="LE" svd="0"/>
 <editbox define="TE" svd="0"/>
 <togglebutton define="TG" svd="0" label="Toggle"/>
 <checkbox define="LK" svd="0" default="1" lockon="RO=4"/>
 <spinbox define="RO" svd="0" range="0;9"/>
</verticalcontainer>
)";

// The value commands of scripts (SET and its narrow forms) against every
// element class of a real form: what each class takes, the path of a user's
// change that follows (the element becomes the last changed, the window
// modified), and the messages for values and classes that don't fit.
class TestScriptValues : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_form.write(miniSvd(), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open());
        m_window = m_form.window;
        m_sink = m_form.sink;
        QVERIFY(!m_window->isWindowModified());
    }

    void cleanup()
    {
        m_form.close();
    }

    void valueCommands_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("define");
        // Kind-0 value afterwards.
        QTest::addColumn<QString>("expected");
        // Whether the user's path ran (the element changed).
        QTest::addColumn<bool>("changed");
        // The error message, if one is expected.
        QTest::addColumn<QString>("error");

        QTest::newRow("check box") << "SET(CB, 1)" << "CB" << "1" << true << "";
        QTest::newRow("list by index") << "SET(CO, 2)" << "CO" << "9" << true << "";
        QTest::newRow("list index too high")
            << "SET(CO, 3)" << "CO" << "0" << false << "Index for CO.setItem (3) is out of allowed range: 0..2";
        QTest::newRow("list negative index")
            << "SET(CO, -1)" << "CO" << "0" << false << "Index for CO.setItem (-1) is out of allowed range: 0..2";
        QTest::newRow("radio by index") << "SET(RB, 1)" << "RB" << "3" << true << "";
        QTest::newRow("radio index too high")
            << "SET(RB, 2)" << "RB" << "0" << false << "Index for RB.setRBItem (2) is out of allowed range: 0..1";
        QTest::newRow("spin box") << "SET(SP, 42)" << "SP" << "42" << true << "";
        QTest::newRow("hex spin box") << "SET(HX, 4660)" << "HX" << "4660" << true << "";
        QTest::newRow("slider") << "SET(SL, 7)" << "SL" << "7" << true << "";
        QTest::newRow("knob") << "SET(KN, 3)" << "KN" << "3" << true << "";
        QTest::newRow("double spin box") << "SET(DS, 2.5)" << "DS" << "2.50" << true << "";
        QTest::newRow("line edit") << "SET(LE, hello world)" << "LE" << "hello world" << true << "";
        QTest::newRow("text edit") << "SET(TE, some text)" << "TE" << "some text" << true << "";
        QTest::newRow("toggle") << "SET(TG, 1)" << "TG" << "1" << true << "";
        QTest::newRow("locked element left alone") << "SET(RO, 2)" << "RO" << "4" << false << "";

        QTest::newRow("narrow: setChecked") << "SETCHECKED(CB, 1)" << "CB" << "1" << true << "";
        QTest::newRow("narrow: setChecked on a list")
            << "SETCHECKED(CO, 1)" << "CO" << "0" << false << "Can not use \"setChecked\" with parameter \"CO\"";
        QTest::newRow("narrow: setValue") << "SETVALUE(DS, 1.25)" << "DS" << "1.25" << true << "";
        QTest::newRow("narrow: setValue on an edit")
            << "SETVALUE(LE, 3)" << "LE" << "" << false << "Can not use \"setValue\" with parameter \"LE\"";
        QTest::newRow("narrow: setItem") << "SETITEM(CO, 1)" << "CO" << "5" << true << "";
        QTest::newRow("narrow: setItem on a radio group")
            << "SETITEM(RB, 1)" << "RB" << "0" << false << "Can not use \"setItem\" with parameter \"RB\"";
        QTest::newRow("narrow: setRBItem") << "SETRBITEM(RB, 1)" << "RB" << "3" << true << "";
        QTest::newRow("narrow: setText") << "SETTEXT(TE, abc)" << "TE" << "abc" << true << "";
        QTest::newRow("narrow: setText on a spin box")
            << "SETTEXT(SP, abc)" << "SP" << "0" << false << "Can not use \"setText\" with parameter \"SP\"";
    }

    void valueCommands()
    {
        QFETCH(QString, line);
        QFETCH(QString, define);
        QFETCH(QString, expected);
        QFETCH(bool, changed);
        QFETCH(QString, error);

        ActiveElement *target = element(define);
        QVERIFY(target);
        QVERIFY(m_window->execScriptLine(line, 1));
        QCOMPARE(target->value(0), expected);
        QCOMPARE(m_window->isWindowModified(), changed);
        // A user's change makes the element the last one changed: the order a
        // configuration is saved in.
        QCOMPARE(m_window->document()->tables().elementList.toList().last() == target, changed);
        if (error.isEmpty())
            QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join('\n')));
        else
            QCOMPARE(m_sink->errors, QStringList{error});
    }

    void unchangedStateAndLocks()
    {
        // A check box already in the state asked for is not touched: its
        // actions and locks don't run again.
        QVERIFY(m_window->execScriptLine(QStringLiteral("SET(LK, 1)"), 3));
        QVERIFY(m_window->document()->tables().elementList.toList().last() != element(QStringLiteral("LK")));
        // Unchecked by script, it lets go of the spin box it locks.
        QVERIFY(m_window->execScriptLine(QStringLiteral("SET(LK, 0)"), 4));
        QVERIFY(element(QStringLiteral("RO"))->widget()->isEnabled());
        QVERIFY(m_window->execScriptLine(QStringLiteral("SET(RO, 2)"), 5));
        QCOMPARE(element(QStringLiteral("RO"))->value(0), QStringLiteral("2"));

        QVERIFY(m_window->execScriptLine(QStringLiteral("SET(NOPE, 1)"), 6));
        QVERIFY(m_sink->console.filter(QStringLiteral("Unknown define: NOPE")).size() == 1);
    }

private:
    ActiveElement *element(const QString &define) const { return m_window->document()->tables().element(define); }

    FormWindow m_form;
    MainWindow *m_window = nullptr;
    RecordingSink *m_sink = nullptr;
};

QTEST_MAIN(TestScriptValues)
#include "tst_scriptvalues.moc"
