// The define validator: one small description per rule, checked for the
// exact console lines, the order of the lists and the single errors.

#include <QtTest>

#include <QTemporaryDir>

#include "support/QuillonRun.h"
#include "support/RecordingSink.h"
#include "tooling/DefineValidator.h"

namespace {

const QString kHeader = QStringLiteral("<font color=\"blue\"> <b>%1:</b></font><br>");
const QString kBody = QStringLiteral("<font color=\"red\"> %1</font><br>");
const QString kSingle = QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>");

const char kSvd[] =
    "<?xml version=\"1.0\"?><device><name>D</name><peripherals>"
    "<peripheral><name>P</name><registers>"
    "<register><name>R</name><size>32</size><fields>"
    "<field><name>F</name><lsb>0</lsb><msb>3</msb></field>"
    "<field><name>E</name><lsb>4</lsb><msb>4</msb><enumeratedValues>"
    "<enumeratedValue><name>OFF</name><value>0</value></enumeratedValue>"
    "<enumeratedValue><name>ON</name><value>1</value></enumeratedValue></enumeratedValues></field>"
    "</fields></register>"
    "<register><name>S</name><size>32</size></register>"
    "</registers></peripheral></peripherals></device>\n";

QByteArray description(const QByteArray &body, bool withSvd = false)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<nvxmlcfg version=\"2.0.0\">\n"
        + QByteArray(withSvd ? "<svd file=\"d.svd\"/>\n" : "") + "<tabcontainer>\n<verticalcontainer label=\"T\">\n"
        + body + "\n</verticalcontainer>\n</tabcontainer>\n</nvxmlcfg>\n";
}

// Line of the body's first line: the body starts on line 5 (line 6 with
// the svd element).
QString run(const QByteArray &text, const QString &name = QStringLiteral("d.xml"), QString *path = nullptr)
{
    static QTemporaryDir dir;
    writeTextFile(dir.filePath("d.svd"), kSvd);
    const QString file = dir.filePath(name);
    writeTextFile(file, text);
    if (path)
        *path = file;
    RecordingSink sink;
    DefineValidator().validate(file);
    return sink.console.join('\n');
}

} // namespace

class TestDefineValidator : public QObject
{
    Q_OBJECT

private slots:
    void rules_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("withSvd");
        // Each expected text; "%F" stands for the description's path.
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QStringList>("absent");

