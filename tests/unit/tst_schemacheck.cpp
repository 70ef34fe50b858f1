// The schema check against QLN.xsd: its console lines for a valid and an
// invalid file, the link to the place, and every description that ships
// with the program or its tests held to the schema.

#include <QtTest>

#include <QDirIterator>
#include <QTemporaryDir>

#include "support/QuillonRun.h"
#include "support/RecordingSink.h"
#include "tooling/SchemaCheck.h"

namespace {

QString schema()
{
    return QuillonRun::sourceDir() + QStringLiteral("/resources/runtime/QLN.xsd");
}

const QByteArray kValid =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<nvxmlcfg version=\"2.0.0\">\n"
    "  <checksum>0000000000000000000000000000000000000000000000000000000000000000</checksum>\n"
    "  <svd file=\"a.svd\"/>\n"
    "  <tabcontainer label=\"Tabs\">\n"
    "    <verticalcontainer label=\"One\">\n"
    "      <combo define=\"P.R.F\" default=\"label=b\"><item label=\"a\"/><item label=\"b\" value=\"0x1\"/></combo>\n"
    "      <checkbox define=\"P.R.G\" lockon=\"P.R.F=1\"><action event=\"checked\" cmd=\"setDef\" data=\"P.R.F=0\"/></checkbox>\n"
    "      <table define=\"T\" numrows=\"4\"><column type=\"value\" label=\"v\"/></table>\n"
    "      <plot define=\"PL\" maxX=\"100\"><curve label=\"c\" data=\"P.R.F\"/></plot>\n"
    "      <include file=\"x\" anything=\"goes\">part.xml</include>\n"
    "    </verticalcontainer>\n"
    "  </tabcontainer>\n"
    "</nvxmlcfg>\n";

} // namespace

class TestSchemaCheck : public QObject
{
    Q_OBJECT

private slots:
    void validFile()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath("valid.xml");
        QVERIFY(writeTextFile(file, kValid));
        RecordingSink sink;
        QVERIFY(SchemaCheck::checkXsd(file, schema()));
        QCOMPARE(sink.console, (QStringList{
                                   QStringLiteral("<font color=\"blue\">  <b>Starting xsd check:</b></font> File: %1<br>").arg(file),
                                   QStringLiteral("<font color=\"green\"> <b>Document is valid.</b></font><br>"),
                                   QStringLiteral("<font color=\"blue\"> <b>Finished xsd check.</b></font><br>")}));
    }

    void invalid_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<int>("line");
        QTest::newRow("unknown element") << QByteArray("<table define") << QByteArray("<tabel define") << 9;
        QTest::newRow("unknown attribute") << QByteArray("lockon=") << QByteArray("lockOn=") << 8;
        QTest::newRow("wrong root") << QByteArray("nvxmlcfg") << QByteArray("nvxmlcfh") << 2;
        QTest::newRow("checksum not hexadecimal") << QByteArray("<checksum>0000") << QByteArray("<checksum>zz00") << 3;
    }

    void invalid()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(int, line);
        QTemporaryDir dir;
        // A colon in the name stands for a drive letter: the link keeps it
        // as $$$COLON$$$ so the anchor does not look like a URL scheme.
        const QString file = dir.filePath("C:bad.xml");
        QVERIFY(writeTextFile(file, QByteArray(kValid).replace(from, to)));
        RecordingSink sink;
        QVERIFY(!SchemaCheck::checkXsd(file, schema()));
        QCOMPARE(sink.console.size(), 3);
        const QString error = sink.console.at(1);
        QString linkFile = file;
        linkFile.replace(':', "$$$COLON$$$");
        const QString head = QStringLiteral("<font color=\"red\"> <b>xsd-ERROR: xml <a href=\"$xmlopen$%1$-n%2$-c")
                                 .arg(linkFile)
                                 .arg(line);
        QVERIFY2(error.startsWith(head), qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("is invalid at line %1, column ").arg(line)), qPrintable(error));
        // The validator's own mark-up is gone from the message.
        const QString message = error.section("</font><b>: ", 1);
        QVERIFY2(!message.isEmpty() && !message.chopped(4).contains('<'), qPrintable(message));
        QCOMPARE(sink.console.last(), QStringLiteral("<font color=\"blue\"> <b>Finished xsd check.</b></font><br>"));
    }

    void missingFileAndSchema()
    {
        QTemporaryDir dir;
        RecordingSink sink;
        QVERIFY(!SchemaCheck::checkXsd(dir.filePath("none.xml"), schema()));
        QVERIFY(sink.console.at(1).contains("xsd-ERROR"));

        sink.clear();
        QVERIFY(writeTextFile(dir.filePath("valid.xml"), kValid));
        QVERIFY(!SchemaCheck::checkXsd(dir.filePath("valid.xml"), dir.filePath("missing.xsd")));
        QCOMPARE(sink.console.last(), QStringLiteral("<font color=\"red\"> <b>XSD is not valid.</b></font> <br>"));
        QCOMPARE(sink.console.size(), 2);
    }

    // The schema beside the program is the one of the sources.
    void installedBesideProgram()
    {
        QFile installed(QuillonRun::buildDir() + "/QLN.xsd");
        QFile source(schema());
        QVERIFY(installed.open(QIODevice::ReadOnly));
        QVERIFY(source.open(QIODevice::ReadOnly));
        QCOMPARE(installed.readAll(), source.readAll());
    }

    // Every description of the examples and the tests follows the schema,
    // so that a new element kind comes with its schema entry.
    void everyDescriptionValidates()
    {
        int count = 0;
        for (const char *folder : {"/examples", "/tests"}) {
            QDirIterator it(QuillonRun::sourceDir() + QLatin1String(folder), {"*.xml"}, QDir::Files, QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QString file = it.next();
                QFile f(file);
                QVERIFY(f.open(QIODevice::ReadOnly));
                if (!f.readAll().contains("<nvxmlcfg"))
                    continue;  // an include part or another kind of file
                RecordingSink sink;
                QVERIFY2(SchemaCheck::checkXsd(file, schema()), qPrintable(sink.console.join('\n')));
                ++count;
            }
        }
        QVERIFY(count >= 2);
    }
};

QTEST_MAIN(TestSchemaCheck)
#include "tst_schemacheck.moc"
