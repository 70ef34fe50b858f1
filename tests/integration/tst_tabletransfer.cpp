#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "RegisterSvd.h"
#include "SimulatedStick.h"
#include "device/DataTasks.h"
#include "device/StickLink.h"
#include "elements/ActiveElement.h"
#include "elements/SetDef.h"
#include "shell/Dialogs.h"
#include "shell/MainWindow.h"
#include "elements/DataClass.h"
#include "views/Table.h"
#include "views/TableTransfer.h"

#include <QElapsedTimer>

// A table sent row by row to a simulated board on the far end of a real
// pseudo-terminal. The board answers by the frame's first byte, which the
// send format takes from the row's func cell: 1 at once, 2 late, 3 short,
// 4 never.
class TestTableTransfer : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Dialogs::setQuiet(true); }
    void encodeToken_data();
    void encodeToken();
    void decode_data();
    void decode();
    void toolTipValue_data();
    void toolTipValue();

    void init();
    void cleanup();
    void answersOnTime();
    void answerMissingLateOrShort_data();
    void answerMissingLateOrShort();
    void sendLoopAndStartRow();
    void answerIntoElementsAndBadNames();
    void delayAndSingleStep();
    void withoutLink();

private:
    bool openForm(const QByteArray &tableAttributes);
    Table *table() const { return m_form.element<Table>(QStringLiteral("T")); }
    void run(const QString &text) { SetDef::run(text, &m_form.tables()); }
    void addRow(int func, const QString &value, const QString &name = QStringLiteral("P.R"));

    SimulatedStick *m_stick = nullptr;
    FormWindow m_form;
};

namespace {
const QByteArray kAnswer("\x55\x00\x00\x00\x11", 5);

bool noLookup(const QString &name, quint64 *value)
{
    if (name == QLatin1String("TEN")) {
        *value = 0x0A0B;
        return true;
    }
    return false;
}
} // namespace

void TestTableTransfer::encodeToken_data()
{
    QTest::addColumn<QString>("token");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one byte of hex") << "0x41" << QByteArray("\x41", 1);
    QTest::newRow("count, most significant first") << "4:0x40000010" << QByteArray("\x40\x00\x00\x10", 4);
    QTest::newRow("negative count, least significant first") << "-4:0x40000010" << QByteArray("\x10\x00\x00\x40", 4);
    QTest::newRow("zero count is little endian too") << "0:0x12" << QByteArray();
    QTest::newRow("a name") << "2:TEN" << QByteArray("\x0a\x0b", 2);
    QTest::newRow("a name, reversed") << "-2:TEN" << QByteArray("\x0b\x0a", 2);
    QTest::newRow("decimal is one byte whatever the count") << "4:300" << QByteArray("\x2c", 1);
    QTest::newRow("bad hex adds nothing") << "0xZZ" << QByteArray();
    QTest::newRow("bad text adds nothing") << "2:nothing" << QByteArray();
}

void TestTableTransfer::encodeToken()
{
    QFETCH(QString, token);
    QFETCH(QByteArray, bytes);
    RecordingSink sink;
    QCOMPARE(TableTransfer::encodeToken(token, noLookup), bytes);
    if (token.endsWith(QLatin1String("nothing")))
        QVERIFY(sink.contains(QStringLiteral("Send USB: Cannot convert 'nothing'")));
}

void TestTableTransfer::decode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<quint16>>("widths");
    QTest::addColumn<int>("expected");
    QTest::newRow("two tokens") << kAnswer << "1:0x%02X;4:0x%08X" << "0x55 0x00000011 " << QList<quint16>{1, 4} << 5;
    QTest::newRow("little endian") << QByteArray("\x11\x22", 2) << "-2:%04X" << "2211 " << QList<quint16>{2} << 2;
    QTest::newRow("skipped bytes") << kAnswer << "2:?;3:%d" << "17 " << QList<quint16>{2, 3} << 5;
    QTest::newRow("short answer") << QByteArray("\x01", 1) << "1:%d;4:%d" << "1 0 " << QList<quint16>{1, 0} << 5;
    QTest::newRow("no count is one byte") << kAnswer << "%x;%x" << "55 0 " << QList<quint16>{1, 1} << 2;
}

