#include <QtTest>

#include "device/DataString.h"
#include "device/ReceiveString.h"
#include "device/SerialSettings.h"

static QByteArray hex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text));
}

// The two languages of board traffic, bytes in and out: data strings
// (counts, byte order, constants, names, the first-colon rule) and receive
// strings (the plain split, "?", the sums the wait is based on), and the
// serial framing text.
class TestDataStrings : public QObject
{
    Q_OBJECT
private slots:
    void encode_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("reported");

        const QStringList none;
        QTest::newRow("one byte") << "0x10" << hex("10") << none;
        QTest::newRow("count 2 big-endian") << "2:0x10" << hex("0010") << none;
        QTest::newRow("count -2 little-endian") << "-2:0x10" << hex("1000") << none;
        QTest::newRow("count 0 sends nothing") << "0:0x10;0x01" << hex("01") << none;
        QTest::newRow("negative zero sends nothing") << "-0:0x10;0x02" << hex("02") << none;
        QTest::newRow("four bytes") << "4:0x01020304" << hex("01020304") << none;
        QTest::newRow("four bytes reversed") << "-4:0x01020304" << hex("04030201") << none;
        QTest::newRow("count above 4 repeats") << "6:0x01020304" << hex("030401020304") << none;
        QTest::newRow("little-endian above 4") << "-5:0x01020304" << hex("0403020104") << none;
        QTest::newRow("byte keeps the low bits") << "-1:0x1FF" << hex("ff") << none;
        QTest::newRow("binary") << "0b101" << hex("05") << none;
        QTest::newRow("binary two bytes") << "2:0b1111111100000001" << hex("ff01") << none;
        QTest::newRow("decimal") << "255;256" << hex("ff00") << none;
        QTest::newRow("largest decimal") << "4:4294967295" << hex("ffffffff") << none;
        QTest::newRow("name") << "DEF;2:DEF;-2:DEF" << hex("3412343412") << none;
        QTest::newRow("bad hex is silent") << "0xZZ;0x01" << hex("01") << none;
        QTest::newRow("bad binary is silent") << "0b102;0x01" << hex("01") << none;
        QTest::newRow("0X is no prefix") << "0X10" << QByteArray() << QStringList{"0X10"};
        QTest::newRow("decimal beyond 32 bits") << "4294967296" << QByteArray() << QStringList{"4294967296"};
        QTest::newRow("negative value") << "-5" << QByteArray() << QStringList{"-5"};
        QTest::newRow("first colon only") << "1:3:4" << QByteArray() << QStringList{"3:4"};
        QTest::newRow("unknown name, rest sent") << "2:somename;0x01" << hex("01") << QStringList{"somename"};
        QTest::newRow("junk token") << "junk!!;7" << hex("07") << QStringList{"junk!!"};
        QTest::newRow("count not a number") << "x:0x01" << QByteArray() << QStringList{"x:0x01"};
        QTest::newRow("count beyond int") << "99999999999:0x01" << QByteArray() << QStringList{"99999999999:0x01"};
        QTest::newRow("huge count refused") << "5000:0x01;0x02" << hex("02") << QStringList{"5000:0x01"};
        // INT_MIN has no positive int (its std::abs was undefined).
        QTest::newRow("lowest int count refused") << "-2147483648:0x01;0x02" << hex("02") << QStringList{"-2147483648:0x01"};
        QTest::newRow("empty tokens are kept") << "0x01;;0x02" << hex("0102") << QStringList{""};
        QTest::newRow("empty string") << "" << QByteArray() << none;
    }

    void encode()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, reported);
        const DataString::NameLookup lookup = [](const QString &name, quint32 *v) {
            if (name != QLatin1String("DEF"))
                return false;
            *v = 0x1234;
            return true;
        };
        QStringList unconvertible;
        QCOMPARE(DataString::encode(text, lookup, &unconvertible).toHex(), bytes.toHex());
        QCOMPARE(unconvertible, reported);
    }

    void receiveTokens_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("needed");
        // Each token as count, "LE" or "BE", and name.
        QTest::addColumn<QString>("tokens");

        QTest::newRow("name alone") << "X" << 1 << "1BE X";
        QTest::newRow("counts and skip") << "2:X;?" << 3 << "2BE X|1BE ?";
        QTest::newRow("little-endian") << "-4:X" << 4 << "4LE X";
        QTest::newRow("skip four") << "4:?" << 4 << "4BE ?";
        QTest::newRow("two colons: a name") << "1:3:4" << 1 << "1BE 1:3:4";
        QTest::newRow("count not a number: a name") << "a:b" << 1 << "1BE a:b";
        QTest::newRow("negative zero") << "-0:X" << 0 << "0BE X";
        QTest::newRow("huge count is held") << "70000:X" << 65535 << "65535BE X";
        QTest::newRow("lowest int count is held") << "-2147483648:X" << 65535 << "65535LE X";
        QTest::newRow("several") << "2:A;-2:B;?" << 5 << "2BE A|2LE B|1BE ?";
        QTest::newRow("empty") << "" << 0 << "";
    }

    void receiveTokens()
    {
        QFETCH(QString, text);
        QFETCH(int, needed);
        QFETCH(QString, tokens);
        QCOMPARE(ReceiveString::needed(text), needed);
        QStringList seen;
        for (const ReceiveString::Token &t : ReceiveString::parse(text))
            seen << QStringLiteral("%1%2 %3").arg(t.count).arg(t.littleEndian ? "LE" : "BE", t.name);
        QCOMPARE(seen.join(QLatin1Char('|')), tokens);
    }

    void fold_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("littleEndian");
        QTest::addColumn<quint32>("value");
        QTest::newRow("big-endian") << hex("1234") << false << quint32(0x1234);
        QTest::newRow("little-endian") << hex("1234") << true << quint32(0x3412);
        QTest::newRow("four bytes") << hex("deadbeef") << false << quint32(0xdeadbeef);
        // Shifts are taken modulo 32: the fifth byte lands on the first.
        QTest::newRow("five bytes") << hex("0102030405") << false << quint32(0x02030406);
        QTest::newRow("nothing") << QByteArray() << false << quint32(0);
    }

    void fold()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, littleEndian);
        QFETCH(quint32, value);
        QCOMPARE(ReceiveString::fold(bytes, littleEndian), value);
    }

    void serialFraming_data()
    {
        QTest::addColumn<QString>("settings");
        QTest::addColumn<int>("baud");
        QTest::addColumn<int>("dataBits");
        QTest::addColumn<int>("parity");
        QTest::addColumn<int>("stopBits");
        QTest::newRow("defaults") << "" << 115200 << 8 << int(QSerialPort::NoParity) << 1;
        QTest::newRow("four parts") << "9600;7;O;2" << 9600 << 7 << int(QSerialPort::OddParity) << 2;
        QTest::newRow("parity by its first letter") << "19200;8;EVEN;1" << 19200 << 8 << int(QSerialPort::EvenParity) << 1;
        QTest::newRow("mark and space") << "4800;8;M;1" << 4800 << 8 << int(QSerialPort::MarkParity) << 1;
        QTest::newRow("unknown letter is none") << "4800;8;X;1" << 4800 << 8 << int(QSerialPort::NoParity) << 1;
        QTest::newRow("three parts ignored") << "9600;7;O" << 115200 << 8 << int(QSerialPort::NoParity) << 1;
        QTest::newRow("five parts ignored") << "9600;7;O;2;X" << 115200 << 8 << int(QSerialPort::NoParity) << 1;
    }

    void serialFraming()
    {
        QFETCH(QString, settings);
        const SerialSettings::Framing f = SerialSettings::parse(settings);
        QTEST(int(f.baudRate), "baud");
        QTEST(int(f.dataBits), "dataBits");
        QTEST(int(f.parity), "parity");
        QTEST(int(f.stopBits), "stopBits");
    }

    void portNamesLoseTheirCase()
    {
        // Descriptions upper-case the port; the device file keeps its case.
        QCOMPARE(SerialSettings::systemPortName(QStringLiteral("/DEV/NULL")), QStringLiteral("/dev/null"));
        QCOMPARE(SerialSettings::systemPortName(QStringLiteral("/DEV/NO_SUCH_PORT")), QStringLiteral("/DEV/NO_SUCH_PORT"));
        QCOMPARE(SerialSettings::systemPortName(QStringLiteral("NULL")), QStringLiteral("null"));
        QCOMPARE(SerialSettings::systemPortName(QStringLiteral("COM3")), QStringLiteral("COM3"));
    }
};

QTEST_GUILESS_MAIN(TestDataStrings)
#include "tst_datastrings.moc"
