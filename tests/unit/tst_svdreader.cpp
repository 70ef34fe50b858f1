// The SVD reader: what each element of the file does to the model, the
// joining of field claims, the list items, the binding of data values, and
// files that are broken or absurd.

#include <QtTest>

#include <sys/stat.h>

#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "model/BitField.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "support/FakeElement.h"
#include "support/FakeListElement.h"
#include "support/ModelDocument.h"
#include "support/RecordingSink.h"

namespace {

const QString kAlreadyAssigned = QStringLiteral("Tried to assign a GUI element to already assigned bits: %1\nMSB: %2 LSB: %3");
const QString kOutOfSize = QStringLiteral("Out of size error while reading svd file: %1.%2.%3 Size=%4");
const QString kNotFound = QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>Not found in svd file: %1<br>");

QByteArray deviceXml(const QString &peripherals)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                          "<device schemaVersion=\"1.1\">\n<name>TestDevice</name>\n"
                          "<peripherals>\n%1\n</peripherals>\n</device>\n")
        .arg(peripherals)
        .toUtf8();
}

QString peripheralXml(const QString &name, const QString &body)
{
    return QStringLiteral("<peripheral><name>%1</name>%2</peripheral>").arg(name, body);
}

QString registersXml(const QString &registers)
{
    return QStringLiteral("<registers>%1</registers>").arg(registers);
}

QString registerXml(const QString &name, const QString &body)
{
    return QStringLiteral("<register><name>%1</name>%2</register>").arg(name, body);
}

QString fieldXml(const QString &name, const QString &lsb, const QString &msb, const QString &body = QString())
{
    return QStringLiteral("<field><name>%1</name><lsb>%2</lsb><msb>%3</msb>%4</field>").arg(name, lsb, msb, body);
}

QString valueXml(const QString &name, const QString &value, const QString &description = QString())
{
    return QStringLiteral("<enumeratedValue><name>%1</name><description>%3</description><value>%2</value></enumeratedValue>")
        .arg(name, value, description);
}

// P.R with the given register children, the most common shape below.
QByteArray oneRegister(const QString &body)
{
    return deviceXml(peripheralXml("P", registersXml(registerXml("R", body))));
}

// Position text that follows the stream's own error text.
QString positionText(const QString &file, qint64 line, qint64 column)
{
    QString target = file;
    target.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
    return QStringLiteral("<b><a href=\"$xmlopen$%1$-n%2$-c%3\">file</a> line %2, column %3</b><b><br>")
        .arg(target)
        .arg(line)
        .arg(column);
}

// Where and why a plain tokenising pass over the file stops, independent of
// the model reader. The file is read as text, as the program does: with
// CRLF files that moves the column of an error at a line's end.
struct StreamError {
    QString text;
    qint64 line = 0;
    qint64 column = 0;
};

StreamError plainPassError(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QXmlStreamReader xml(&file);
    while (!xml.atEnd())
        xml.readNext();
    return {xml.errorString(), xml.lineNumber(), xml.columnNumber()};
}

QString sourceFile(const QString &name)
{
    return QStringLiteral(QUILLON_SOURCE_DIR "/tests/data/svd/") + name;
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QStringList itemNames(const QMap<int, EnumeratedItem> &items)
{
    QStringList names;
    for (const EnumeratedItem &item : items)
        names.append(QStringLiteral("%1=%2").arg(item.value).arg(item.name));
    return names;
}

} // namespace

class TestSvdReader : public QObject
{
    Q_OBJECT

private slots:
    void registerSize_data()
    {
        QTest::addColumn<QStringList>("defines");
        QTest::addColumn<qlonglong>("maximum");   // of the first element
        QTest::addColumn<QString>("sizeText");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("error");

        const QString refused = kOutOfSize.arg("P", "R", "");
        QTest::newRow("size 8 with bit 8 claimed") << QStringList{"P.R[8]"} << 1ll << "8" << 0 << refused.arg(8);
        QTest::newRow("size 9 with bit 8 claimed") << QStringList{"P.R[8]"} << 1ll << "9" << 9 << QString();
        QTest::newRow("hex size of an unclaimed register") << QStringList{} << 1ll << "0x20" << 0 << QString();
        QTest::newRow("decimal size of an unclaimed register") << QStringList{} << 1ll << "32" << 32 << QString();
        QTest::newRow("hex size of a claimed register") << QStringList{"P.R[3:0]"} << 1ll << "0x20" << 0 << refused.arg(0);
        QTest::newRow("hex size with bit 0 claimed") << QStringList{"P.R[0]"} << 1ll << "0x20" << 0 << refused.arg(0);
        QTest::newRow("refused claim raised the highest bit")
            << QStringList{"P.R[3:0]", "P.R[9:2]"} << 1ll << "9" << 0 << refused.arg(9);
        QTest::newRow("whole register that fits") << QStringList{"P.R"} << 255ll << "8" << 8 << QString();
        QTest::newRow("whole register too wide") << QStringList{"P.R"} << 511ll << "8" << 0 << refused.arg(8);
        QTest::newRow("whole register with a hex size") << QStringList{"P.R"} << 1ll << "0x20" << 0 << refused.arg(0);
        QTest::newRow("whole register of a register with fields")
            << QStringList{"P.R", "P.R.F"} << 511ll << "8" << 8 << QString();
        QTest::newRow("junk size") << QStringList{} << 1ll << "eight" << 0 << QString();
    }