void TestTableTransfer::decode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, format);
    QFETCH(QString, text);
    QFETCH(QList<quint16>, widths);
    QFETCH(int, expected);
    const TableTransfer::Decoded decoded = TableTransfer::decode(bytes, format);
    QCOMPARE(decoded.text, text);
    QCOMPARE(decoded.widths, widths);
    QVERIFY(!decoded.failed);
    QCOMPARE(TableTransfer::expectedBytes(format), expected);
}

void TestTableTransfer::toolTipValue_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QList<quint16>>("widths");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<quint64>("value");
    QTest::addColumn<int>("offset");
    QTest::newRow("one token") << "1;0" << "85 17 " << QList<quint16>{1, 4} << true << quint64(17) << 0;
    QTest::newRow("two tokens by their widths") << "0..1;-1" << "1 2 " << QList<quint16>{1, 1} << true << quint64(0x0201) << -1;
    QTest::newRow("reversed takes all from the last") << "-0..1;-2" << "1 2 3 " << QList<quint16>{1, 1, 1} << true
                                                      << quint64(0x010203) << -2;
    QTest::newRow("hex tokens") << "0;0" << "0x1F " << QList<quint16>{1} << true << quint64(0x1F) << 0;
    QTest::newRow("beyond the answer") << "2;0" << "1 2 " << QList<quint16>{1, 1} << false << quint64(0) << 0;
    QTest::newRow("first after last") << "1..0;0" << "1 2 " << QList<quint16>{1, 1} << false << quint64(0) << 0;
}

void TestTableTransfer::toolTipValue()
{
    QFETCH(QString, format);
    QFETCH(QString, answer);
    QFETCH(QList<quint16>, widths);
    QFETCH(bool, ok);
    QFETCH(quint64, value);
    QFETCH(int, offset);
    quint64 got = 0;
    int gotOffset = 99;
    QCOMPARE(TableTransfer::toolTipValue(format, answer, widths, &got, &gotOffset), ok);
    if (ok) {
        QCOMPARE(got, value);
        QCOMPARE(gotOffset, offset);
    }
}

// ------------------------------------------------------------ the board

void TestTableTransfer::init()
{
    m_stick = new SimulatedStick;
    QVERIFY2(m_stick->isValid(), "no pseudo-terminal");
    m_stick->setLateMs(300);
    m_stick->setReply(0x01, kAnswer);
    m_stick->setReply(0x02, kAnswer);
    m_stick->setReply(0x03, QByteArray("\x55\x00", 2));
    m_stick->start();
}

void TestTableTransfer::cleanup()
{
    m_form.close();
    delete m_stick;
    m_stick = nullptr;
}

bool TestTableTransfer::openForm(const QByteArray &tableAttributes)
{
    const QByteArray head = "<ioconfig port=\"" + m_stick->portName().toUtf8() + "\" settings=\"115200;8;N;1\"/>\n";
    const QByteArray form = "<verticalcontainer>\n"
                            " <spinbox define=\"LAST\" svd=\"0\" range=\"0;65535\"/>\n"
                            " <table define=\"T\" numrows=\"4\" " + tableAttributes + ">\n"
                            "  <column type=\"regname\"/><column type=\"address\" format=\"0x%08X\"/>\n"
                            "  <column type=\"func\" format=\"%d\"/><column type=\"value\" format=\"0x%08X\"/>\n"
                            "  <column type=\"delay\" format=\"%d\"/><column type=\"answer\"/><column type=\"comment\"/>\n"
                            " </table>\n"
                            "</verticalcontainer>\n";
    return m_form.write(registerSvd(), form, head) && m_form.open();
}

void TestTableTransfer::addRow(int func, const QString &value, const QString &name)
{
    run(QStringLiteral("T.func=%1").arg(func));
    run(QStringLiteral("T.value=") + value);
    run(QStringLiteral("T.address=0x40000010"));
    run(QStringLiteral("T.registername=") + name);
}

