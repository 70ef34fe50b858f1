// Completion of vendor SVD files: each construct outside the reader's subset
// on a small fragment, read back through the program's own SVD reader; the
// broken inputs; and one real vendor file end to end.

#include <QtTest>

#include <QDomDocument>
#include <QProcess>
#include <QTemporaryDir>

#include "model/BitField.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "support/ModelDocument.h"
#include "support/QuillonRun.h"
#include "support/RecordingSink.h"
#include "tooling/SvdCompleter.h"

namespace {

QByteArray device(const QString &peripherals, const QString &deviceProps = QStringLiteral("<size>32</size>"))
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<device schemaVersion=\"1.1\">"
                          "<name>D</name>%1<peripherals>%2</peripherals></device>\n")
        .arg(deviceProps, peripherals)
        .toUtf8();
}

QByteArray completed(const QByteArray &svd, SvdCompleter *completer = nullptr)
{
    SvdCompleter local;
    SvdCompleter &c = completer ? *completer : local;
    QByteArray out;
    if (!c.complete(svd, &out))
        return QByteArray("ERROR: ") + c.errorString().toUtf8();
    return out;
}

// Names of the registers of a peripheral in the completed model.
QStringList registerNames(const ModelDocument &doc, const QString &peripheral)
{
    const Peripheral *p = doc.model.findPeripheral(peripheral);
    if (!p)
        return {QStringLiteral("<no peripheral>")};
    QStringList names = p->registers.keys();
    names.sort();
    return names;
}

} // namespace

