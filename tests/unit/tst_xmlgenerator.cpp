// The generator of first descriptions from SVD files: its exact text in
// both forms, the model and $PERIPHERALS$ list it fills, its signing, and
// SVD files that are missing or broken.

#include <QtTest>

#include <QTemporaryDir>

#include "config/Checksum.h"
#include "model/BitField.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "support/FakeListElement.h"
#include "support/ModelDocument.h"
#include "support/QuillonRun.h"
#include "support/RecordingSink.h"
#include "tooling/SchemaCheck.h"
#include "tooling/XmlGenerator.h"

namespace {

const QByteArray kSvd =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<device schemaVersion=\"1.1\">\n"
    "  <name>MINI</name>\n"
    "  <peripherals>\n"
    "    <peripheral>\n"
    "      <name>P</name>\n"
    "      <description>Timers &amp; \"counters\"</description>\n"
    "      <baseAddress>0x40001000</baseAddress>\n"
    "      <registers>\n"
    "        <register>\n"
    "          <name>R</name>\n"
    "          <description>Control</description>\n"
    "          <addressOffset>0x8</addressOffset>\n"
    "          <size>32</size>\n"
    "          <fields>\n"
    "            <field><name>EN</name><description>Enable</description><lsb>0</lsb><msb>0</msb>\n"
    "              <enumeratedValues><enumeratedValue><name>OFF</name><value>0</value></enumeratedValue>\n"
    "              <enumeratedValue><name>ON</name><value>1</value></enumeratedValue></enumeratedValues></field>\n"
    "            <field><name>FLAG</name><description>Flag</description><access>read-only</access><lsb>1</lsb><msb>1</msb></field>\n"
    "            <field><name>MODE</name><description>Mode &lt;2 bits&gt;</description><lsb>2</lsb><msb>3</msb></field>\n"
    "          </fields>\n"
    "        </register>\n"
    "        <register>\n"
    "          <name>S</name>\n"
    "          <description>Whole</description>\n"
    "          <addressOffset>0xC</addressOffset>\n"
    "          <size>16</size>\n"
    "        </register>\n"
    "      </registers>\n"
    "    </peripheral>\n"
    "    <peripheral><name>Q</name><baseAddress>0</baseAddress></peripheral>\n"
    "  </peripherals>\n"
    "</device>\n";

QString expected(bool tree, const QString &checksum)
{
    QStringList l;
    l << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
      << "<nvxmlcfg version=\"2.0.2\">"
      << "  <checksum>" + checksum + "</checksum>"
      << "  <version label=\"V2.0.1\"/>"
      << "  <svd file=\"mini.svd\"/>"
      << "  <disclaimer file=\"disclaimer.txt\"/>"
      << "  <tabcontainer label = \"Peripherals\" resize=\"1\">";
    if (tree)
        l << "    <treecontainer headerlabels=\"Structure;Settings;\" label=\"P\" desc=\"Timers &amp; &quot;counters&quot;\" columnwidths=\"50;600\">";
    else
        l << "    <gridcontainer columns=\"3\" label=\"P\" desc=\"Timers &amp; &quot;counters&quot;\">";
    l << "    <header file=\"P_defines.h\">";
    if (tree) {
        l << "        <branch label=\"R\">";
    } else {
        l << "        <groupcontainer label=\"R\" sizepolicy=\"fixed;fixed\">"
          << "        <verticalcontainer>";
    }
    l << "          <horizontalcontainer>"
      << "            <text label=\"Enable\" size=\"120;-1\" wordwrap=\"1\"/>"
      << "            <combo define=\"P.R.EN\" size=\"400;-1\" />"
      << "          </horizontalcontainer>"
      << "          <horizontalcontainer>"
      << "            <text label=\"Flag\" size=\"120;-1\" wordwrap=\"1\"/>"
      << "            <checkbox define=\"P.R.FLAG\" />"
      << "          </horizontalcontainer>"
      << "          <horizontalcontainer>"
      << "            <text label=\"Mode &lt;2 bits&gt;\" size=\"120;-1\" wordwrap=\"1\"/>"
      << "            <spinbox define=\"P.R.MODE\" />"
      << "          </horizontalcontainer>";
    if (tree) {
        l << "        </branch>";
    } else {
        l << "        </verticalcontainer>"
          << "        </groupcontainer>";
    }
    l << "          <horizontalcontainer>"
      << "            <text label=\"Whole\" size=\"120;-1\" wordwrap=\"1\"/>"
      << "            <spinbox define=\"P.S\" />"
      << "          </horizontalcontainer>"
      << "    </header>"
      << (tree ? "    </treecontainer>" : "    </gridcontainer>")
      << "  </tabcontainer>"
      << "</nvxmlcfg>";
    return l.join('\n') + '\n';
}

} // namespace

