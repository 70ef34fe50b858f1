#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ActiveElement.h"
#include "elements/SetDef.h"
#include "shell/MainWindow.h"

#include <QRegularExpression>

// One register shared by every kind of claim: a check box, an inverted check
// box, a list on a field, a field-level spin box and a bit range next to it.
static const QByteArray kFields =
    "<field><name>EN</name><lsb>0</lsb><msb>0</msb></field>"
    "<field><name>OFF</name><lsb>1</lsb><msb>1</msb></field>"
    "<field><name>MODE</name><lsb>2</lsb><msb>4</msb></field>"
    "<field><name>DIV</name><lsb>12</lsb><msb>15</msb></field>";

static const QByteArray kForm = R"(
<verticalcontainer label="Register">
 <header file="p.h">
  <checkbox define="P.R.EN" label="Enable" default="1"/>
  <checkbox define="P.R.OFF" label="Off" role="inverted" default="1"/>
  <combo define="P.R.MODE" default="2"><item label="a" value="0"/><item label="b" value="2"/><item label="c" value="5"/></combo>
  <spinbox define="P.R[11:8]" range="0;15" default="9"/>
  <spinbox define="P.R.DIV" range="0;15" default="3"/>
 </header>
 <spinbox define="SP" svd="0" range="0;100" default="16"/>
 <doublespinbox define="DS" svd="0" range="0;10" default="1.5049"/>
 <edit define="LE" svd="0" default="Abc"/>
</verticalcontainer>
)";

// What ASSERT compares and how: the register value a header export writes,
// numbers as written, texts; and the command parameters scripts keep blanks
// around.
class TestScriptAssertions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_form.write(miniSvd(kFields), kForm));
    }

    void init()
    {
        QVERIFY(m_form.open());
        QVERIFY2(m_form.openMessages.filter(QStringLiteral("Error")).isEmpty(), qPrintable(m_form.openMessages.join('\n')));
    }

    void cleanup()
    {
        m_form.close();
        SetDef::setTrace(false);
    }

    void registerValueIsTheExportedWord()
    {
        // Every element of the register gives the same register value: the one
        // the header holds, whichever of them is named.
        QVERIFY(run(QStringLiteral("Set(P.R.MODE, 2)")));
        QVERIFY(run(QStringLiteral("Set(P.R.EN, 0)")));
        m_form.window->exportHeaderFiles(true);
        const QString header = readTextFile(m_form.dir.filePath(QStringLiteral("p.h")));
        const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("#define P_R \\(0x[0-9A-F]+\\) /\\*decimal (\\d+)\\*/")).match(header);
        QVERIFY2(m.hasMatch(), qPrintable(header));
        const QString word = m.captured(1);
        // EN unticked; OFF's default value 1 (an inverted box: unticked); MODE
        // item 5 at bit 2; bits 11:8 = 9; DIV 3.
        QCOMPARE(word.toUInt(), (1u << 1) | (5u << 2) | (9u << 8) | (3u << 12));
        for (const char *define : {"P.R.EN", "P.R.OFF", "P.R.MODE", "P.R[11:8]", "P.R.DIV"}) {
            m_form.sink->console.clear();
            QVERIFY(run(QStringLiteral("Assert(%1, registervalue, %2)").arg(QLatin1String(define), word)));
            QVERIFY(run(QStringLiteral("Assert(%1, 5, %2)").arg(QLatin1String(define), word)));
            QCOMPARE(m_form.sink->console.filter(QStringLiteral("OK")).size(), 2);
        }
        // Its own definevalue is something else: only its bits.
        m_form.sink->console.clear();
        QVERIFY(run(QStringLiteral("Assert(P.R.DIV, registervalue, %1)").arg(3u << 12)));
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("FAILED")).size(), 1);
    }

    void comparisons_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("ok");
        // The expected value is read as written: six significant digits would
        // make these equal.
        QTest::newRow("16.00002 is not 16") << "Assert(SP, value, 16.00002)" << false;
        QTest::newRow("16.000001 is 16 within 1e-05") << "Assert(SP, value, 16.000001)" << true;
        QTest::newRow("16 is 16") << "Assert(SP, value, 16)" << true;
        // The actual value is cut to the expected fraction digits.
        QTest::newRow("1.50 against 1.5049") << "Assert(DS, value, 1.50)" << true;
        QTest::newRow("1.51 against 1.5049") << "Assert(DS, value, 1.51)" << false;
        QTest::newRow("label ignores case") << "Assert(P.R.MODE, Label, B)" << true;
        QTest::newRow("edit is case-sensitive") << "Assert(LE, value, abc)" << false;
        QTest::newRow("edit as written") << "Assert(LE, value, Abc)" << true;
        QTest::newRow("kind and expected trimmed") << "Assert(SP,  value ,  16 )" << true;
        QTest::newRow("expected names an element") << "Assert(P.R.DIV, value, P.R.DIV)" << true;
    }

    void comparisons()
    {
        QFETCH(QString, line);
        QFETCH(bool, ok);
        QVERIFY(run(line));
        QCOMPARE(m_form.sink->console.filter(QStringLiteral(">OK<")).size(), ok ? 1 : 0);
        QCOMPARE(m_form.sink->console.filter(QStringLiteral(">FAILED<")).size(), ok ? 0 : 1);
    }

    void blanksAroundParameters_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("unknown");
        QTest::newRow("set keeps its define") << "Set( SP, 3)" << " SP";
        QTest::newRow("assert keeps its define") << "Assert( SP, value, 16)" << " SP";
        QTest::newRow("narrow form keeps its define") << "SetValue(SP , 3)" << "SP ";
        QTest::newRow("assertlock keeps its define") << "AssertLock( SP, 0)" << " SP";
        QTest::newRow("set trims its value") << "Set(SP,  42 )" << "";
    }

    void blanksAroundParameters()
    {
        QFETCH(QString, line);
        QFETCH(QString, unknown);
        QVERIFY(run(line));
        const QStringList errors = m_form.sink->console.filter(QStringLiteral("Unknown define"));
        if (unknown.isEmpty()) {
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
            QCOMPARE(m_form.tables().element(QStringLiteral("SP"))->value(0), QStringLiteral("42"));
        } else {
            QCOMPARE(errors.size(), 1);
            QVERIFY2(errors.first().contains(QStringLiteral("Unknown define: %1 in line").arg(unknown)), qPrintable(errors.first()));
        }
    }

    void logSetDefsTracesEveryCall()
    {
        QVERIFY(run(QStringLiteral("SetDef(SP=5)")));
        QVERIFY(m_form.sink->console.filter(QStringLiteral("setDef(")).isEmpty());
        QVERIFY(run(QStringLiteral("LogSetDefs(1)")));
        QVERIFY(run(QStringLiteral("SetDef(SP=6)")));
        QVERIFY(run(QStringLiteral("SetDef(SP=7;DS=2)")));
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("setDef(")),
                 (QStringList{QStringLiteral("setDef(SP=6)<br>"), QStringLiteral("setDef(SP=7;DS=2)<br>")}));
        QVERIFY(run(QStringLiteral("LogSetDefs(0)")));
        QVERIFY(run(QStringLiteral("SetDef(SP=8)")));
        QCOMPARE(m_form.sink->console.filter(QStringLiteral("setDef(")).size(), 2);
        QCOMPARE(m_form.tables().element(QStringLiteral("SP"))->value(0), QStringLiteral("8"));
    }

private:
    bool run(const QString &line) { return m_form.window->execScriptLine(line, 1); }

    FormWindow m_form;
};

QTEST_MAIN(TestScriptAssertions)
#include "tst_scriptassertions.moc"