class TestSvdCompleter : public QObject
{
    Q_OBJECT

private slots:
    void constructs_data()
    {
        QTest::addColumn<QByteArray>("svd");
        QTest::addColumn<QString>("peripheral");
        QTest::addColumn<QStringList>("registers");
        // register -> "address size" checked for each listed register
        QTest::addColumn<QStringList>("places");
        // field -> "lsb msb"
        QTest::addColumn<QStringList>("fields");

        QTest::newRow("derived peripheral takes the base's registers, keeps its own address")
            << device(QStringLiteral("<peripheral><name>A</name><baseAddress>0x1000</baseAddress><registers>"
                                     "<register><name>CR</name><addressOffset>4</addressOffset></register></registers></peripheral>"
                                     "<peripheral derivedFrom=\"A\"><name>B</name><baseAddress>0x2000</baseAddress></peripheral>"))
            << "B" << QStringList{"CR"} << QStringList{"CR 8196 32"} << QStringList();
        QTest::newRow("derived register takes the base's fields")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
                                     "<register><name>R0</name><addressOffset>0</addressOffset><fields><field><name>F</name>"
                                     "<bitOffset>3</bitOffset><bitWidth>2</bitWidth></field></fields></register>"
                                     "<register derivedFrom=\"R0\"><name>R1</name><addressOffset>4</addressOffset></register>"
                                     "</registers></peripheral>"))
            << "P" << QStringList{"R0", "R1"} << QStringList{"R1 4 32"} << QStringList{"R1.F 3 4"};
        QTest::newRow("dim array of registers")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0x100</baseAddress><registers>"
                                     "<register><dim>3</dim><dimIncrement>0x8</dimIncrement><name>CH[%s]</name>"
                                     "<addressOffset>0x10</addressOffset></register></registers></peripheral>"))
            << "P" << QStringList{"CH0", "CH1", "CH2"} << QStringList{"CH0 272 32", "CH2 288 32"} << QStringList();
        QTest::newRow("dimIndex list and letter range")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
                                     "<register><dim>2</dim><dimIncrement>4</dimIncrement><dimIndex>LO,HI</dimIndex>"
                                     "<name>W%s</name><addressOffset>0</addressOffset></register>"
                                     "<register><dim>3</dim><dimIncrement>4</dimIncrement><dimIndex>A-C</dimIndex>"
                                     "<name>X%s</name><addressOffset>0x20</addressOffset></register></registers></peripheral>"))
            << "P" << QStringList{"WHI", "WLO", "XA", "XB", "XC"} << QStringList{"WHI 4 32", "XC 40 32"} << QStringList();
        QTest::newRow("cluster, arrayed and nested")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0x1000</baseAddress><registers>"
                                     "<cluster><dim>2</dim><dimIncrement>0x20</dimIncrement><name>CH[%s]</name>"
                                     "<addressOffset>0x100</addressOffset>"
                                     "<register><name>CFG</name><addressOffset>4</addressOffset></register>"
                                     "<cluster><name>SUB</name><addressOffset>0x10</addressOffset>"
                                     "<register><name>VAL</name><addressOffset>2</addressOffset><size>16</size></register>"
                                     "</cluster></cluster></registers></peripheral>"))
            << "P" << QStringList{"CH0_CFG", "CH0_SUB_VAL", "CH1_CFG", "CH1_SUB_VAL"}
            << QStringList{"CH0_CFG 4356 32", "CH1_CFG 4388 32", "CH1_SUB_VAL 4402 16"} << QStringList();
        QTest::newRow("size inherited from device and peripheral")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><size>16</size><registers>"
                                     "<register><name>R</name><addressOffset>0</addressOffset></register>"
                                     "<register><name>S</name><addressOffset>2</addressOffset><size>0x8</size></register>"
                                     "</registers></peripheral>"
                                     "<peripheral><name>Q</name><baseAddress>0</baseAddress><registers>"
                                     "<register><name>T</name><addressOffset>0</addressOffset></register></registers></peripheral>"),
                      QStringLiteral("<size>0x20</size>"))
            << "P" << QStringList{"R", "S"} << QStringList{"R 0 16", "S 2 8"} << QStringList();
        QTest::newRow("bitOffset with and without bitWidth")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
                                     "<register><name>R</name><addressOffset>0</addressOffset><fields>"
                                     "<field><name>A</name><bitOffset>0</bitOffset><bitWidth>4</bitWidth></field>"
                                     "<field><name>B</name><bitOffset>31</bitOffset></field>"
                                     "</fields></register></registers></peripheral>"))
            << "P" << QStringList{"R"} << QStringList{"R 0 32"} << QStringList{"R.A 0 3", "R.B 31 31"};
        QTest::newRow("bitRange")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
                                     "<register><name>R</name><addressOffset>0</addressOffset><fields>"
                                     "<field><name>M</name><bitRange>[15:8]</bitRange></field>"
                                     "</fields></register></registers></peripheral>"))
            << "P" << QStringList{"R"} << QStringList{"R 0 32"} << QStringList{"R.M 8 15"};
        QTest::newRow("name last, as some vendors write it")
            << device(QStringLiteral("<peripheral><baseAddress>0x40</baseAddress><registers>"
                                     "<register><addressOffset>0x4</addressOffset><fields>"
                                     "<field><bitRange>[3:1]</bitRange><name>F</name></field></fields><name>R</name></register>"
                                     "</registers><name>P</name></peripheral>"))
            << "P" << QStringList{"R"} << QStringList{"R 68 32"} << QStringList{"R.F 1 3"};
        QTest::newRow("dim array of fields")
            << device(QStringLiteral("<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
                                     "<register><name>R</name><addressOffset>0</addressOffset><fields>"
                                     "<field><dim>4</dim><dimIncrement>2</dimIncrement><name>PIN%s</name>"
                                     "<bitOffset>1</bitOffset><bitWidth>2</bitWidth></field>"
                                     "</fields></register></registers></peripheral>"))
            << "P" << QStringList{"R"} << QStringList() << QStringList{"R.PIN0 1 2", "R.PIN3 7 8"};
    }

    void constructs()
    {
        QFETCH(QByteArray, svd);
        QFETCH(QString, peripheral);
        QFETCH(QStringList, registers);
        QFETCH(QStringList, places);
        QFETCH(QStringList, fields);

        const QByteArray out = completed(svd);
        QVERIFY2(!out.startsWith("ERROR"), out.constData());
        // Nothing outside the reader's subset is left.
        for (const char *gone : {"derivedFrom", "<dim>", "<cluster>", "bitOffset", "bitRange", "bitWidth", "%s"})
            QVERIFY2(!out.contains(gone), gone);
        RecordingSink sink;
        ModelDocument doc;
        QVERIFY2(doc.read(out), qPrintable(doc.readError));
        QCOMPARE(registerNames(doc, peripheral), registers);
        for (const QString &place : places) {
            const QStringList p = place.split(' ');
            const Register *reg = doc.reg(peripheral, p[0]);
            QVERIFY2(reg, qPrintable(p[0]));
            QCOMPARE(reg->address, p[1].toInt());
            QCOMPARE(reg->size, p[2].toInt());
        }
        for (const QString &f : fields) {
            const QStringList p = f.split(' ');
            const Register *reg = doc.reg(peripheral, p[0].section('.', 0, 0));
            QVERIFY(reg);
            const BitField *field = reg->findField(p[0].section('.', 1));
            QVERIFY2(field, qPrintable(p[0]));
            QCOMPARE(field->lsb, p[1].toInt());
            QCOMPARE(field->msb, p[2].toInt());
            QCOMPARE(field->width, p[2].toInt() - p[1].toInt() + 1);
        }
        QVERIFY2(sink.errors.isEmpty(), qPrintable(sink.errors.join('\n')));
    }

    void enumerationsAreDerivedAndDefaultsDropped()
    {
        const QByteArray svd = device(QStringLiteral(
            "<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
            "<register><name>R</name><addressOffset>0</addressOffset><fields>"
            "<field><name>A</name><lsb>0</lsb><msb>1</msb><enumeratedValues><name>MODE</name>"
            "<enumeratedValue><name>OFF</name><value>0</value></enumeratedValue>"
            "<enumeratedValue><name>ON</name><value>#01</value></enumeratedValue>"
            "<enumeratedValue><name>OTHER</name><isDefault>true</isDefault></enumeratedValue>"
            "</enumeratedValues></field>"
            "<field><name>B</name><lsb>2</lsb><msb>3</msb><enumeratedValues derivedFrom=\"P.R.A.MODE\"/></field>"
            "</fields></register></registers></peripheral>"));
        const QByteArray out = completed(svd);
        ModelDocument doc;
        QVERIFY2(doc.read(out), qPrintable(doc.readError + out));
        const BitField *b = doc.reg("P", "R")->findField("B");
        QVERIFY(b);
        QCOMPARE(b->enumeratedValues.size(), 2);
        QCOMPARE(b->enumeratedValues.at(1).name, QStringLiteral("ON"));
        QCOMPARE(b->enumeratedValues.at(1).value, 1);
        QVERIFY(!out.contains("isDefault"));
    }

    void valuesSharedByReadAndWriteListsComeOnce()
    {
        const QByteArray svd = device(QStringLiteral(
            "<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
            "<register><name>R</name><addressOffset>0</addressOffset><fields>"
            "<field><name>A</name><lsb>0</lsb><msb>0</msb>"
            "<enumeratedValues><usage>read</usage>"
            "<enumeratedValue><name>Disabled</name><value>0</value></enumeratedValue>"
            "<enumeratedValue><name>Enabled</name><value>1</value></enumeratedValue></enumeratedValues>"
            "<enumeratedValues><usage>write</usage>"
            "<enumeratedValue><name>Set</name><value>0x1</value></enumeratedValue></enumeratedValues>"
            "</field></fields></register></registers></peripheral>"));
        ModelDocument doc;
        QVERIFY(doc.read(completed(svd)));
        const BitField *a = doc.reg("P", "R")->findField("A");
        QCOMPARE(a->enumeratedValues.size(), 2);
        QCOMPARE(a->enumeratedValues.at(1).name, QStringLiteral("Enabled"));
    }

    void derivedRegisterOverridesBase()
    {
        const QByteArray svd = device(QStringLiteral(
            "<peripheral><name>P</name><baseAddress>0</baseAddress><registers>"
            "<register><name>R0</name><addressOffset>0</addressOffset><size>16</size><description>base</description></register>"
            "<register derivedFrom=\"P.R0\"><name>R1</name><addressOffset>8</addressOffset><description>own</description></register>"
            "</registers></peripheral>"));
        ModelDocument doc;
        QVERIFY(doc.read(completed(svd)));
        const Register *r1 = doc.reg("P", "R1");
        QCOMPARE(r1->description, QStringLiteral("own"));
        QCOMPARE(r1->size, 16);
        QCOMPARE(r1->address, 8);
    }

    void brokenInput_data()
    {
        QTest::addColumn<QByteArray>("svd");
        QTest::addColumn<QString>("message");
        QTest::newRow("not XML") << QByteArray("this is not <xml") << "Not a readable XML file";
        QTest::newRow("empty") << QByteArray() << "Not a readable XML file";
        QTest::newRow("not a device") << QByteArray("<nvxmlcfg/>") << "not <device>";
        QTest::newRow("no peripherals") << device(QString()) << "describes no peripherals";
        QTest::newRow("derivedFrom names nothing")
            << device(QStringLiteral("<peripheral derivedFrom=\"NONE\"><name>B</name></peripheral>"))
            << "Peripheral B is derived from NONE, which the file does not define";
        QTest::newRow("peripheral cycle")
            << device(QStringLiteral("<peripheral derivedFrom=\"B\"><name>A</name></peripheral>"
                                     "<peripheral derivedFrom=\"A\"><name>B</name></peripheral>"))
            << "is derived from itself";
        QTest::newRow("register cycle")
            << device(QStringLiteral("<peripheral><name>P</name><registers>"
                                     "<register derivedFrom=\"R1\"><name>R0</name></register>"
                                     "<register derivedFrom=\"R0\"><name>R1</name></register></registers></peripheral>"))
            << "is derived from itself";
        QTest::newRow("register derived from nothing")
            << device(QStringLiteral("<peripheral><name>P</name><registers>"
                                     "<register derivedFrom=\"Q.X\"><name>R0</name></register></registers></peripheral>"))
            << "register P.R0 is derived from Q.X, which the file does not define";
        QTest::newRow("field cycle")
            << device(QStringLiteral("<peripheral><name>P</name><registers><register><name>R</name><fields>"
                                     "<field derivedFrom=\"G\"><name>F</name></field>"
                                     "<field derivedFrom=\"F\"><name>G</name></field></fields></register></registers></peripheral>"))
            << "is derived from itself";
        QTest::newRow("dim of 0")
            << device(QStringLiteral("<peripheral><name>P</name><registers><register><dim>0</dim><name>R%s</name></register>"
                                     "</registers></peripheral>"))
            << "dim 0 of R%s is out of range";
        QTest::newRow("dim of 100,000")
            << device(QStringLiteral("<peripheral><name>P</name><registers><register><dim>100000</dim><dimIncrement>4</dimIncrement>"
                                     "<name>R%s</name></register></registers></peripheral>"))
            << "dim 100000 of R%s is out of range";
        QTest::newRow("dim not a number")
            << device(QStringLiteral("<peripheral><name>P</name><registers><register><dim>many</dim><name>R%s</name></register>"
                                     "</registers></peripheral>"))
            << "dim \"many\" of R%s is not a number";
    }

    void brokenInput()
    {
        QFETCH(QByteArray, svd);
        QFETCH(QString, message);
        SvdCompleter completer;
        QByteArray out("untouched");
        QVERIFY(!completer.complete(svd, &out));
        QVERIFY2(completer.errorString().contains(message), qPrintable(completer.errorString()));
    }

    void fieldWithoutPositionIsLeftOutWithWarning()
    {
        SvdCompleter completer;
        const QByteArray out = completed(device(QStringLiteral(
            "<peripheral><name>P</name><registers><register><name>R</name><fields>"
            "<field><name>F</name></field><field><name>G</name><lsb>0</lsb><msb>0</msb></field>"
            "</fields></register></registers></peripheral>")), &completer);
        QVERIFY(!out.contains("<name>F</name>"));
        QVERIFY(out.contains("<name>G</name>"));
        QCOMPARE(completer.warnings().size(), 1);
        QVERIFY(completer.warnings().first().contains("P.R.F"));
    }

    void filesAndNeedsCompletion()
    {
        QTemporaryDir dir;
        const QString plain = dir.filePath("plain.svd");
        const QString vendor = dir.filePath("vendor.svd");
        QVERIFY(writeTextFile(plain, device(QStringLiteral(
            "<peripheral><name>P</name><registers><register><name>R</name><size>32</size><fields>"
            "<field><name>F</name><lsb>0</lsb><msb>0</msb></field></fields></register></registers></peripheral>"))));
        QVERIFY(writeTextFile(vendor, device(QStringLiteral(
            "<peripheral><name>P</name><registers><register><name>R</name><fields>"
            "<field><name>F</name><bitOffset>0</bitOffset></field></fields></register></registers></peripheral>"))));
        QVERIFY(!SvdCompleter::needsCompletion(plain));
        QVERIFY(SvdCompleter::needsCompletion(vendor));
        // The inherited size alone is reason enough.
        const QString noSize = dir.filePath("nosize.svd");
        QVERIFY(writeTextFile(noSize, device(QStringLiteral("<peripheral><name>P</name><registers><register><name>R</name>"
                                                            "</register></registers></peripheral>"))));
        QVERIFY(SvdCompleter::needsCompletion(noSize));

        SvdCompleter completer;
        const QString out = SvdCompleter::defaultOutputPath(vendor);
        QCOMPARE(QFileInfo(out).fileName(), QStringLiteral("vendor_completed.svd"));
        QVERIFY(completer.completeFile(vendor, out));
        QVERIFY(!SvdCompleter::needsCompletion(out));
        // A missing input writes nothing and says which file.
        QVERIFY(!completer.completeFile(dir.filePath("missing.svd"), dir.filePath("x.svd")));
        QVERIFY(completer.errorString().startsWith("Cannot open file " + dir.filePath("missing.svd")));
        QVERIFY(!QFile::exists(dir.filePath("x.svd")));
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<qint64>("value");
        QTest::newRow("decimal") << "42" << true << qint64(42);
        QTest::newRow("hex") << "0x1F" << true << qint64(31);
        QTest::newRow("hex upper prefix") << "0X10" << true << qint64(16);
        QTest::newRow("binary hash") << "#101" << true << qint64(5);
        QTest::newRow("binary 0b") << "0b11" << true << qint64(3);
        QTest::newRow("kilo") << "4k" << true << qint64(4096);
        QTest::newRow("text") << "abc" << false << qint64(0);
        QTest::newRow("empty") << "" << false << qint64(0);
    }

    void numbers()
    {
        QFETCH(QString, text);
        QFETCH(bool, ok);
        QFETCH(qint64, value);
        qint64 v = 0;
        QCOMPARE(SvdCompleter::parseNumber(text, &v), ok);
        if (ok)
            QCOMPARE(v, value);
    }

    // A real vendor file: every register and field of the original is in
    // the model the reader builds from the completed copy, at the position
    // the original gives.
    void vendorFileEndToEnd()
    {
        const QString source = QuillonRun::sourceDir() + "/tests/data/svd/ARM_SAMPLE_ARM_Sample.svd";
        QFile file(source);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray original = file.readAll();
        const QByteArray out = completed(original);
        QVERIFY2(!out.startsWith("ERROR"), out.constData());
        RecordingSink sink;
        ModelDocument doc;
        QVERIFY2(doc.read(out), qPrintable(doc.readError));

        // The original, walked as a tree: derived peripherals use their
        // base's registers; fields are placed by bitRange or bitOffset.
        QDomDocument dom;
        QVERIFY(dom.setContent(original));
        QHash<QString, QDomElement> byName;
        const QDomElement peripherals = dom.documentElement().firstChildElement("peripherals");
        for (QDomElement p = peripherals.firstChildElement("peripheral"); !p.isNull(); p = p.nextSiblingElement("peripheral"))
            byName.insert(p.firstChildElement("name").text().trimmed(), p);
        int registers = 0, fields = 0;
        for (auto it = byName.cbegin(); it != byName.cend(); ++it) {
            QDomElement source = it.value();
            if (source.hasAttribute("derivedFrom"))
                source = byName.value(source.attribute("derivedFrom"));
            const QDomElement regs = source.firstChildElement("registers");
            for (QDomElement r = regs.firstChildElement("register"); !r.isNull(); r = r.nextSiblingElement("register")) {
                QStringList names{r.firstChildElement("name").text().trimmed()};
                if (!r.firstChildElement("dim").isNull()) {
                    names.clear();
                    const int dim = r.firstChildElement("dim").text().toInt();
                    for (int i = 0; i < dim; ++i)
                        names << QString(r.firstChildElement("name").text().trimmed()).replace("[%s]", QString::number(i));
                }
                for (const QString &name : names) {
                    const Register *reg = doc.reg(it.key(), name);
                    QVERIFY2(reg, qPrintable(it.key() + "." + name));
                    QVERIFY2(reg->size > 0, qPrintable(name));
                    ++registers;
                    const QDomElement fs = r.firstChildElement("fields");
                    for (QDomElement f = fs.firstChildElement("field"); !f.isNull(); f = f.nextSiblingElement("field")) {
                        const BitField *field = reg->findField(f.firstChildElement("name").text().trimmed());
                        QVERIFY(field);
                        const QString range = f.firstChildElement("bitRange").text().trimmed();
                        if (!range.isEmpty()) {
                            const QStringList mL = range.mid(1, range.size() - 2).split(':');
                            QCOMPARE(field->msb, mL[0].toInt());
                            QCOMPARE(field->lsb, mL[1].toInt());
                        }
                        ++fields;
                    }
                }
            }
        }
        QVERIFY(registers > 10);
        QVERIFY(fields > 10);
        QVERIFY2(sink.errors.isEmpty(), qPrintable(sink.errors.join('\n')));
    }

    void commandLineTool()
    {
        const QString tool = QFileInfo(QuillonRun::binary()).absolutePath() + "/quillon-svd-complete";
        QTemporaryDir dir;
        QProcess help;
        help.start(tool, {"--help"});
        QVERIFY(help.waitForFinished(30000));
        QCOMPARE(help.exitCode(), 0);
        QVERIFY(help.readAllStandardOutput().contains("Usage: quillon-svd-complete"));

        const QString out = dir.filePath("arm.svd");
        QProcess run;
        run.start(tool, {QuillonRun::sourceDir() + "/tests/data/svd/ARM_SAMPLE_ARM_Sample.svd", out});
        QVERIFY(run.waitForFinished(30000));
        QCOMPARE(run.exitCode(), 0);
        QVERIFY(QFileInfo(out).size() > 0);

        QProcess bad;
        bad.start(tool, {dir.filePath("missing.svd"), out});
        QVERIFY(bad.waitForFinished(30000));
        QCOMPARE(bad.exitCode(), 1);
        QVERIFY(bad.readAllStandardError().contains("Cannot open file"));

        QProcess usage;
        usage.start(tool, QStringList());
        QVERIFY(usage.waitForFinished(30000));
        QCOMPARE(usage.exitCode(), 2);
    }

    // The example's SVD in the source tree is what the tool makes of
    // Nordic's file (the build makes it afresh beside the program).
    void exampleCopyIsCurrent()
    {
        const QString folder = QuillonRun::sourceDir() + "/examples/nrf52840/";
        QFile vendor(folder + "Nordic_nrf52840.svd");
        QFile checkedIn(folder + "nrf52840_completed.svd");
        QVERIFY(vendor.open(QIODevice::ReadOnly));
        QVERIFY(checkedIn.open(QIODevice::ReadOnly));
        QVERIFY2(completed(vendor.readAll()) == checkedIn.readAll(),
                 "examples/nrf52840/nrf52840_completed.svd is stale: run quillon-svd-complete on Nordic_nrf52840.svd");
    }
};

QTEST_MAIN(TestSvdCompleter)
#include "tst_svdcompleter.moc"