    void registerSize()
    {
        QFETCH(QStringList, defines);
        QFETCH(qlonglong, maximum);
        QFETCH(QString, sizeText);
        QFETCH(QString, error);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *first = nullptr;
        for (const QString &define : defines) {
            FakeElement *e = doc.element(define, first ? 1 : maximum);
            doc.model.claimDefine(define, "a.h", e, true);
            if (!first)
                first = e;
        }
        sink.clear();

        QVERIFY(doc.read(oneRegister(QStringLiteral("<size>%1</size>").arg(sizeText))));
        QCOMPARE(sink.errors, error.isEmpty() ? QStringList() : QStringList{error});
        QTEST(doc.reg("P", "R")->size, "size");
    }

    void fieldWidth_data()
    {
        QTest::addColumn<QString>("lsb");
        QTest::addColumn<QString>("msb");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("absoluteBit");

        QTest::newRow("width 3 holds bit 3") << "0" << "2" << QString() << 3 << 3;
        QTest::newRow("width 2 refused") << "4" << "5" << kOutOfSize.arg("P", "R", "F").arg(2) << 0 << 7;
        QTest::newRow("width 4") << "4" << "7" << QString() << 4 << 7;
        QTest::newRow("hex lsb reads as 0") << "0x4" << "7" << QString() << 8 << 3;
    }

    void fieldWidth()
    {
        QFETCH(QString, error);
        QFETCH(int, absoluteBit);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.claim("P.R.F[3]");
        QFETCH(QString, lsb);
        QFETCH(QString, msb);
        QVERIFY(doc.read(oneRegister(QStringLiteral("<size>32</size><fields>%1</fields>").arg(fieldXml("F", lsb, msb)))));

        QCOMPARE(sink.errors, error.isEmpty() ? QStringList() : QStringList{error});
        Register *reg = doc.reg("P", "R");
        QTEST(reg->findField("F")->width, "width");
        // Joined in either case, at register bits.
        QCOMPARE(e->QObject::property("msb").toInt(), absoluteBit);
        QCOMPARE(e->QObject::property("lsb").toInt(), absoluteBit);
        QCOMPARE(reg->claims.value(quint64(1) << absoluteBit), static_cast<ActiveElement *>(e));
        QVERIFY(reg->findField("F")->claims.isEmpty());
    }

    void fieldClaimsJoinTheRegister()
    {
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *part = doc.claim("P.R.F[3:2]");
        FakeElement *whole = doc.claim("P.R.G");
        FakeElement *direct = doc.claim("P.R[12]");
        FakeElement *clash = doc.claim("P.R.H[0]");
        QVERIFY(sink.errors.isEmpty());

        const QString fields = fieldXml("F", "4", "7") + fieldXml("G", "8", "11") + fieldXml("H", "12", "13");
        QVERIFY(doc.read(oneRegister(QStringLiteral("<size>32</size><fields>%1</fields>").arg(fields))));

        QCOMPARE(sink.errors, QStringList{kAlreadyAssigned.arg("P.R.H[0]").arg(12).arg(12)});
        Register *reg = doc.reg("P", "R");
        QCOMPARE(part->QObject::property("msb").toInt(), 7);
        QCOMPARE(part->QObject::property("lsb").toInt(), 6);
        QCOMPARE(whole->QObject::property("msb").toInt(), 11);
        QCOMPARE(whole->QObject::property("lsb").toInt(), 8);
        QCOMPARE(reg->claims.value(0xC0), static_cast<ActiveElement *>(part));
        QCOMPARE(reg->claims.value(0xF00), static_cast<ActiveElement *>(whole));
        QCOMPARE(reg->claims.value(0x1000), static_cast<ActiveElement *>(direct));
        QVERIFY(!reg->claims.values().contains(clash));
        QCOMPARE(reg->claimedBits, quint64(0x1FC0));
        QCOMPARE(reg->highestBit, 12);
        // The register asks the element about its absolute range once more.
        QCOMPARE(part->setBitsCalls, 2);

        // The claims moved: the same fields met again claim nothing twice. (The
        // width test now compares with the absolute msb and may complain; that
        // is not a claim.)
        sink.clear();
        QVERIFY(doc.read(oneRegister(QStringLiteral("<fields>%1</fields>").arg(fields))));
        for (const QString &error : qAsConst(sink.errors))
            QVERIFY2(!error.startsWith("Tried to assign"), qPrintable(error));
        QCOMPARE(part->QObject::property("msb").toInt(), 7);
    }