        QTest::newRow("lockon part without =")
            << QByteArray("<checkbox define=\"P.R.F[0]\" lockon=\"P.R.F[1]=1;P.S\"/>\n<checkbox define=\"P.R.F[1]\"/>") << false
            << QStringList{kSingle.arg("Found lockon without \"=\" at line 5")}
            << QStringList{"lockon defines could not be found"};
        QTest::newRow("lockon define missing")
            << QByteArray("<checkbox define=\"P.R.F[0]\" lockon=\"P.S.G.value=1\"/>") << false
            << QStringList{kHeader.arg("The following lockon defines could not be found in XML file %F"), kBody.arg("P.S.G")}
            << QStringList();
        QTest::newRow("setdef, data, recdata, led in that order")
            << QByteArray("<button label=\"b\"><action event=\"clicked\" cmd=\"setDef\" data=\"A.B.C=1\"/>"
                          "<action event=\"clicked\" cmd=\"sendUSB\" data=\"0x01;2:D.E.F;7\" recdata=\"2:G.H.I;?;J.K.L\"/></button>\n"
                          "<led data=\"M.N.O\"/>")
            << false
            << QStringList{kHeader.arg("The following setdef defines could not be found in XML file %F"), kBody.arg("A.B.C"),
                           kHeader.arg("The following sendUSB data defines could not be found in XML file %F"), kBody.arg("D.E.F"),
                           kHeader.arg("The following sendUSB recdata defines could not be found in XML file %F"),
                           kBody.arg("G.H.I, J.K.L"),
                           kHeader.arg("The following led defines could not be found in XML file %F"), kBody.arg("M.N.O")}
            << QStringList{"?"};
        QTest::newRow("predefined names count as defined")
            << QByteArray("<button label=\"b\"><action event=\"clicked\" cmd=\"setDef\" data=\"$ADDRESS$=1;$VALUE$=2;$FUNC$=3;$DIR$=x\"/></button>")
            << false << QStringList() << QStringList{"setdef defines"};
        QTest::newRow("led without data")
            << QByteArray("<led define=\"L\"/>") << false
            << QStringList{kSingle.arg("Found led element without data attribute define at line 5")} << QStringList();
        QTest::newRow("default with a wrong left side")
            << QByteArray("<combo define=\"P.R.F\" default=\"name = x\"><item label=\"a\"/></combo>\n"
                          "<combo define=\"P.R.E\" default=\"register=$PERIPHERALS$\"/>")
            << false
            << QStringList{kSingle.arg("\"default\" with \"=\" must have \"value\", \"label\" or \"index\" on its left side, at line 5")}
            << QStringList{"at line 6"};
        QTest::newRow("math names")
            << QByteArray("<spinbox define=\"P.R.F\" range=\"0;15\"/>\n<math define=\"M\" formula=\"P.R.F.value + X.Y.Z * 2 + Q.Q.Q.label\"/>")
            << false
            << QStringList{kHeader.arg("The following math defines could not be found in XML file %F"), kBody.arg("X.Y.Z, Q.Q.Q")}
            << QStringList{"P.R.F,"};
        QTest::newRow("checkbox spanning elements without branch")
            << QByteArray("<checkbox define=\"P.R.F[0]\"><text label=\"x\"/></checkbox>\n"
                          "<checkbox define=\"P.R.F[1]\"><action event=\"checked\" cmd=\"setDef\" data=\"P.R.F[0]=1\"/></checkbox>")
            << false
            << QStringList{kHeader.arg("The following checkbox elements do not have uielement=\"branch\" but spans other elements in XML file %F"),
                           kBody.arg("P.R.F[0][LINE: 5]")}
            << QStringList{"P.R.F[1][LINE"};
        QTest::newRow("branch outside a tree")
            << QByteArray("<checkbox define=\"P.R.F[0]\" uielement=\"branch\"><text label=\"x\"/></checkbox>\n"
                          "<treecontainer><checkbox define=\"P.R.F[1]\" uielement=\"branch\"/></treecontainer>")
            << false
            << QStringList{kHeader.arg("The following branch elements are not within a treecontainer element in XML file %F"),
                           kBody.arg("P.R.F[0][LINE: 5]")}
            << QStringList{"P.R.F[1][LINE"};
        QTest::newRow("combo items beyond the define's range")
            << QByteArray("<combo define=\"P.R.F[0]\"><item label=\"a\"/><item label=\"b\"/><item label=\"c\"/></combo>\n"
                          "<combo define=\"P.R.F[2:1]\"><item label=\"a\"/><item label=\"b\"/><item label=\"c\"/></combo>")
            << false
            << QStringList{kHeader.arg("The following combo elements with number of items exceeding range of define in XML file %F"),
                           kBody.arg("P.R.F[0] (5)")}
            << QStringList{"(6)"};
        QTest::newRow("defaults not among the items")
            << QByteArray("<combo define=\"P.R.F[1:0]\" default=\"value=7\"><item label=\"a\" value=\"0x1\"/><item label=\"b\"/></combo>\n"
                          "<combo define=\"P.R.F[3:2]\" default=\"label=b\"><item label=\"a\"/><item label=\"b\"/></combo>\n"
                          "<radio define=\"P.S[1:0]\" default=\"index=2\"><radiobutton label=\"a\"/><radiobutton label=\"b\"/></radio>\n"
                          "<combo define=\"P.S[3:2]\" default=\"1\"><item label=\"a\" value=\"0x1\"/></combo>")
            << false
            << QStringList{kHeader.arg("The following combo elements contain invalid default values in XML file %F"),
                           kBody.arg("P.R.F[1:0] (5)"),
                           kHeader.arg("The following radio elements contain invalid default values in XML file %F"),
                           kBody.arg("P.S[1:0] (7)")}
            << QStringList{"(6)", "(8)"};
        QTest::newRow("malformed list defaults")
            << QByteArray("<combo define=\"P.R.F[1:0]\" default=\"index=x\"><item label=\"a\"/></combo>\n"
                          "<combo define=\"P.R.F[3:2]\" default=\"value=\"><item label=\"a\"/></combo>")
            << false
            << QStringList{kHeader.arg("The following combo/radio elements are set to invalid default value in XML file %F"),
                           kBody.arg("P.R.F[1:0] (5), P.R.F[3:2] (6)")}
            << QStringList();
        QTest::newRow("spin box defaults and ranges")
            << QByteArray("<spinbox define=\"P.R.F\" range=\"0;0x10\" default=\"16\"/>\n"
                          "<spinbox define=\"P.S.A\" range=\"0;0x10\" default=\"17\"/>\n"
                          "<hexspinbox define=\"P.S.B\" range=\"0;1\"/>\n"
                          "<spinbox define=\"P.S.C\" range=\"zero;1\"/>\n"
                          "<spinbox define=\"P.S.D\" range=\"0\"/>\n"
                          "<spinbox define=\"P.R.F[1:0]\" range=\"0;4\" default=\"1\"/>")
            << false
            << QStringList{kSingle.arg("Unable to convert range or default value of P.S.C[8] to a valid number"),
                           kSingle.arg("Invalid range value of P.S.D[9]"),
                           kHeader.arg("The following spinbox elements with invalid default value in XML file %F"),
                           kBody.arg("P.S.A[6]"),
                           kHeader.arg("The following spinbox elements with default or range value not within range of define in XML file %F"),
                           kBody.arg("P.R.F[1:0][10]")}
            << QStringList{"P.R.F[5]", "P.S.B"};
        QTest::newRow("doublespinbox step finer than its default")
            << QByteArray("<doublespinbox define=\"P.R.F\" range=\"0;10\" default=\"1.5\" step=\"0.25\"/>\n"
                          "<doublespinbox define=\"P.S\" range=\"0;10\" default=\"1.50\" step=\"0.25\"/>")
            << false
            << QStringList{kHeader.arg("The following doublespinbox defines with step exceeding precision of default in XML file %F"),
                           kBody.arg("P.R.F")}
            << QStringList{"P.S<", "P.S,"};
        QTest::newRow("uielement with svd=0")
            << QByteArray("<checkbox define=\"P.R.F[0]\" uielement=\"branch\" svd=\"0\"/>") << false
            << QStringList{kHeader.arg("The following uielement defines which should not have svd=\"0\" contained in XML file %F"),
                           kBody.arg("P.R.F[0][5]")}
            << QStringList();
        QTest::newRow("defines missing in the SVD file, selection removed")
            << QByteArray("<spinbox define=\"P.R.F[3:0]\"/>\n<spinbox define=\"P.R.G\"/>\n<spinbox define=\"P.X\"/>\n"
                          "<spinbox define=\"P.S\"/>\n<image define=\"I.J\"/>\n<spinbox define=\"V.W\" svd=\"0\"/>")
            << true
            << QStringList{kHeader.arg("The following defines could not be found in SVD file %S"), kBody.arg("P.R.G, P.X")}
            << QStringList{"I.J", "V.W", "P.R.F["};
        QTest::newRow("list items against the SVD field")
            << QByteArray("<combo define=\"P.R.E\"><item label=\"a\"/><item label=\"b\"/><item label=\"c\"/></combo>\n"
                          "<radio define=\"P.R.F\"><radiobutton label=\"a\"/></radio>\n"
                          "<combo define=\"P.R.F\"><item label=\"a\" override=\"1\"/><item label=\"b\" hide=\"9\"/></combo>")
            << true
            << QStringList{kHeader.arg("The following combo elements with number of items exceeding size of field in SVD file %S"),
                           kBody.arg("P.R.E (6)"),
                           kHeader.arg("The following override/hide values for P.R.F define could not be found in SVD file %S"),
                           kBody.arg("1, 9")}
            << QStringList{"radio elements with number of items exceeding size"};
        QTest::newRow("override values that the field has")
            << QByteArray("<combo define=\"P.R.E\"><item label=\"a\" override=\"0\"/><item label=\"b\" hide=\"1\"/></combo>") << true
            << QStringList() << QStringList{"override/hide"};
    }

    void rules()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, withSvd);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, absent);
        QString path;
        const QString console = run(description(body, withSvd), QStringLiteral("d.xml"), &path);
        const QString svd = QFileInfo(path).absoluteDir().filePath("d.svd");
        QVERIFY2(console.startsWith(QStringLiteral("<font color=\"blue\">  <b>Starting validation:</b></font> File: %1<br>").arg(path)),
                 qPrintable(console));
        QVERIFY2(console.endsWith(QStringLiteral("<font color=\"blue\">  <b>Finished validation:</b></font> File: %1<br>").arg(path)),
                 qPrintable(console));
        int at = 0;
        for (QString e : expected) {
            e.replace("%F", path).replace("%S", svd);
            const int found = console.indexOf(e, at);
            QVERIFY2(found >= 0, qPrintable(QStringLiteral("missing or out of order: %1\n--- console:\n%2").arg(e, console)));
            at = found + e.size();
        }
        for (const QString &a : absent)
            QVERIFY2(!console.contains(a), qPrintable(QStringLiteral("unexpected: %1\n--- console:\n%2").arg(a, console)));
    }

    void cleanDescriptionGivesOnlyStartAndFinish()
    {
        QString path;
        const QString console = run(description("<checkbox define=\"P.R.E\"/>\n<spinbox define=\"P.R.F\" range=\"0;15\" default=\"3\"/>\n"
                                                "<combo define=\"P.S[1:0]\" default=\"label=b\"><item label=\"a\"/><item label=\"b\"/></combo>",
                                                true),
                                    QStringLiteral("clean.xml"), &path);
        QCOMPARE(console.count("\n") + 1, 2);
    }

    void unreadableInputs()
    {
        RecordingSink sink;
        DefineValidator().validate(QString());
        QVERIFY(sink.console.isEmpty());

        DefineValidator().validate(QStringLiteral("/nonexistent/none.xml"));
        QVERIFY(sink.errors.join('\n').startsWith("Cannot open file /nonexistent/none.xml:\n"));
        QCOMPARE(sink.console.last(), QStringLiteral("<font color=\"blue\">  <b>Finished validation:</b></font> File: none.xml<br>"));

        sink.clear();
        QString path;
        const QString console = run("<nvxmlcfg><open></nvxmlcfg>", QStringLiteral("broken.xml"), &path);
        QVERIFY2(console.contains(kSingle.arg("Unable to parse XML file " + path)), qPrintable(console));
        QVERIFY(console.endsWith("Finished validation:</b></font> File: " + path + "<br>"));

        const QString noSvd = run(description("<spinbox define=\"P.R.F\"/>").replace("<tabcontainer>", "<svd file=\"gone.svd\"/><tabcontainer>"),
                                  QStringLiteral("nosvd.xml"), &path);
        QVERIFY2(noSvd.contains("Failed to open or unable to parse SVD file"), qPrintable(noSvd));
    }

    void defineMaximum_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<qint64>("addend");
        QTest::addColumn<qint64>("maximum");
        QTest::newRow("no selection") << "P.R.F" << qint64(0) << qint64(-1);
        QTest::newRow("one bit") << "P.R[4]" << qint64(0) << qint64(1);
        QTest::newRow("four bits") << "P.R[7:4]" << qint64(0) << qint64(15);
        QTest::newRow("item count") << "P.R[7:4]" << qint64(1) << qint64(16);
        QTest::newRow("reversed") << "P.R[4:7]" << qint64(0) << qint64(-2);
    }

    void defineMaximum()
    {
        QFETCH(QString, define);
        QFETCH(qint64, addend);
        QFETCH(qint64, maximum);
        QCOMPARE(DefineValidator::defineMaximum(define, addend), maximum);
    }

    // The bundled example is a description written with care: the
    // validator finds nothing in it.
    void exampleIsClean()
    {
        RecordingSink sink;
        const QString example = QuillonRun::sourceDir() + "/examples/nrf52840/nrf52840_board.xml";
        DefineValidator().validate(example);
        QVERIFY2(sink.console.size() == 2, qPrintable(sink.console.join('\n')));
    }
};

QTEST_MAIN(TestDefineValidator)
#include "tst_definevalidator.moc"