void TestTableTransfer::answersOnTime()
{
    QVERIFY(openForm("sendformat=\"$FUNC$;4:$ADDRESS$;-4:$VALUE$\" recformat=\"1:0x%02X;4:0x%08X\" tooltiprecformat=\"1;0\""));
    addRow(1, QStringLiteral("0x1E07"));
    addRow(1, QStringLiteral("0x11"));
    run(QStringLiteral("T.row=0"));
    run(QStringLiteral("T.sendusb=1"));
    QCOMPARE(m_stick->framesSeen(), 2);
    // The last frame: func, the address most significant first, the value
    // least significant first.
    QCOMPARE(m_stick->lastFrame(), QByteArray("\x01\x40\x00\x00\x10\x11\x00\x00\x00", 9));
    QCOMPARE(table()->cellText(0, Table::Answer), QStringLiteral("0x55 0x00000011 "));
    QCOMPARE(table()->cellText(1, Table::Answer), QStringLiteral("0x55 0x00000011 "));
    // The answer is explained as the register it was read from.
    QCOMPARE(table()->cell(1, Table::Answer)->toolTip(), QStringLiteral("STATUS[12]: Idle (0b0)\nMODE[2..1]: Off (0b00)\n"));
    // Each row is lit while it is sent and goes back to white when the
    // next one is.
    QCOMPARE(table()->cell(1, Table::Answer)->background().color(), QColor(Qt::white));
    QCOMPARE(table()->answerWidths, (QList<quint16>{1, 4}));
    QCOMPARE(table()->lastRegisterNames[0], QStringLiteral("P.R"));
    // The cursor is back where the send started.
    QCOMPARE(table()->currentRowIndex(), 0);
    // The reserved defines hold the last row's numbers.
    QCOMPARE(m_form.tables().dataValue(QStringLiteral("$VALUE$"))->getValue(), quint32(0x11));
    QCOMPARE(m_form.tables().dataValue(QStringLiteral("$ADDRESS$"))->getValue(), quint32(0x40000010));
}

void TestTableTransfer::answerMissingLateOrShort_data()
{
    QTest::addColumn<int>("func");
    QTest::newRow("late") << 2;
    QTest::newRow("short") << 3;
    QTest::newRow("missing") << 4;
}

void TestTableTransfer::answerMissingLateOrShort()
{
    QFETCH(int, func);
    QVERIFY(openForm("sendformat=\"$FUNC$;4:$ADDRESS$\" recformat=\"1:0x%02X;4:0x%08X\""));
    addRow(func, QStringLiteral("1"));
    addRow(1, QStringLiteral("2"));
    run(QStringLiteral("T.row=0"));
    QElapsedTimer clock;
    clock.start();
    run(QStringLiteral("T.sendusb=1"));
    const qint64 elapsed = clock.elapsed();
    // The send ends at the first row, silently, after the bounded wait.
    QCOMPARE(m_stick->framesSeen(), 1);
    QCOMPARE(table()->cellText(0, Table::Answer), QString());
    QVERIFY2(elapsed >= 100 && elapsed < 1000, qPrintable(QString::number(elapsed)));
    QVERIFY(m_form.sink->errors.isEmpty());
    if (func == 2) {
        // The late answer does not count as the next row's.
        QTest::qWait(400);
        run(QStringLiteral("T.row=1"));
        run(QStringLiteral("T.sendusb=1"));
        QCOMPARE(table()->cellText(1, Table::Answer), QStringLiteral("0x55 0x00000011 "));
    }
}

void TestTableTransfer::sendLoopAndStartRow()
{
    QVERIFY(openForm("sendformat=\"$FUNC$\" recformat=\"1:%d\""));
    addRow(1, QStringLiteral("1"));
    addRow(1, QStringLiteral("2"));
    addRow(1, QStringLiteral("3"));
    // The first pass starts at the cursor, the others at row 0; the first
    // empty register name ends a pass.
    run(QStringLiteral("T.row=2"));
    run(QStringLiteral("T.sendloop=2"));
    run(QStringLiteral("T.sendusb=1"));
    QCOMPARE(m_stick->framesSeen(), 1 + 3);
    QCOMPARE(table()->cellText(0, Table::Answer), QStringLiteral("85 "));
    run(QStringLiteral("T.sendloop=0"));
    run(QStringLiteral("T.sendusb=1"));
    QCOMPARE(m_stick->framesSeen(), 4);
    QCOMPARE(table()->currentRowIndex(), 2);
}

