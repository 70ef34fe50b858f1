#include <QtTest>

#include <cmath>
#include <limits>

#include "support/RecordingSink.h"

#include "model/ResultFormat.h"

class TestResultFormat : public QObject
{
    Q_OBJECT

private slots:
    void kind_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("known");
        QTest::addColumn<QString>("prefix");

        QTest::newRow("decimal") << "%d" << int(ResultFormat::Decimal) << true << "";
        QTest::newRow("unsigned") << "%u" << int(ResultFormat::Decimal) << true << "";
        QTest::newRow("long unsigned") << "%lu" << int(ResultFormat::Decimal) << true << "";
        QTest::newRow("hexadecimal") << "%x" << int(ResultFormat::Hexadecimal) << true << "0x";
        QTest::newRow("upper hexadecimal") << "%08X" << int(ResultFormat::Hexadecimal) << true << "0x";
        QTest::newRow("fixed") << "%4.2f" << int(ResultFormat::Floating) << true << "";
        QTest::newRow("general") << "%g" << int(ResultFormat::Floating) << true << "";
        QTest::newRow("binary") << "%08b" << int(ResultFormat::Binary) << true << "";
        QTest::newRow("upper binary") << "%B" << int(ResultFormat::Binary) << true << "";
        // The letters are looked for anywhere in the text, in this order.
        QTest::newRow("binary wins over decimal") << "%d bytes" << int(ResultFormat::Binary) << true << "";
        QTest::newRow("unit with g is floating") << "%d kg" << int(ResultFormat::Floating) << true << "";
        QTest::newRow("decimal wins over hexadecimal") << "%x dec" << int(ResultFormat::Decimal) << true << "";
        QTest::newRow("exponent is unknown") << "%e" << int(ResultFormat::Floating) << false << "";
        QTest::newRow("empty is unknown") << "" << int(ResultFormat::Floating) << false << "";
    }

    void kind()
    {
        QFETCH(QString, format);
        QFETCH(int, kind);
        QFETCH(bool, known);
        QFETCH(QString, prefix);

        bool isKnown = !known;
        QCOMPARE(int(ResultFormat::kindOf(format, &isKnown)), kind);
        QCOMPARE(isKnown, known);

        const ResultFormat f(format);
        QCOMPARE(int(f.kind()), kind);
        QCOMPARE(f.isKnown(), known);
        QCOMPARE(f.prefix(), prefix);
        QCOMPARE(f.format(), format);
    }

    void defaultFormat()
    {
        QCOMPARE(ResultFormat::defaultFormat(true), QStringLiteral("%d"));
        QCOMPARE(ResultFormat::defaultFormat(false), QStringLiteral("%4.2f"));
        QCOMPARE(ResultFormat().format(), QStringLiteral("%4.2f"));
    }

    void binary_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");

        QTest::newRow("zero fill to four") << "%04b" << 5.0 << "0101";
        QTest::newRow("zero fill to eight, grouped") << "%08b" << 5.0 << "0000 0101";
        QTest::newRow("blank fill") << "%8b" << 5.0 << "      101";
        QTest::newRow("no width") << "%b" << 18.0 << "1 0010";
        QTest::newRow("wider than width") << "%04b" << 255.0 << "1111 1111";
        QTest::newRow("text in front") << "Bits: %08b" << 5.0 << "Bits: 0000 0101";
        QTest::newRow("text behind is dropped") << "%04b:" << 5.0 << "0101";
        // The width is what stands between "%" and the last "b", here "04b ".
        QTest::newRow("last b decides the width") << "%04b bits" << 5.0 << "101";
        QTest::newRow("upper case letter") << "%08B" << 5.0 << "0000 0101";
        QTest::newRow("fraction truncated") << "%04b" << 5.9 << "0101";
        QTest::newRow("negative as unsigned 32 bits") << "%b" << -1.0
                                                      << "1111 1111 1111 1111 1111 1111 1111 1111";
        QTest::newRow("only low 32 bits") << "%b" << 4294967296.0 + 3 << "11";
        QTest::newRow("zero") << "%04b" << 0.0 << "0000";
        QTest::newRow("without percent") << "b" << 5.9 << "5";
        QTest::newRow("without percent negative") << "bin" << -7.0 << "-7";
        QTest::newRow("unreadable width") << "%xb" << 5.0 << "101";
        QTest::newRow("trailing zeros kept") << "%b" << 8.0 << "1000";
    }

    void binary()
    {
        QFETCH(QString, format);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(ResultFormat(format).text(value), text);
    }

    void printf_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");

        // Decimal and hexadecimal kinds take the value as unsigned 64 bits; a
        // conversion without length modifier sees its low 32 bits.
        QTest::newRow("decimal") << "%d" << 42.0 << "42";
        QTest::newRow("decimal truncates") << "%d" << 42.9 << "42";
        QTest::newRow("decimal negative") << "%d" << -1.0 << "-1";
        QTest::newRow("decimal keeps trailing zeros") << "%d" << 100.0 << "100";
        QTest::newRow("decimal of 2^31") << "%d" << 2147483648.0 << "-2147483648";
        QTest::newRow("decimal of 2^32+5") << "%d" << 4294967301.0 << "5";
        QTest::newRow("unsigned negative") << "%u" << -1.0 << "4294967295";
        QTest::newRow("long long negative") << "%lld" << -1.0 << "-1";
        QTest::newRow("long long big") << "%lld" << 4294967301.0 << "4294967301";
        QTest::newRow("long long unsigned negative") << "%llu" << -1.0 << "18446744073709551615";
        QTest::newRow("short") << "%hd" << 70000.0 << "4464";
        QTest::newRow("char") << "%hhu" << 300.0 << "44";
        QTest::newRow("width") << "%5d" << 42.0 << "   42";
        QTest::newRow("zero fill") << "%05d" << 42.0 << "00042";
        QTest::newRow("left justified") << "%-5d|" << 42.0 << "42   |";
        QTest::newRow("text around") << "Speed %d rpm" << 1200.0 << "Speed 1200 rpm";
        QTest::newRow("percent sign") << "%d%%" << 50.0 << "50%";
        QTest::newRow("hexadecimal") << "%x" << 255.0 << "ff";
        QTest::newRow("upper hexadecimal zero fill") << "%04X" << 255.0 << "00FF";
        QTest::newRow("hexadecimal negative") << "%x" << -1.0 << "ffffffff";
        QTest::newRow("NaN as integer") << "%d" << std::numeric_limits<double>::quiet_NaN() << "0";
        QTest::newRow("decimal with unit text containing a point") << "%d.0 V" << 5.0 << "5.0 V";

        // Floating kind: the double through the format, then trailing zeros
        // behind a point go.
        QTest::newRow("fixed trailing zero") << "%4.2f" << 1.5 << "1.5";
        QTest::newRow("fixed whole") << "%4.2f" << 2.0 << "2";
        QTest::newRow("fixed zero") << "%4.2f" << 0.0 << "0";
        QTest::newRow("fixed ten keeps its zero") << "%4.2f" << 10.0 << "10";
        QTest::newRow("fixed hundred") << "%.1f" << 100.0 << "100";
        QTest::newRow("fixed rounding") << "%.2f" << 3.14159 << "3.14";
        QTest::newRow("fixed negative") << "%.3f" << -0.125 << "-0.125";
        QTest::newRow("fixed padded") << "%6.1f" << 2.24 << "   2.2";
        QTest::newRow("fixed with unit") << "%.1f mA" << 2.0 << "2.0 mA";
        QTest::newRow("no point, nothing removed") << "%.0f" << 100.0 << "100";
        QTest::newRow("general") << "%g" << 0.5 << "0.5";
        // The removal looks only at the end of the whole text.
        QTest::newRow("general exponent loses a zero") << "%g" << 1.5e20 << "1.5e+2";
        QTest::newRow("integer conversion in floating kind") << "%d kg" << 5.7 << "5 kg";
        QTest::newRow("unknown kind is floating") << "%e" << 1.5 << "1.500000e+";
        QTest::newRow("infinity") << "%.2f" << std::numeric_limits<double>::infinity() << "inf";
        QTest::newRow("NaN") << "%.2f" << std::numeric_limits<double>::quiet_NaN() << "nan";
    }

    void printf()
    {
        QFETCH(QString, format);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(ResultFormat(format).text(value), text);
    }

    void hostileFormat_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");

        // Conversions that would read arguments of another type stay text.
        QTest::newRow("string conversion") << "%s" << 1.0 << "%s";
        QTest::newRow("pointer conversion") << "%p" << 1.0 << "%p";
        QTest::newRow("store conversion") << "%n" << 1.0 << "%n";
        QTest::newRow("star width") << "%*d" << 1.0 << "%*d";
        QTest::newRow("only the first conversion") << "%d %d %s" << 7.0 << "7 %d %s";
        QTest::newRow("unusable then usable") << "%s=%d" << 7.0 << "%s=7";
        QTest::newRow("lone percent") << "%" << 7.0 << "%";
        QTest::newRow("no conversion") << "volts" << 7.0 << "volts";
        QTest::newRow("empty") << "" << 7.0 << "";
        QTest::newRow("non-ASCII text kept") << QString::fromUtf8("%.1f °C") << 21.5 << QString::fromUtf8("21.5 °C");
    }

    void hostileFormat()
    {
        QFETCH(QString, format);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(ResultFormat(format).text(value), text);
    }

    void labelText()
    {
        QCOMPARE(ResultFormat("%x").labelText(255, " Hz"), QStringLiteral("0xff Hz"));
        QCOMPARE(ResultFormat("%d").labelText(255, " Hz"), QStringLiteral("255 Hz"));
        QCOMPARE(ResultFormat("%4.2f").labelText(2.5, QString()), QStringLiteral("2.5"));

        // Huge widths are bounded instead of making huge strings.
        const QString wide = ResultFormat("%999999999d").text(1);
        QVERIFY(wide.size() < 1000);
        QVERIFY(wide.endsWith(QLatin1Char('1')));
        const QString wideBinary = ResultFormat("%0999999999b").text(1);
        QVERIFY(wideBinary.size() < 1000);
        QVERIFY(wideBinary.endsWith(QLatin1Char('1')));
    }

    void unformattedKeepsFullPrecision_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("third") << 1.0 / 3.0;
        QTest::newRow("tenth") << 0.1;
        QTest::newRow("large") << 123456789.123456789;
        QTest::newRow("above 2^53") << 9007199254740993.0;
        QTest::newRow("negative tiny") << -1.0e-300;
    }

    void unformattedKeepsFullPrecision()
    {
        QFETCH(double, value);
        const QString text = ResultFormat::unformatted(value);
        bool ok = false;
        QCOMPARE(text.toDouble(&ok), value);
        QVERIFY(ok);
        // Exact equality, not the fuzzy one of QCOMPARE.
        QVERIFY(text.toDouble() == value);
    }

    void unknownFormatMessage()
    {
        RecordingSink sink;
        ResultFormat::reportUnknownFormat("ADC:CTRL");
        QCOMPARE(sink.console, QStringList({
            "<font color=\"red\"> <b>XML Error: </b></font><b>Unknown format in "
            "<a href=\"ADC$$$COLON$$$CTRL\">ADC:CTRL</a><br>"}));
        QVERIFY(sink.errors.isEmpty());
    }
};

QTEST_MAIN(TestResultFormat)
#include "tst_resultformat.moc"