    void numbers_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("offset");
        QTest::addColumn<QString>("reset");
        QTest::addColumn<int>("address");
        QTest::addColumn<int>("resetValue");

        QTest::newRow("hex") << "0x40000000" << "0x10" << "0x0" << 0x40000010 << 0;
        QTest::newRow("decimal") << "1073741824" << "16" << "7" << 1073741840 << 7;
        QTest::newRow("upper half base is 0") << "0x80000000" << "0x4" << "0" << 4 << 0;
        QTest::newRow("all ones base is 0") << "0xFFFFFFFF" << "0x8" << "0" << 8 << 0;
        QTest::newRow("svd binary reset") << "0" << "0" << "#101" << 0 << 5;
        QTest::newRow("don't-care bits") << "0" << "0" << "#1xx" << 0 << 0;
        QTest::newRow("upper half reset is 0") << "0" << "0" << "0x80000000" << 0 << 0;
        QTest::newRow("largest reset") << "0" << "0" << "0x7FFFFFFF" << 0 << 0x7FFFFFFF;
        QTest::newRow("parenthesised hex") << "0" << "0" << "(0x10u)" << 0 << 16;
        QTest::newRow("decimal with suffix") << "0" << "0" << "5u" << 0 << 0;
        QTest::newRow("0b form") << "0" << "0" << "0b11" << 0 << 3;
        QTest::newRow("negative") << "0" << "0" << "-1" << 0 << -1;
        QTest::newRow("floating") << "0" << "0" << "1.5" << 0 << 0;
        QTest::newRow("junk offset") << "0x100" << "junk" << "0" << 0x100 << 0;
    }

    void numbers()
    {
        QFETCH(QString, base);
        QFETCH(QString, offset);
        QFETCH(QString, reset);

        RecordingSink sink;
        ModelDocument doc;
        const QString body = QStringLiteral("<baseAddress>%1</baseAddress>").arg(base)
            + registersXml(registerXml("R", QStringLiteral("<addressOffset>%1</addressOffset><resetValue>%2</resetValue>")
                                                .arg(offset, reset)));
        QVERIFY(doc.read(deviceXml(peripheralXml("P", body))));
        QVERIFY(sink.errors.isEmpty());
        QTEST(doc.reg("P", "R")->address, "address");
        QTEST(doc.reg("P", "R")->resetValue, "resetValue");
    }

    void baseAddressAppliesToLaterRegistersOnly()
    {
        ModelDocument doc;
        const QString p = peripheralXml("P", registersXml(registerXml("R", "<addressOffset>0x10</addressOffset>"))
                                                 + "<baseAddress>0x40000000</baseAddress>"
                                                 + registersXml(registerXml("S", "<addressOffset>0x10</addressOffset>")));
        const QString q = peripheralXml("Q", registersXml(registerXml("T", "<addressOffset>0x4</addressOffset>")));
        QVERIFY(doc.read(deviceXml(p + q)));
        // Without a base so far the reader's -1 is the base.
        QCOMPARE(doc.reg("P", "R")->address, 0x10 - 1);
        QCOMPARE(doc.reg("P", "S")->address, 0x40000010);
        // The base is the peripheral's own.
        QCOMPARE(doc.reg("Q", "T")->address, 0x4 - 1);
    }

    void unknownElementsAreSkipped()
    {
        const QByteArray svd = R"(<?xml version="1.0"?>
    <device schemaVersion="1.1">
      <vendor>V</vendor>
      <cpu><name>CM4</name></cpu>
      <name>DEV</name>
      <peripherals>
        <notaperipheral><name>BOGUS</name></notaperipheral>
        <peripheral derivedFrom="X">
          <name>P</name>
          <interrupt><name>IRQ</name><value>3</value></interrupt>
          <addressBlock><offset>0</offset><size>0x400</size></addressBlock>
          <baseAddress>0x40001000</baseAddress>
          <registers>
            <cluster><name>CL</name><register><name>INNER</name><addressOffset>0</addressOffset></register></cluster>
            <register>
              <dim>4</dim><dimIncrement>4</dimIncrement>
              <name>R</name>
              <access>read-only</access>
              <addressOffset>0x8</addressOffset>
              <size>32</size>
              <writeConstraint><range><minimum>0</minimum><maximum>3</maximum></range></writeConstraint>
              <fields>
                <field><name>POS</name><bitOffset>4</bitOffset><bitWidth>2</bitWidth></field>
                <field><name>RANGE</name><bitRange>[7:6]</bitRange></field>
                <field><name>RO</name><access>Read-Only</access><lsb>8</lsb><msb>9</msb></field>
                <field><name>RW</name><access>read-write</access><lsb>10</lsb><msb>10</msb></field>
                <notafield><name>NF</name><lsb>1</lsb><msb>1</msb></notafield>
              </fields>
            </register>
          </registers>
        </peripheral>
      </peripherals>
      <vendorExtensions><peripheral><name>EXT</name></peripheral></vendorExtensions>
    </device>
    )";
        RecordingSink sink;
        ModelDocument doc;
        QVERIFY(doc.read(svd));
        QVERIFY(sink.errors.isEmpty());
        QCOMPARE(doc.model.deviceName, QStringLiteral("DEV"));
        QCOMPARE(doc.model.peripherals().keys(), QStringList{"P"});
        Peripheral *p = doc.model.findPeripheral("P");
        QCOMPARE(p->registers.keys(), QStringList{"R"});
        Register *r = p->findRegister("R");
        QCOMPARE(r->address, 0x40001008);
        QCOMPARE(r->size, 32);
        QStringList fieldNames = r->fields.keys();
        fieldNames.sort();
        QCOMPARE(fieldNames, (QStringList{"POS", "RANGE", "RO", "RW"}));
        // Positions come only from lsb and msb.
        for (const char *name : {"POS", "RANGE"}) {
            QCOMPARE(r->findField(name)->width, 0);
            QCOMPARE(r->findField(name)->msb, 0);
            QCOMPARE(r->findField(name)->lsb, 0);
        }
        QVERIFY(r->findField("RO")->readOnly);
        QCOMPARE(r->findField("RO")->width, 2);
        QCOMPARE(r->findField("RO")->lsb, 8);
        QCOMPARE(r->findField("RO")->msb, 9);
        QVERIFY(!r->findField("RW")->readOnly);
    }

    void fieldsBeforeTheRegisterName()
    {
        RecordingSink sink;
        ModelDocument doc;
        const QString reg = QStringLiteral("<register><fields>%1</fields><name>R</name><addressOffset>4</addressOffset></register>")
                                .arg(fieldXml("F", "0", "3"));
        QVERIFY(doc.read(deviceXml(peripheralXml("P", "<baseAddress>0</baseAddress>" + registersXml(reg)))));
        QVERIFY(doc.reg("P", "R"));
        QVERIFY(doc.reg("P", "R")->fields.isEmpty());
        QCOMPARE(doc.reg("P", "R")->address, 4);
    }

    void registersByAddress()
    {
        ModelDocument doc;
        doc.claim("P.EXTRA[0]");
        const QString regs = registerXml("C", "<addressOffset>0x8</addressOffset>")
            + registerXml("A", "<addressOffset>0x0</addressOffset>")
            + registerXml("B", "<addressOffset>0x4</addressOffset>");
        QVERIFY(doc.read(deviceXml(peripheralXml("P", "<baseAddress>0x1000</baseAddress>" + registersXml(regs)))));
        QStringList order;
        for (const Register *r : doc.model.findPeripheral("P")->registersByAddress())
            order.append(r->name);
        QCOMPARE(order, (QStringList{"EXTRA", "A", "B", "C"}));
    }

    void enumeratedValues()
    {
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *wholeField = doc.claim("P.R.F", "a.h", true, "dev.svd");
        FakeElement *halfField = doc.claim("P.R.G[0]", "a.h", true, "dev.svd");
        FakeElement *notBound = doc.claim("P.R.H");
        FakeElement *early = doc.claim("P.R[0]", "a.h", true, "dev.svd");

        const QString fields =
            fieldXml("F", "4", "5", "<enumeratedValues>" + valueXml("OFF", "0") + valueXml("ON", "1", "On")
                                        + valueXml("HALF", "#10") + "</enumeratedValues>")
            + fieldXml("G", "8", "9", "<enumeratedValues>" + valueXml("A", "0") + valueXml("B", "1") + "</enumeratedValues>")
            + fieldXml("H", "12", "13", "<enumeratedValues>" + valueXml("X", "3") + "</enumeratedValues>")
            // Values ahead of the position use lsb 0 and msb 0.
            + "<field><name>E</name><enumeratedValues><usage>read</usage>"
              "<enumeratedValue><isDefault>true</isDefault><value>1</value><name>Z</name></enumeratedValue>"
              "</enumeratedValues><lsb>0</lsb><msb>0</msb></field>";
        QVERIFY(doc.read(oneRegister(QStringLiteral("<size>32</size><fields>%1</fields>").arg(fields))));
        QVERIFY(sink.errors.isEmpty());

        QCOMPARE(itemNames(wholeField->enumerated), (QStringList{"0=OFF", "1=ON", "2=HALF"}));
        QCOMPARE(wholeField->enumerated.value(1).description, QStringLiteral("On"));
        QVERIFY(halfField->enumerated.isEmpty());
        QVERIFY(notBound->enumerated.isEmpty());
        QCOMPARE(itemNames(early->enumerated), QStringList{"1=Z"});

        Register *reg = doc.reg("P", "R");
        // Every value stays in the lists, reached or not.
        QStringList gNames;
        for (const EnumeratedValue &v : reg->findField("G")->enumeratedValues)
            gNames.append(v.name);
        QCOMPARE(gNames, (QStringList{"A", "B"}));
        QCOMPARE(reg->findField("F")->enumeratedValues.size(), 3);
        QCOMPARE(reg->enumerated.keys(), (QList<int>{1, 4, 5, 6, 8, 9, 15}));
        QCOMPARE(reg->enumerated.value(15).name, QStringLiteral("X"));
        QCOMPARE(reg->enumerated.value(6).value, 2);
    }

    void enumeratedKeysCollide()
    {
        ModelDocument doc;
        const QString fields =
            fieldXml("X", "0", "3", "<enumeratedValues>" + valueXml("X5", "5") + "</enumeratedValues>")
            + fieldXml("Y", "4", "5", "<enumeratedValues>" + valueXml("Y1", "1") + "</enumeratedValues>");
        QVERIFY(doc.read(oneRegister(QStringLiteral("<fields>%1</fields>").arg(fields))));
        Register *reg = doc.reg("P", "R");
        QCOMPARE(reg->enumerated.size(), 1);
        QCOMPARE(reg->enumerated.value(5).name, QStringLiteral("Y1"));
    }

    void enumeratedValuesOfAnEmptyRange()
    {
        ModelDocument doc;
        FakeElement *whole = doc.claim("P.R", "a.h", true, "dev.svd");
        // msb below lsb selects no bits; that must not read as the whole
        // register's key.
        const QString fields = fieldXml("F", "9", "2", "<enumeratedValues>" + valueXml("V", "1") + "</enumeratedValues>");
        QVERIFY(doc.read(oneRegister(QStringLiteral("<fields>%1</fields>").arg(fields))));
        QVERIFY(whole->enumerated.isEmpty());
        QCOMPARE(doc.reg("P", "R")->enumerated.value(10).name, QStringLiteral("V"));
    }

    void peripheralsList()
    {
        RecordingSink sink;
        ModelDocument doc;
        auto *list = new FakeListElement("$PERIPHERALS$", &doc.owner);
        doc.tables.addElement("$PERIPHERALS$", list);
        FakeElement *claimed = doc.claim("B.R[0]");
        Peripheral *b = doc.model.findPeripheral("B");

        const QByteArray svd = deviceXml(peripheralXml("A", "<description>First</description>")
                                         + peripheralXml("B", "<description></description>")
                                         + peripheralXml("A", "<description>Again</description>")
                                         + peripheralXml("C", "<description>Third</description>"));
        QVERIFY(doc.read(svd));
        QVERIFY(sink.errors.isEmpty());
        QVERIFY(sink.console.isEmpty());

        QStringList calls;
        for (const FakeListElement::Call &c : list->calls)
            calls.append(QStringLiteral("%1|%2|%3").arg(c.name, c.description).arg(c.value));
        QCOMPARE(calls, (QStringList{"A|A|0", "B|B|1", "A|A|2", "C|C|3"}));
        QCOMPARE(list->itemData(0, Qt::ToolTipRole).toString(), QStringLiteral("First"));
        QVERIFY(list->itemData(1, Qt::ToolTipRole).isNull());
        QCOMPARE(list->itemData(2, Qt::ToolTipRole).toString(), QStringLiteral("Again"));
        QCOMPARE(list->itemData(3, Qt::ToolTipRole).toString(), QStringLiteral("Third"));

        // A repeated name keeps the object, and what elements claimed in it.
        QCOMPARE(doc.model.peripherals().size(), 3);
        QCOMPARE(doc.model.findPeripheral("B"), b);
        QCOMPARE(doc.reg("B", "R")->claims.value(1), static_cast<ActiveElement *>(claimed));
        QCOMPARE(doc.model.findPeripheral("A")->description, QStringLiteral("Again"));

        // Each read counts from 0 again.
        list->calls.clear();
        QVERIFY(doc.read(svd));
        QCOMPARE(list->calls.size(), 4);
        QCOMPARE(list->calls.first().value, 0);
        QCOMPARE(list->calls.last().value, 3);
    }

    void peripheralsListWithoutComboBox()
    {
        ModelDocument doc;
        FakeElement *list = doc.element("$PERIPHERALS$");
        doc.tables.addElement("$PERIPHERALS$", list);
        QVERIFY(doc.read(deviceXml(peripheralXml("A", "<description>First</description>")
                                   + peripheralXml("B", "<description>Second</description>"))));
        QCOMPARE(itemNames(list->enumerated), (QStringList{"0=A", "1=B"}));
        QCOMPARE(list->enumerated.value(1).description, QStringLiteral("B"));
    }

    void registersListKeepsCounting()
    {
        ModelDocument doc;
        auto *list = new FakeListElement("$REGISTERS$", &doc.owner);
        doc.tables.addElement("$REGISTERS$", list);
        doc.claim("P.CLAIMED[0]");
        const QByteArray svd = deviceXml(
            peripheralXml("P", registersXml(registerXml("R1", "") + registerXml("CLAIMED", "") + registerXml("R2", "")))
            + peripheralXml("Q", registersXml(registerXml("R3", ""))));

        auto calls = [list] {
            QStringList out;
            for (const FakeListElement::Call &c : list->calls)
                out.append(QStringLiteral("%1=%2").arg(c.name).arg(c.value));
            list->calls.clear();
            return out;
        };

        QVERIFY(doc.read(svd));
        // A register an element claimed is already in the description's lists.
        QCOMPARE(calls(), (QStringList{"R1=0", "R2=1", "R3=2"}));

        // The next document's registers go on counting.
        doc.model.clear();
        QVERIFY(doc.read(svd));
        QCOMPARE(calls(), (QStringList{"R1=3", "CLAIMED=4", "R2=5", "R3=6"}));

        // Registers already present offer nothing new.
        QVERIFY(doc.read(svd));
        QVERIFY(calls().isEmpty());
    }

    void bindDataValues()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath("dev.svd");
        const QString regs =
            registerXml("R", "<addressOffset>0x4</addressOffset><size>32</size><fields>" + fieldXml("F", "4", "6") + "</fields>")
            + registerXml("S", "<addressOffset>0x8</addressOffset><size>16</size>")
            + registerXml("ODD", "<addressOffset>0xC</addressOffset><size>12</size>");
        QVERIFY(writeFile(path, deviceXml(peripheralXml("P", "<baseAddress>0x40000000</baseAddress>" + registersXml(regs)))));

        RecordingSink sink;
        ModelDocument doc;
        for (const char *name : {"P.R", "P.R.F", "P.R.NOFIELD", "P.ODD", "Q.X", "P.NOREG", "plain"})
            doc.tables.addDataValue(new DataClass(name));
        DataClass *bound = doc.tables.addDataValue(new DataClass("P.S.F"));
        bound->setTarget(new TargetVariable);

        QVERIFY(doc.model.readSvdFile(path));
        QVERIFY(sink.errors.isEmpty());
        QStringList console = sink.console;
        console.sort();
        QCOMPARE(console, (QStringList{kNotFound.arg("P.NOREG"), kNotFound.arg("Q.X"), kNotFound.arg("plain")}));

        auto check = [&doc](const char *name, int address, int size, int msb, int lsb) {
            DataClass *d = doc.tables.dataValue(name);
            QCOMPARE(d->property("address").toInt(), address);
            QCOMPARE(d->size(), size);
            QCOMPARE(d->property("msb").toInt(), msb);
            QCOMPARE(d->property("lsb").toInt(), lsb);
        };
        check("P.R", 0x40000004, 4, 0, 0);
        check("P.R.F", 0x40000004, 4, 6, 4);
        check("P.R.NOFIELD", 0x40000004, 4, 0, 0);
        check("P.ODD", 0x4000000C, 1, 0, 0);
        check("P.S.F", 0x40000008, 2, 0, 0);
        QCOMPARE(bound->target()->address, quint32(0x40000008));
        QCOMPARE(bound->target()->size, quint32(2));
        QVERIFY(!doc.tables.dataValue("Q.X")->property("address").isValid());
    }

    void bindDataValuesWithEmptyModel()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("empty.svd");
        QVERIFY(writeFile(path, deviceXml(QString())));

        RecordingSink sink;
        ModelDocument doc;
        // Nothing in the model: every define is missing.
        doc.tables.addDataValue(new DataClass("P.R"));
        QVERIFY(doc.model.readSvdFile(path));
        QCOMPARE(sink.console, QStringList{kNotFound.arg("P.R")});

        // A claim alone puts the register into the model; it is then found,
        // although the file never placed it.
        sink.clear();
        doc.claim("P.R[0]");
        QVERIFY(doc.model.readSvdFile(path));
        QVERIFY(sink.console.isEmpty());
        QCOMPARE(doc.tables.dataValue("P.R")->property("address").toInt(), -1);
    }

    void readFailures_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");       // empty: the plain pass's error
        QTest::addColumn<QString>("name");

        QTest::newRow("root is not device") << QByteArray("<?xml version=\"1.0\"?>\n<cpu><name>x</name></cpu>\n") << "Warning"
                                            << "bad.svd";
        QTest::newRow("mismatched tag") << QByteArray("<device><name>x</nam></device>") << QString() << "bad.svd";
        // The link escapes the colon; the head keeps the name as it is.
        QTest::newRow("colon in the folder") << QByteArray("<device><name>x</nam></device>") << QString() << "a:b/bad.svd";
        QTest::newRow("empty file") << QByteArray() << QString() << "bad.svd";
        QTest::newRow("broken inside a register")
            << oneRegister("<size>32</size><fields><field><name>F</field></fields>") << QString() << "bad.svd";
        QTest::newRow("text outside the root") << QByteArray("garbage") << QString() << "bad.svd";
    }

    void readFailures()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        QFETCH(QString, name);

        QTemporaryDir dir;
        const QString path = dir.filePath(name);
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QVERIFY(writeFile(path, content));

        RecordingSink sink;
        ModelDocument doc;
        doc.tables.addDataValue(new DataClass("P.R"));
        QString errorText;
        QVERIFY(!doc.model.readSvdFile(path, &errorText));

        QCOMPARE(sink.errors.size(), 1);
        QCOMPARE(sink.errors.first(), errorText);
        const QString head = QStringLiteral("Cannot read file %1:\n").arg(path);
        if (reason.isEmpty()) {
            const StreamError plain = plainPassError(path);
            QVERIFY(!plain.text.isEmpty());
            QCOMPARE(errorText, head + plain.text + positionText(path, plain.line, plain.column));
        } else {
            QVERIFY2(errorText.startsWith(head + reason + positionText(path, 2, 0).left(30)), qPrintable(errorText));
            QVERIFY(errorText.contains(QStringLiteral(">file</a> line 2, column ")));
        }
        // A failed read binds nothing.
        QVERIFY(sink.console.isEmpty());
    }

    void missingFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("absent.svd");
        QFile probe(path);
        QVERIFY(!probe.open(QIODevice::ReadOnly));

        RecordingSink sink;
        ModelDocument doc;
        QString errorText;
        QVERIFY(!doc.model.readSvdFile(path, &errorText));
        QCOMPARE(errorText, QStringLiteral("Cannot open file %1:\n%2").arg(path, probe.errorString()));
        QCOMPARE(sink.errors, QStringList{errorText});
    }

    void pipeRefused()
    {
        // Opening a pipe that nobody writes to would wait for ever.
        QTemporaryDir dir;
        const QString path = dir.filePath("pipe.svd");
        QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);

        RecordingSink sink;
        ModelDocument doc;
        QString errorText;
        QVERIFY(!doc.model.readSvdFile(path, &errorText));
        QCOMPARE(errorText, QStringLiteral("Cannot open file %1:\nNot a regular file.").arg(path));
        QCOMPARE(sink.errors, QStringList{errorText});
    }

    void nordicFile()
    {
        const QString path = sourceFile("Nordic_nrf52840.svd");
        const QString text = QString::fromUtf8(fileBytes(path));
        QVERIFY(!text.isEmpty());

        // Count the peripherals from the text: every <peripheral> element starts
        // with its name in this file (checked by counting the openings too).
        const QRegularExpression named(QStringLiteral("<peripheral(\\s[^>]*)?>\\s*<name>([^<]*)</name>"));
        QSet<QString> names;
        int namedCount = 0;
        for (auto it = named.globalMatch(text); it.hasNext(); ++namedCount)
            names.insert(it.next().captured(2));
        const int openings = text.count(QRegularExpression(QStringLiteral("<peripheral[\\s>]")));
        QCOMPARE(namedCount, openings);
        QVERIFY(names.size() > 40);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *state = doc.claim("CLOCK.HFCLKSTAT.STATE", "clock.h", true, "nrf52840.svd");
        auto *list = new FakeListElement("$PERIPHERALS$", &doc.owner);
        doc.tables.addElement("$PERIPHERALS$", list);

        QVERIFY(doc.model.readSvdFile(path));
        QVERIFY2(sink.errors.isEmpty(), qPrintable(sink.errors.join('\n')));
        QCOMPARE(doc.model.deviceName, QStringLiteral("nrf52840"));
        QCOMPARE(doc.model.peripherals().size(), names.size());
        QCOMPARE(list->count(), namedCount);

        // CLOCK at 0x40000000, HFCLKSTAT at offset 0x40C, field STATE at bit 16.
        Register *reg = doc.reg("CLOCK", "HFCLKSTAT");
        QVERIFY(reg);
        QCOMPARE(reg->address, 0x4000040C);
        QCOMPARE(reg->header, QStringLiteral("clock.h"));
        QCOMPARE(state->QObject::property("msb").toInt(), 16);
        QCOMPARE(state->QObject::property("lsb").toInt(), 16);
        QCOMPARE(reg->claims.value(quint64(1) << 16), static_cast<ActiveElement *>(state));
        QCOMPARE(itemNames(state->enumerated), (QStringList{"0=NotRunning", "1=Running"}));
        QCOMPARE(reg->findField("SRC")->description, QStringLiteral("Source of HFCLK"));
        QCOMPARE(reg->enumerated.value(17).name, QStringLiteral("Running"));
        QCOMPARE(doc.model.findPeripheral("CLOCK")->description, QStringLiteral("Clock control"));
    }

    void truncatedFile_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("inside the prolog") << 20;
        QTest::newRow("inside the licence") << 2000;
        QTest::newRow("inside a register") << 1000000;
        QTest::newRow("before the root's end") << -10;
    }

    void truncatedFile()
    {
        QFETCH(int, length);
        const QByteArray whole = fileBytes(sourceFile("Nordic_nrf52840.svd"));
        QVERIFY(!whole.isEmpty());
        const QByteArray cut = whole.left(length < 0 ? whole.size() + length : length);

        QTemporaryDir dir;
        const QString path = dir.filePath("cut.svd");
        QVERIFY(writeFile(path, cut));
        RecordingSink sink;
        ModelDocument doc;
        QString errorText;
        QVERIFY(!doc.model.readSvdFile(path, &errorText));
        const StreamError plain = plainPassError(path);
        QCOMPARE(errorText, QStringLiteral("Cannot read file %1:\n").arg(path) + plain.text
                                + positionText(path, plain.line, plain.column));
    }

    void junkNumbers_data()
    {
        QTest::addColumn<QString>("junk");
        QTest::newRow("word") << "zz";
        QTest::newRow("empty") << "";
        QTest::newRow("blank") << "   ";
        QTest::newRow("bare prefix") << "0x";
        QTest::newRow("minus") << "-";
        QTest::newRow("hash") << "#";
        QTest::newRow("bad hex digit") << "0x1G";
        QTest::newRow("too big for 64 bits") << "99999999999999999999";
        QTest::newRow("exponent") << "1e3";
    }

    void junkNumbers()
    {
        QFETCH(QString, junk);
        const QString j = junk.toHtmlEscaped();
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.claim("P.R.F[0]", "a.h", true, "dev.svd");
        const QString field = QStringLiteral("<field><name>F</name><lsb>%1</lsb><msb>%1</msb><enumeratedValues>"
                                             "<enumeratedValue><name>V</name><value>%1</value></enumeratedValue>"
                                             "</enumeratedValues></field>").arg(j);
        const QString reg = QStringLiteral("<addressOffset>%1</addressOffset><size>%1</size><resetValue>%1</resetValue>"
                                           "<fields>%2</fields>").arg(j, field);
        const QString body = QStringLiteral("<baseAddress>%1</baseAddress>").arg(j) + registersXml(registerXml("R", reg));
        QVERIFY(doc.read(deviceXml(peripheralXml("P", body))));

        Register *r = doc.reg("P", "R");
        QCOMPARE(r->address, 0);
        QCOMPARE(r->size, 0);
        QCOMPARE(r->resetValue, 0);
        BitField *f = r->findField("F");
        QCOMPARE(f->lsb, 0);
        QCOMPARE(f->msb, 0);
        QCOMPARE(f->width, 1);
        QCOMPARE(f->enumeratedValues.size(), 1);
        QCOMPARE(f->enumeratedValues.first().value, 0);
        QCOMPARE(e->QObject::property("msb").toInt(), 0);
        QCOMPARE(itemNames(e->enumerated), QStringList{"0=V"});
        QVERIFY(sink.errors.isEmpty());
    }

    void absurdFieldPositions_data()
    {
        QTest::addColumn<QString>("lsb");
        QTest::addColumn<QString>("msb");
        QTest::addColumn<QString>("define");
        QTest::addColumn<int>("absoluteMsb");
        QTest::addColumn<int>("absoluteLsb");

        const int intMin = std::numeric_limits<int>::min();
        const int intMax = std::numeric_limits<int>::max();
        QTest::newRow("int limits") << "-2147483648" << "2147483647" << "P.R.F[3:0]" << intMin + 3 << intMin;
        QTest::newRow("sum above int saturates") << "2147483647" << "2147483647" << "P.R.F[5:0]" << intMax << intMax;
        QTest::newRow("msb below lsb") << "9" << "2" << "P.R.F" << 2 << 9;
        QTest::newRow("negative") << "-40" << "-30" << "P.R.F[5:1]" << -35 << -39;
        QTest::newRow("beyond 64 bits") << "60" << "200" << "P.R.F[100:0]" << 160 << 60;
    }

    void absurdFieldPositions()
    {
        QFETCH(QString, lsb);
        QFETCH(QString, msb);
        QFETCH(QString, define);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.claim(define, "a.h", true, "dev.svd");
        doc.claim("P.R[0]", "a.h", true, "dev.svd");
        const QString fields = fieldXml("F", lsb, msb, "<enumeratedValues>" + valueXml("V", "2147483647") + "</enumeratedValues>");
        QVERIFY(doc.read(oneRegister(QStringLiteral("<size>64</size><fields>%1</fields>").arg(fields))));

        // Whatever was reported, the element ends up with its range spelled in
        // register bits, kept within int.
        Register *r = doc.reg("P", "R");
        QVERIFY(r);
        QCOMPARE(r->findField("F")->lsb, lsb.toInt());
        QCOMPARE(r->findField("F")->msb, msb.toInt());
        QVERIFY(r->findField("F")->claims.isEmpty());
        QTEST(e->QObject::property("msb").toInt(), "absoluteMsb");
        QTEST(e->QObject::property("lsb").toInt(), "absoluteLsb");
        QCOMPARE(r->findField("F")->enumeratedValues.size(), 1);
        for (const QString &error : qAsConst(sink.errors))
            QVERIFY2(error.startsWith("Out of size error") || error.startsWith("Tried to assign"), qPrintable(error));
    }
};

QTEST_MAIN(TestSvdReader)
#include "tst_svdreader.moc"