void TestTableTransfer::answerIntoElementsAndBadNames()
{
    QVERIFY(openForm("sendformat=\"$FUNC$;0xAA\" recformat=\"1:?;4:%d|LAST\""));
    addRow(1, QStringLiteral("1"));
    run(QStringLiteral("T.row=0"));
    run(QStringLiteral("T.sendusb=1"));
    QCOMPARE(m_stick->lastFrame(), QByteArray("\x01\xAA", 2));
    QCOMPARE(m_form.tables().element(QStringLiteral("LAST"))->value(0), QStringLiteral("17"));
    QCOMPARE(table()->cellText(0, Table::Answer), QStringLiteral("17 "));

    const int before = m_stick->framesSeen();
    QVERIFY(openForm("sendformat=\"$FUNC$;BOGUS\" recformat=\"1:?|NOSUCH;4:%d\""));
    addRow(1, QStringLiteral("1"));
    addRow(1, QStringLiteral("1"));
    run(QStringLiteral("T.row=0"));
    run(QStringLiteral("T.sendusb=1"));
    QVERIFY(m_form.sink->contains(QStringLiteral("Send USB: Cannot convert 'BOGUS'")));
    QVERIFY(m_form.sink->contains(QStringLiteral("Invalid value in recdata: \"NOSUCH\"")));
    // The bad name ends the send at the first row.
    QCOMPARE(m_stick->framesSeen(), before + 1);
    QCOMPARE(m_stick->lastFrame(), QByteArray("\x01", 1));
}

void TestTableTransfer::delayAndSingleStep()
{
    QVERIFY(openForm("sendformat=\"$FUNC$\" recformat=\"1:%d\""));
    addRow(1, QStringLiteral("1"));
    addRow(1, QStringLiteral("2"));
    table()->setTableValue(0, Table::Delay, QStringLiteral("150"));
    run(QStringLiteral("T.row=0"));
    QElapsedTimer clock;
    clock.start();
    run(QStringLiteral("T.sendusb=1"));
    QVERIFY(clock.elapsed() >= 150);
    QCOMPARE(m_stick->framesSeen(), 2);
    // Single step in quiet mode takes the question's default: go on.
    run(QStringLiteral("T.singlestep=1"));
    run(QStringLiteral("T.row=0"));
    clock.restart();
    run(QStringLiteral("T.sendusb=1"));
    QCOMPARE(m_stick->framesSeen(), 4);
    QVERIFY(clock.elapsed() < 150 + 500);
    QVERIFY(m_form.sink->contains(QStringLiteral("SingleStep")));
}

void TestTableTransfer::withoutLink()
{
    delete m_stick;
    m_stick = new SimulatedStick;
    // A port that does not exist: the rows are walked and coloured, no
    // answer is read and nothing waits.
    const QByteArray head = "<ioconfig port=\"/dev/quillon-no-such-port\" settings=\"115200;8;N;1\"/>\n";
    const QByteArray form = "<verticalcontainer><table define=\"T\" numrows=\"2\" sendformat=\"0x01\" recformat=\"1:%d\">"
                            "<column type=\"regname\"/><column type=\"value\"/><column type=\"answer\"/></table></verticalcontainer>";
    QVERIFY(m_form.write(registerSvd(), form, head) && m_form.open());
    run(QStringLiteral("T.value=1"));
    run(QStringLiteral("T.registername=P.R"));
    run(QStringLiteral("T.row=0"));
    QElapsedTimer clock;
    clock.start();
    run(QStringLiteral("T.sendusb=1"));
    QVERIFY(clock.elapsed() < 100);
    QCOMPARE(table()->cellText(0, Table::Answer), QString());
    // Walked: lit while sent, back to white when the pass moved on.
    QCOMPARE(table()->cell(0, Table::RegName)->background().color(), QColor(Qt::white));
}

QTEST_MAIN(TestTableTransfer)
#include "tst_tabletransfer.moc"
