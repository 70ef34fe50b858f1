// The hardware model without an SVD file: taking defines apart, claiming
// register and field bits, composing register values.

#include <QtTest>

#include "support/FakeElement.h"
#include "support/ModelDocument.h"
#include "support/RecordingSink.h"
#include "elements/DocumentTables.h"
#include "model/BitField.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"

namespace {

const QString kAlreadyAssigned = QStringLiteral("Tried to assign a GUI element to already assigned bits: %1\nMSB: %2 LSB: %3");

} // namespace

class TestSvdModel : public QObject
{
    Q_OBJECT

private slots:
    void defineParsing_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("peripheral");
        QTest::addColumn<QString>("registerName");
        QTest::addColumn<bool>("hasField");
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("msb");
        QTest::addColumn<int>("lsb");

        QTest::newRow("register") << "ADC.CTRL" << "ADC" << "CTRL" << false << "" << -1 << -1;
        QTest::newRow("range") << "ADC.CTRL[7:4]" << "ADC" << "CTRL" << false << "" << 7 << 4;
        QTest::newRow("one bit") << "ADC.CTRL[3]" << "ADC" << "CTRL" << false << "" << 3 << 3;
        QTest::newRow("field") << "ADC.CTRL.MODE" << "ADC" << "CTRL" << true << "MODE" << -1 << -1;
        QTest::newRow("field range") << "ADC.CTRL.MODE[2:1]" << "ADC" << "CTRL" << true << "MODE" << 2 << 1;
        QTest::newRow("hex bits") << "ADC.CTRL[0x10:0x8]" << "ADC" << "CTRL" << false << "" << 16 << 8;
        QTest::newRow("leading zero is octal") << "ADC.CTRL[010]" << "ADC" << "CTRL" << false << "" << 8 << 8;
        QTest::newRow("unreadable msb") << "ADC.CTRL[x:1]" << "ADC" << "CTRL" << false << "" << -1 << 1;
        QTest::newRow("unreadable bit") << "ADC.CTRL[y]" << "ADC" << "CTRL" << false << "" << -1 << -1;
        QTest::newRow("negative lsb") << "P.R[5:-2]" << "P" << "R" << false << "" << 5 << -2;
        QTest::newRow("plain name") << "dummy_define" << "dummy_define" << "" << false << "" << -1 << -1;
        QTest::newRow("empty") << "" << "" << "" << false << "" << -1 << -1;
        QTest::newRow("four pieces have no field") << "A.B.C.D" << "A" << "B" << false << "" << -1 << -1;
        QTest::newRow("empty field") << "P.R.[3:0]" << "P" << "R" << true << "" << 3 << 0;
        QTest::newRow("text after the range") << "P.R[7:4].X" << "P" << "R" << true << "X" << -1 << -1;
        QTest::newRow("three numbers") << "P.R[1:2:3]" << "P" << "R" << false << "" << -1 << -1;
        QTest::newRow("number too big") << "P.R[99999999999:0]" << "P" << "R" << false << "" << -1 << 0;
    }

    void defineParsing()
    {
        QFETCH(QString, define);
        const DefineText d = DefineText::parse(define);
        QTEST(d.peripheral, "peripheral");
        QTEST(d.registerName, "registerName");
        QTEST(d.hasField, "hasField");
        QTEST(d.field, "field");
        QTEST(d.msb, "msb");
        QTEST(d.lsb, "lsb");
    }

    void registerClaims_data()
    {
        QTest::addColumn<QStringList>("defines");
        QTest::addColumn<QString>("accepted");          // one '+' or '-' per define
        QTest::addColumn<QStringList>("errors");
        QTest::addColumn<qulonglong>("claimedBits");
        QTest::addColumn<QList<qulonglong>>("keys");
        QTest::addColumn<int>("highestBit");

        QTest::newRow("adjacent ranges")
            << QStringList{"P.R[7:4]", "P.R[3:0]"} << "++" << QStringList{}
            << 0xFFull << QList<qulonglong>{0x0F, 0xF0} << 7;
        QTest::newRow("overlap at bit 4")
            << QStringList{"P.R[7:4]", "P.R[4:4]"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R[4:4]").arg(4).arg(4)}
            << 0xF0ull << QList<qulonglong>{0xF0} << 7;
        QTest::newRow("whole register after a range")
            << QStringList{"P.R[3:0]", "P.R"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R").arg(-1).arg(-1)}
            << 0x0Full << QList<qulonglong>{0x0F} << 3;
        QTest::newRow("range after the whole register")
            << QStringList{"P.R", "P.R[3:0]"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R[3:0]").arg(3).arg(0)}
            << ~0ull << QList<qulonglong>{0} << 3;
        QTest::newRow("whole register twice")
            << QStringList{"P.R", "P.R"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R").arg(-1).arg(-1)}
            << ~0ull << QList<qulonglong>{0} << 0;
        QTest::newRow("refusal at bit 2 keeps bits 0 and 1")
            << QStringList{"P.R[2]", "P.R[3:0]"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R[3:0]").arg(3).arg(0)}
            << 0x07ull << QList<qulonglong>{0x04} << 3;
        QTest::newRow("refused claim raises the highest bit")
            << QStringList{"P.R[3:0]", "P.R[9:2]"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R[9:2]").arg(9).arg(2)}
            << 0x0Full << QList<qulonglong>{0x0F} << 9;
        QTest::newRow("bits from 64 up take no part")
            << QStringList{"P.R[70:64]", "P.R[65:62]"} << "++" << QStringList{}
            << 0xC000000000000000ull << QList<qulonglong>{0, 0xC000000000000000ull} << 70;
        QTest::newRow("all 64 bits")
            << QStringList{"P.R[63:0]", "P.R[0]"} << "+-"
            << QStringList{kAlreadyAssigned.arg("P.R[0]").arg(0).arg(0)}
            << ~0ull << QList<qulonglong>{~0ull} << 63;
        QTest::newRow("other registers are apart")
            << QStringList{"P.R[3:0]", "P.S[3:0]", "Q.R[3:0]"} << "+++" << QStringList{}
            << 0x0Full << QList<qulonglong>{0x0F} << 3;
    }

    void registerClaims()
    {
        QFETCH(QStringList, defines);
        QFETCH(QString, accepted);
        QFETCH(QStringList, errors);
        QFETCH(QList<qulonglong>, keys);

        RecordingSink sink;
        ModelDocument doc;
        QList<FakeElement *> elements;
        for (const QString &define : defines)
            elements.append(doc.claim(define));

        QCOMPARE(sink.errors, errors);
        QVERIFY(sink.console.isEmpty());
        Register *reg = doc.reg("P", "R");
        QVERIFY(reg);
        QTEST(qulonglong(reg->claimedBits), "claimedBits");
        QTEST(reg->highestBit, "highestBit");
        QList<qulonglong> actualKeys;
        for (quint64 key : reg->claims.keys())
            actualKeys.append(key);
        QCOMPARE(actualKeys, keys);

        for (int i = 0; i < defines.size(); ++i) {
            FakeElement *e = elements.at(i);
            const DefineText d = DefineText::parse(defines.at(i));
            if (accepted.at(i) == QLatin1Char('+')) {
                // Accepted: the element holds its range and knows it, and was
                // asked about it once by the define and once by the register.
                QCOMPARE(e->QObject::property("msb").toInt(), d.msb);
                QCOMPARE(e->QObject::property("lsb").toInt(), d.lsb);
                QCOMPARE(e->setBitsCalls, 2);
                QVERIFY(doc.reg(d.peripheral, d.registerName)->claims.values().contains(e));
            } else {
                QCOMPARE(e->QObject::property("msb").toInt(), -1);
                QCOMPARE(e->QObject::property("lsb").toInt(), -1);
                QVERIFY(!reg->claims.values().contains(e));
            }
        }
    }

    void fieldClaimsStayInTheField()
    {
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *low = doc.claim("P.R.F[1:0]");
        FakeElement *again = doc.claim("P.R.F[1]");
        FakeElement *whole = doc.claim("P.R.G");
        FakeElement *direct = doc.claim("P.R[1:0]");

        QCOMPARE(sink.errors, QStringList{kAlreadyAssigned.arg("P.R.F[1]").arg(1).arg(1)});
        Register *reg = doc.reg("P", "R");
        BitField *f = HardwareModel::findField(reg, "F");
        BitField *g = HardwareModel::findField(reg, "G");
        QVERIFY(f && g);
        QCOMPARE(f->claimedBits, quint64(0x3));
        QCOMPARE(f->claims.value(0x3), static_cast<ActiveElement *>(low));
        QCOMPARE(f->msb, 1);
        QCOMPARE(g->claimedBits, ~quint64(0));
        QCOMPARE(g->claims.value(0), static_cast<ActiveElement *>(whole));
        // Field bits are field-relative and not yet the register's: the same
        // numbers are free there.
        QCOMPARE(reg->claimedBits, quint64(0x3));
        QCOMPARE(reg->claims.size(), 1);
        QCOMPARE(reg->claims.value(0x3), static_cast<ActiveElement *>(direct));
        // Only the register asks the element a second time.
        QCOMPARE(low->setBitsCalls, 1);
        QCOMPARE(whole->setBitsCalls, 1);
        QCOMPARE(direct->setBitsCalls, 2);
        QCOMPARE(again->QObject::property("msb").toInt(), -1);
    }

    void claimRegistersTheElement()
    {
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *first = doc.claim("P.R[3:0]");
        FakeElement *refused = doc.claim("P.R[2]");
        FakeElement *wide = doc.element("P.S[1:0]", 255);
        doc.model.claimDefine("P.S[1:0]", "a.h", wide, true);

        // Registered before anything can go wrong, so a refused element is
        // still reachable by its define.
        QCOMPARE(doc.tables.element("P.R[3:0]"), static_cast<ActiveElement *>(first));
        QCOMPARE(doc.tables.element("P.R[2]"), static_cast<ActiveElement *>(refused));
        QCOMPARE(doc.tables.element("P.S[1:0]"), static_cast<ActiveElement *>(wide));
        QCOMPARE(doc.tables.elementList.toList(),
                 (QList<ActiveElement *>{first, refused, wide}));
        QCOMPARE(doc.reg("P", "R")->header, QStringLiteral("a.h"));
    }

    void emptyDefineOnlyClearsTheBits()
    {
        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.element(QString(), 1000);
        QVERIFY(doc.model.claimDefine(QString(), "a.h", e, true));
        QCOMPARE(e->setBitsCalls, 1);
        QVERIFY(doc.tables.elements.isEmpty());
        QVERIFY(doc.tables.elementList.isEmpty());
        QVERIFY(doc.model.peripherals().isEmpty());
        QVERIFY(sink.errors.isEmpty());
    }

    void claimReports_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<qlonglong>("maximum");
        QTest::addColumn<bool>("svdBound");
        QTest::addColumn<QString>("error");
        QTest::addColumn<bool>("modelTouched");

        QTest::newRow("range too narrow for the element")
            << "P.R[3:0]" << 255ll << true
            << "Trying to set MSB: 3 and LSB: 0 for P.R[3:0] which is of type: Fake\n" << false;
        QTest::newRow("msb below lsb")
            << "P.R[2:5]" << 1ll << true << "Bit order error in P.R[2:5]: msb(2) < lsb(5)" << false;
        QTest::newRow("field on a define not bound to the svd")
            << "P.R.F[1:0]" << 1ll << false
            << "Defines not representing an svd value can't have fields: P.R.F[1:0]" << true;
        QTest::newRow("register not bound to the svd")
            << "P.R[1:0]" << 1ll << false << QString() << true;
    }

    void claimReports()
    {
        QFETCH(QString, define);
        QFETCH(qlonglong, maximum);
        QFETCH(bool, svdBound);
        QFETCH(QString, error);
        QFETCH(bool, modelTouched);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.element(define, maximum);
        const bool ok = doc.model.claimDefine(define, "a.h", e, svdBound);

        QCOMPARE(ok, error.isEmpty());
        QCOMPARE(sink.errors, error.isEmpty() ? QStringList() : QStringList{error});
        QCOMPARE(doc.model.findPeripheral("P") != nullptr, modelTouched);
        if (Register *reg = doc.reg("P", "R")) {
            // Nothing is claimed when the claim stopped early.
            const bool claimed = error.isEmpty();
            QCOMPARE(reg->claimedBits != 0, claimed);
            if (BitField *f = reg->findField("F"))
                QVERIFY(f->claims.isEmpty());
        }
    }

    void twoHeaders()
    {
        RecordingSink sink;
        ModelDocument doc;
        doc.claim("P.R[0]", "a.h");
        doc.claim("P.R[1]", QString());      // no header: no conflict
        doc.claim("P.R[2]", "a.h");          // the same header: no conflict
        QVERIFY(sink.console.isEmpty());

        FakeElement *other = doc.claim("P.R[4:3]", "b.h");
        QCOMPARE(sink.console,
                 QStringList{"<font color=\"red\"> <b>XML Error: </b></font><b>register has two different headers "
                             "(a.h, b.h) <a href=\"P.R[4$$$COLON$$$3]\">P.R[4:3]</a><br>"});
        // The line is a warning: the claim goes on and the register keeps its
        // first header.
        QVERIFY(sink.errors.isEmpty());
        QCOMPARE(doc.reg("P", "R")->claims.value(0x18), static_cast<ActiveElement *>(other));
        QCOMPARE(doc.reg("P", "R")->header, QStringLiteral("a.h"));

        // A register first met without a header takes no header from later
        // claims and never conflicts.
        sink.clear();
        doc.claim("P.S[0]", QString());
        doc.claim("P.S[1]", "c.h");
        QVERIFY(sink.console.isEmpty());
        QCOMPARE(doc.reg("P", "S")->header, QString());
    }

    void absurdDefines_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<qulonglong>("claimedBits");

        QTest::newRow("msb near the int limit") << "P.R[0x7ffffff0:0]" << true << ~0ull;
        QTest::newRow("both bits above 63") << "P.R[0x7fffffff:0x7ffffff0]" << true << 0ull;
        QTest::newRow("negative range") << "P.R[-5:-9]" << true << 0ull;
        QTest::newRow("negative lsb") << "P.R[3:-4]" << true << 0x0Full;
        QTest::newRow("msb unreadable") << "P.R[99999999999:0]" << false << 0ull;
        QTest::newRow("garbage in brackets") << "P.R[:][:]" << true << ~0ull;
    }

    void absurdDefines()
    {
        QFETCH(QString, define);
        QFETCH(bool, accepted);

        RecordingSink sink;
        ModelDocument doc;
        FakeElement *e = doc.element(define);
        QCOMPARE(doc.model.claimDefine(define, "a.h", e, true), accepted);
        QCOMPARE(sink.errors.isEmpty(), accepted);
        if (Register *reg = doc.reg("P", "R"))
            QTEST(qulonglong(reg->claimedBits), "claimedBits");
        else
            QVERIFY(!accepted);
    }

    void composeRegisterValue_data()
    {
        QTest::addColumn<QStringList>("defines");
        QTest::addColumn<QList<qlonglong>>("numbers");
        QTest::addColumn<QStringList>("texts");     // overrides of definevalue, "" for none
        QTest::addColumn<QString>("expected");
        QTest::addColumn<bool>("failed");

        QTest::newRow("nothing claimed") << QStringList{} << QList<qlonglong>{} << QStringList{} << "0" << false;
        QTest::newRow("disjoint claims add up")
            << QStringList{"P.R[3:0]", "P.R[7:4]"} << QList<qlonglong>{5, 3} << QStringList{"", ""} << "53" << false;
        QTest::newRow("three fields")
            << QStringList{"P.R[0]", "P.R[9:8]", "P.R[31:28]"} << QList<qlonglong>{1, 2, 0xA}
            << QStringList{"", "", ""} << QString::number(1 + (2 << 8) + (qulonglong(0xA) << 28)) << false;
        QTest::newRow("whole register")
            << QStringList{"P.R"} << QList<qlonglong>{4294967295ll} << QStringList{""} << "4294967295" << false;
        QTest::newRow("top bits of 64")
            << QStringList{"P.R[63:60]"} << QList<qlonglong>{15} << QStringList{""} << "17293822569102704640" << false;
        QTest::newRow("float value stands for the register")
            << QStringList{"P.R[3:0]", "P.R[7:4]"} << QList<qlonglong>{1, 0} << QStringList{"", "1.5"} << "1.5" << false;
        QTest::newRow("first non-integer in mask order ends the sum")
            << QStringList{"P.R[7:4]", "P.R[3:0]"} << QList<qlonglong>{0, 0} << QStringList{"abc", "2.5"} << "2.5" << false;
        QTest::newRow("junk text fails")
            << QStringList{"P.R[3:0]", "P.R[7:4]"} << QList<qlonglong>{1, 0} << QStringList{"", "abc"} << "abc" << true;
        QTest::newRow("negative number is not summed")
            << QStringList{"P.R[3:0]"} << QList<qlonglong>{0} << QStringList{"-5"} << "-5" << false;
        QTest::newRow("integer with a dot")
            << QStringList{"P.R[3:0]"} << QList<qlonglong>{0} << QStringList{"5.0"} << "5.0" << false;
        QTest::newRow("empty text fails")
            << QStringList{"P.R[3:0]"} << QList<qlonglong>{0} << QStringList{" "} << " " << true;
    }

    void composeRegisterValue()
    {
        QFETCH(QStringList, defines);
        QFETCH(QList<qlonglong>, numbers);
        QFETCH(QStringList, texts);

        RecordingSink sink;
        ModelDocument doc;
        doc.model.addPeripheral("P")->addRegister("R", QString());
        for (int i = 0; i < defines.size(); ++i) {
            FakeElement *e = doc.claim(defines.at(i));
            e->number = numbers.at(i);
            e->overrideText = texts.at(i);
        }
        QVERIFY(sink.errors.isEmpty());

        bool failed = false;
        QTEST(doc.model.composeRegisterValue(doc.reg("P", "R"), &failed), "expected");
        QTEST(failed, "failed");
    }

    void composeLeavesAnEarlierFailureSet()
    {
        ModelDocument doc;
        FakeElement *e = doc.claim("P.R[3:0]");
        e->number = 7;
        bool failed = true;
        QCOMPARE(doc.model.composeRegisterValue(doc.reg("P", "R"), &failed), QStringLiteral("7"));
        QVERIFY(failed);
        // No flag is fine too.
        QCOMPARE(doc.model.composeRegisterValue(doc.reg("P", "R")), QStringLiteral("7"));
    }

    void clearKeepsTheRegisterCounter()
    {
        ModelDocument doc;
        doc.claim("P.R[0]");
        doc.model.deviceName = "dev";
        doc.model.peripheralItemCounter = 4;
        doc.model.registerItemCounter = 9;
        doc.model.clear();
        QVERIFY(doc.model.peripherals().isEmpty());
        QVERIFY(!doc.model.findPeripheral("P"));
        QVERIFY(doc.model.deviceName.isEmpty());
        QCOMPARE(doc.model.peripheralItemCounter, 0);
        QCOMPARE(doc.model.registerItemCounter, 9);
    }
};

QTEST_MAIN(TestSvdModel)
#include "tst_svdmodel.moc"