class TestXmlGenerator : public QObject
{
    Q_OBJECT

private slots:
    void exactText_data()
    {
        QTest::addColumn<bool>("tree");
        QTest::newRow("Tree") << true;
        QTest::newRow("Group") << false;
    }

    void exactText()
    {
        QFETCH(bool, tree);
        QTemporaryDir dir;
        const QString svd = dir.filePath("mini.svd");
        QVERIFY(writeTextFile(svd, kSvd));
        RecordingSink sink;
        XmlGenerator generator;
        QVERIFY(generator.generateXMLFromSVD(svd, tree));
        QCOMPARE(generator.outputPath(), dir.filePath("mini_Generated.xml"));
        const QByteArray text = readTextFile(generator.outputPath()).toUtf8();
        // Signed: the digest is the file's own.
        const QString digest = Checksum::digestOf(text);
        QCOMPARE(digest.size(), 64);
        QCOMPARE(QString::fromUtf8(text), expected(tree, digest));
        QVERIFY2(sink.errors.isEmpty(), qPrintable(sink.errors.join('\n')));
        // What it writes is a description of the format.
        QVERIFY2(SchemaCheck::checkXsd(generator.outputPath(), QuillonRun::sourceDir() + "/resources/runtime/QLN.xsd"),
                 qPrintable(sink.console.join('\n')));
    }

    void fillsModelAndPeripheralList()
    {
        QTemporaryDir dir;
        const QString svd = dir.filePath("mini.svd");
        QVERIFY(writeTextFile(svd, kSvd));
        RecordingSink sink;
        ModelDocument doc;
        auto *list = new FakeListElement(QStringLiteral("$PERIPHERALS$"), &doc.owner);
        doc.tables.elements.insert(QStringLiteral("$PERIPHERALS$"), list);
        XmlGenerator generator(&doc.model);
        QVERIFY(generator.generateXMLFromSVD(svd, true));
        QCOMPARE(doc.model.deviceName, QStringLiteral("MINI"));
        QCOMPARE(list->count(), 2);
        QCOMPARE(list->itemText(1), QStringLiteral("Q"));
        const Register *r = doc.reg("P", "R");
        QVERIFY(r);
        QCOMPARE(r->address, 0x40001008);
        QCOMPARE(r->size, 32);
        QCOMPARE(doc.reg("P", "S")->size, 16);
        const BitField *flag = r->findField("FLAG");
        QVERIFY(flag && flag->readOnly);
        const BitField *mode = r->findField("MODE");
        QCOMPARE(mode->lsb, 2);
        QCOMPARE(mode->msb, 3);
        QCOMPARE(r->findField("EN")->enumeratedValues.size(), 2);
        QCOMPARE(doc.model.findPeripheral("P")->description, QStringLiteral("Timers & \"counters\""));
    }

    void missingAndBrokenSvd()
    {
        QTemporaryDir dir;
        RecordingSink sink;
        XmlGenerator generator;
        QVERIFY(!generator.generateXMLFromSVD(dir.filePath("none.svd"), true));
        QVERIFY(sink.errors.join('\n').startsWith("Cannot open file " + dir.filePath("none.svd") + ":\n"));
        QVERIFY(!QFile::exists(dir.filePath("none_Generated.xml")));

        // Broken off inside the second register: what came is kept, unsigned.
        sink.clear();
        const QString broken = dir.filePath("broken.svd");
        QVERIFY(writeTextFile(broken, kSvd.left(kSvd.indexOf("<name>S</name>"))));
        QVERIFY(!generator.generateXMLFromSVD(broken, true));
        QVERIFY2(sink.errors.join('\n').startsWith("Cannot read file " + broken + ":\n"), qPrintable(sink.errors.join('\n')));
        QVERIFY(sink.errors.join('\n').contains("$xmlopen$"));
        const QString partial = readTextFile(dir.filePath("broken_Generated.xml"));
        QVERIFY(partial.contains("<combo define=\"P.R.MODE\"") || partial.contains("<spinbox define=\"P.R.MODE\""));
        QVERIFY(partial.contains(QStringLiteral("<checksum>0123456789abcdef")));
        QVERIFY(!partial.contains("</nvxmlcfg>"));

        // Not an SVD file at all.
        sink.clear();
        const QString other = dir.filePath("other.svd");
        QVERIFY(writeTextFile(other, "<nvxmlcfg/>"));
        QVERIFY(!generator.generateXMLFromSVD(other, false));
        QVERIFY(sink.errors.join('\n').contains("Warning"));
    }
};

QTEST_MAIN(TestXmlGenerator)
#include "tst_xmlgenerator.moc"
