#include <QtTest>

#include "elements/NumberFormat.h"
#include "elements/Selectors.h"

// The number rules and the selector words are shared by descriptions, SVD
// files, setDef texts and formulas; descriptions in use depend on their
// quirks, so each quirk is pinned here.
class TestNumbers : public QObject
{
    Q_OBJECT
private slots:
    void classify_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        QTest::newRow("decimal") << "42" << int(NumberFormat::Decimal);
        QTest::newRow("negative decimal") << "-42" << int(NumberFormat::Decimal);
        QTest::newRow("decimal with suffix") << "5u" << int(NumberFormat::Decimal);
        QTest::newRow("decimal in parentheses") << "(5)" << int(NumberFormat::Decimal);
        QTest::newRow("padded decimal") << "  7 " << int(NumberFormat::Decimal);
        QTest::newRow("hex") << "0x1F" << int(NumberFormat::Hexadecimal);
        QTest::newRow("hex with suffix and parentheses") << "(0x10u)" << int(NumberFormat::Hexadecimal);
        QTest::newRow("upper-case prefix is not hex") << "0X10" << int(NumberFormat::OtherText);
        QTest::newRow("floating") << "1.5" << int(NumberFormat::Floating);
        QTest::newRow("negative float is not floating") << "-1.5" << int(NumberFormat::OtherText);
        QTest::newRow("exponent is not floating") << "1e5" << int(NumberFormat::OtherText);
        QTest::newRow("binary") << "0b1010" << int(NumberFormat::Binary);
        QTest::newRow("binary with a 2") << "0b102" << int(NumberFormat::OtherText);
        QTest::newRow("word") << "Enabled" << int(NumberFormat::OtherText);
        QTest::newRow("blank is text, not empty") << "   " << int(NumberFormat::OtherText);
        QTest::newRow("empty") << "" << int(NumberFormat::Empty);
    }

    void classify()
    {
        QFETCH(QString, text);
        QFETCH(int, expected);
        QCOMPARE(int(classifyNumber(text)), expected);
    }

    void normalise_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("decimal") << "42" << "42";
        QTest::newRow("leading zeros") << "007" << "7";
        QTest::newRow("negative") << "-12" << "-12";
        QTest::newRow("suffix gives 0") << "5u" << "0";
        QTest::newRow("parentheses give 0") << "(5)" << "0";
        QTest::newRow("negative with suffix gives 0") << "-5u" << "0";
        QTest::newRow("largest unsigned") << "18446744073709551615" << "18446744073709551615";
        QTest::newRow("hex") << "0x1F" << "31";
        QTest::newRow("hex with suffix and parentheses") << "(0x10u)" << "16";
        QTest::newRow("hex full width") << "0xFFFFFFFFFFFFFFFF" << "18446744073709551615";
        QTest::newRow("floating") << "2.50" << "2.5";
        QTest::newRow("floating, six digits") << "3.14159265" << "3.14159";
        QTest::newRow("binary") << "0b101" << "5";
        QTest::newRow("text unchanged") << "Fast" << "Fast";
        QTest::newRow("empty") << "" << "";
    }

    void normalise()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(normaliseNumber(text), expected);
    }

    void selectorLookup_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("has");
        QTest::newRow("no selector") << "ADC.CTRL.MODE" << 0 << false;
        QTest::newRow("value") << "ADC.CTRL.value" << 0 << true;
        QTest::newRow("label") << "ADC.CTRL.label" << 1 << true;
        QTest::newRow("index") << "ADC.CTRL.index" << 2 << true;
        QTest::newRow("definevalue") << "ADC.CTRL.definevalue" << 3 << true;
        QTest::newRow("typeinfo") << "A.typeinfo" << 4 << true;
        QTest::newRow("registername is not register") << "T.registername" << 9 << true;
        QTest::newRow("deleteall is not delete") << "T.deleteall" << 18 << true;
        QTest::newRow("loadat") << "T.loadat" << 21 << true;
        QTest::newRow("textcolor") << "L.textcolor" << 32 << true;
        QTest::newRow("update is the last") << "I.update" << 33 << true;
        QTest::newRow("case-sensitive") << "ADC.CTRL.Label" << 0 << false;
        QTest::newRow("needs the dot") << "ADClabel" << 0 << false;
        QTest::newRow("word alone") << "label" << 0 << false;
    }

    void selectorLookup()
    {
        QFETCH(QString, text);
        QFETCH(int, kind);
        QFETCH(bool, has);
        QCOMPARE(Selectors::selectorKind(text), kind);
        QCOMPARE(Selectors::hasSelector(text), has);
    }

    void selectorRemoval_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("element");
        QTest::newRow("one") << "ADC.CTRL.label" << "ADC.CTRL";
        QTest::newRow("every occurrence") << "ADC.CTRL.value.value" << "ADC.CTRL";
        QTest::newRow("inside too") << "A.index.B.index" << "A.B";
        QTest::newRow("none") << "ADC.CTRL" << "ADC.CTRL";
    }

    void selectorRemoval()
    {
        QFETCH(QString, text);
        QFETCH(QString, element);
        QCOMPARE(Selectors::stripSelector(text), element);
    }

    void prefixes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("rest");
        QTest::newRow("label") << "label=Fast" << 1 << "Fast";
        QTest::newRow("index") << "index=2" << 2 << "2";
        QTest::newRow("value") << "value=0x10" << 0 << "0x10";
        QTest::newRow("none") << "Fast" << -1 << "Fast";
        QTest::newRow("word without =") << "labelFast" << -1 << "labelFast";
    }

    void prefixes()
    {
        QFETCH(QString, text);
        QFETCH(int, kind);
        QFETCH(QString, rest);
        QString t = text;
        QCOMPARE(Selectors::takePrefix(t), kind);
        QCOMPARE(t, rest);
    }
};

QTEST_GUILESS_MAIN(TestNumbers)
#include "tst_numbers.moc"
