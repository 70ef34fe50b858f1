#include <QtTest>

#include "FakeElement.h"
#include "FakeHid.h"
#include "RecordingSink.h"
#include "device/DataTasks.h"
#include "device/StickFirmware.h"
#include "device/StickLink.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "shell/Dialogs.h"

#include <QRegularExpression>
#include <QTemporaryDir>

static QByteArray hex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text));
}

// The stick's HID path against a stand-in library: device order, report
// framing, the traffic log, data strings and replies through the link,
// the task download's frames, the firmware query and the updater run.
class TestStickLink : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        Dialogs::setQuiet(true);
        StickLink::setHidFactory([this] { return new FakeHid(&m_hid); });
        QVERIFY(m_dir.isValid());
    }

    void init()
    {
        m_hid = FakeHid::State();
        ioPortName.clear();
        ioPortSettings.clear();
        m_sink = new RecordingSink;
    }

    void cleanup()
    {
        delete m_sink;
        m_sink = nullptr;
    }

    void deviceOrder_data()
    {
        QTest::addColumn<bool>("tav");
        QTest::addColumn<bool>("ft260");
        QTest::addColumn<bool>("openFails");
        QTest::addColumn<int>("opened");
        QTest::newRow("stick") << true << false << false << 0x0A10;
        QTest::newRow("FT260 bridge") << false << true << false << 0x6030;
        // Both present: the question's default answer is the first stick.
        QTest::newRow("both") << true << true << false << 0x0A10;
        QTest::newRow("none") << false << false << false << 0;
        QTest::newRow("open fails") << true << true << true << 0;
    }

    void deviceOrder()
    {
        QFETCH(bool, tav);
        QFETCH(bool, ft260);
        QFETCH(bool, openFails);
        QFETCH(int, opened);
        m_hid.tavPresent = tav;
        m_hid.ft260Present = ft260;
        m_hid.openFails = openFails;
        {
            StickLink link;
            QCOMPARE(stickConnected, opened != 0);
            QCOMPARE(m_hid.opened.isEmpty() ? 0 : int(m_hid.opened.first()), opened);
            QCOMPARE(m_hid.inits, 1);
        }
        QVERIFY(!stickConnected);
        QCOMPARE(m_hid.exits, 1);
        QCOMPARE(m_hid.closes, opened != 0 ? 1 : 0);
    }

    void reportFraming()
    {
        m_hid.tavPresent = true;
        m_hid.replies = {hex("a1b2c3")};
        StickLink link;
        QVERIFY(link.transfer(hex("0110")));
        // The report number goes first; the reply is always a whole report.
        QCOMPARE(m_hid.written.last().toHex(), QByteArray("000110"));
        const QByteArray reply = link.takeReceived();
        QCOMPARE(reply.size(), 64);
        QCOMPARE(reply.left(4).toHex(), QByteArray("a1b2c300"));
        QCOMPARE(reply.count('\0'), 61);

        // Nothing to send still writes the report byte; a read of nothing is a
        // report of zeros.
        QVERIFY(link.transfer(QByteArray()));
        QCOMPARE(m_hid.written.last(), QByteArray(1, '\0'));
        QCOMPARE(link.takeReceived(), QByteArray(64, '\0'));

        // A failed read or write leaves no reply.
        m_hid.readFails = true;
        QVERIFY(!link.transfer(hex("01")));
        QCOMPARE(link.receivedSize(), 0);
        m_hid.readFails = false;
        m_hid.writeFails = true;
        QVERIFY(!link.transfer(hex("01")));
        QCOMPARE(link.receivedSize(), 0);
    }

    void loggedLength_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("length");
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("one byte") << hex("05") << 1;
        QTest::newRow("two bytes") << hex("0500") << 2;
        QTest::newRow("short reply keeps two") << hex("050607") << 2;
        QTest::newRow("up to the last nonzero") << hex("01000000000009") << 7;
        // A report is cut at byte 32 and its zero padding left out, but never
        // below two bytes.
        QTest::newRow("report of zeros") << QByteArray(64, '\0') << 2;
        QTest::newRow("report with data") << (hex("0155aabbcc") + QByteArray(59, '\0')) << 5;
        QTest::newRow("report full") << QByteArray(64, '\x7f') << 33;
    }

    void loggedLength()
    {
        QFETCH(QByteArray, bytes);
        QTEST(StickLink::loggedLength(bytes), "length");
    }

    void trafficLog()
    {
        m_hid.tavPresent = true;
        m_hid.replies = {hex("0155aabbcc"), hex("01")};
        const QString file = m_dir.filePath(QStringLiteral("traffic.log"));
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        StickLink link;
        link.setLogging(3, true, file);
        QVERIFY(link.transfer(hex("0a01ff")));
        link.takeReceived();

        QCOMPARE(m_sink->console.size(), 2);
        const QRegularExpression sent(QStringLiteral("^<font color=\"green\">--> \\d\\d:\\d\\d:\\d{4} 0x0a 0x01 0xff </b></font><br>$"));
        const QRegularExpression received(QStringLiteral("^<font color=\"blue\">&lt;-- \\d\\d:\\d\\d:\\d{4} 0x01 0x55 0xaa 0xbb 0xcc </b></font><br>$"));
        QVERIFY2(sent.match(m_sink->console.at(0)).hasMatch(), qPrintable(m_sink->console.at(0)));
        QVERIFY2(received.match(m_sink->console.at(1)).hasMatch(), qPrintable(m_sink->console.at(1)));

        // File only, no time stamps; mode 0 closes the file.
        m_sink->clear();
        link.setLogging(2, false, file);
        QVERIFY(link.transfer(hex("02")));
        link.setLogging(0, false, file);
        QVERIFY(link.transfer(hex("03")));
        QVERIFY(m_sink->console.isEmpty());
        QFile log(file);
        QVERIFY(log.open(QIODevice::ReadOnly | QIODevice::Text));
        QCOMPARE(QString::fromUtf8(log.readAll()), QStringLiteral("<font color=\"green\">--> 0x02 </b></font><br>\n"));
    }

    void sendAndReceive()
    {
        m_hid.tavPresent = true;
        DocumentTables tables;
        QWidget owner;
        auto *element = new FakeElement(QStringLiteral("N"), &owner);
        element->maximum = 0xFFFFFFFF;
        tables.addElement(QStringLiteral("N"), element);
        auto *define = tables.addDataValue(new DataClass(QStringLiteral("N")));
        define->value = 0x22;
        auto *raw = tables.addDataValue(new DataClass(QStringLiteral("RAW")));
        auto *other = new FakeElement(QStringLiteral("E"), &owner);
        other->maximum = 0xFFFF;
        other->number = 0x1234;
        tables.addElement(QStringLiteral("E"), other);

        DataTasks tasks(tables);
        // A send prefers the define, the reply the element of the same name.
        m_hid.replies = {hex("aabbccdd11223344")};
        tasks.sendUSB(QStringLiteral("N;2:E;-2:E;bogus"));
        QCOMPARE(m_hid.written.last().toHex(), QByteArray("002212343412"));
        QVERIFY(m_sink->contains(QStringLiteral("Send USB: Cannot convert \"bogus\"")));

        tasks.recData(QStringLiteral("2:N;?;-2:RAW;-3:E"), QStringLiteral("sender"));
        QCOMPARE(element->number, qint64(0xaabb));
        QCOMPARE(raw->value, quint32(0x11dd));
        QCOMPARE(other->number, qint64(0x443322));

        // A failed transfer reopens once and tries again.
        m_hid.writeFails = true;
        const int opens = m_hid.opened.size();
        tasks.sendUSB(QStringLiteral("0x01"));
        QCOMPARE(m_hid.opened.size(), opens + 1);
    }

    void timeoutsAndTheTenthRule()
    {
        // A stick path reply is always 64 bytes: 64 never time out, 65 always.
        m_hid.tavPresent = true;
        DocumentTables tables;
        tables.addDataValue(new DataClass(QStringLiteral("V")));
        DataTasks tasks(tables);
        tasks.sendUSB(QStringLiteral("0x01"));
        tasks.recData(QStringLiteral("64:?"), QStringLiteral("A"));
        QCOMPARE(tasks.ioTimeoutCount, quint16(0));
        QVERIFY(m_sink->console.isEmpty());

        const QString message = QStringLiteral("Cannot receive requested data from external device. USB timeout: cannot supply "
                                               "A(\"65:?\"). 65 bytes needed, 64 available.<br>");
        for (int i = 1; i <= 10; ++i) {
            tasks.recData(QStringLiteral("65:?"), QStringLiteral("A"));
            QCOMPARE(tasks.ioTimeoutCount, quint16(i));
        }
        QCOMPARE(m_sink->console.count(message), 10);
        // After the tenth, a reply of two or more bytes resets the count and the
        // wait goes on as before.
        tasks.recData(QStringLiteral("65:?"), QStringLiteral("A"));
        QCOMPARE(tasks.ioTimeoutCount, quint16(1));
        QCOMPARE(m_sink->console.count(message), 11);

        // Without a reply held, the eleventh returns at once and says nothing.
        for (int i = 0; i < 9; ++i)
            tasks.recData(QStringLiteral("65:?"), QStringLiteral("A"));
        QCOMPARE(tasks.ioTimeoutCount, quint16(10));
        m_hid.readFails = true;
        tasks.sendUSB(QStringLiteral("0x01"));
        m_sink->clear();
        tasks.recData(QStringLiteral("V"), QStringLiteral("A"));
        QVERIFY(m_sink->console.isEmpty());
        QCOMPARE(tasks.ioTimeoutCount, quint16(10));

        // Check mode 0 or without bit 0: counted, not printed.
        tasks.ioTimeoutCount = 0;
        tasks.ioCheckMode = 2;
        tasks.recData(QStringLiteral("V"), QStringLiteral("A"));
        QCOMPARE(tasks.ioTimeoutCount, quint16(1));
        QVERIFY(m_sink->console.isEmpty());
    }

    void tableReplyWait()
    {
        DocumentTables tables;
        DataTasks tasks(tables);
        QVERIFY(!tasks.waitForTableReply(1));
        m_hid.tavPresent = true;
        tasks.sendUSB(QStringLiteral("0x01"));
        QVERIFY(tasks.waitForTableReply(64));
        QVERIFY(!tasks.waitForTableReply(65));
    }

    void taskFrames_data()
    {
        QTest::addColumn<int>("payload");
        QTest::addColumn<int>("frames");
        QTest::newRow("empty") << 0 << 1;
        QTest::newRow("first frame full") << 52 << 1;
        // A following frame that is not filled is not sent.
        QTest::newRow("one byte more") << 53 << 1;
        QTest::newRow("two full frames") << 112 << 2;
        QTest::newRow("three less one") << 171 << 2;
        QTest::newRow("three full frames") << 172 << 3;
    }

    void taskFrames()
    {
        QFETCH(int, payload);
        QFETCH(int, frames);
        QByteArray bytes;
        for (int i = 0; i < payload; ++i)
            bytes.append(char(i + 1));
        const QList<QByteArray> list = DataTasks::taskFrames(bytes, quint16(payload), 7, 9, 0xff, 0xbeef);
        QCOMPARE(list.size(), frames);
        const QByteArray &first = list.first();
        QCOMPARE(first.size(), 64);
        QCOMPARE(first.left(10).toHex(),
                 QByteArray("0a010701ffbeef") + QByteArray::number(payload, 16).rightJustified(4, '0')
                     + QByteArray::number(qMin(payload, 52), 16).rightJustified(2, '0'));
        QCOMPARE(first.mid(10, qMin(payload, 52)), bytes.left(52));
        for (int i = 1; i < list.size(); ++i) {
            const QByteArray &frame = list.at(i);
            QCOMPARE(frame.size(), 64);
            QCOMPARE(frame.left(4).toHex(), QByteArray("0a02") + QByteArray::number(i, 16).rightJustified(2, '0') + "3c");
            QCOMPARE(frame.mid(4), bytes.mid(52 + 60 * (i - 1), 60));
        }
    }

    void taskDownload()
    {
        const QString hexFile = m_dir.filePath(QStringLiteral("task.hex"));
        // 16 + 16 + 16 + 16 bytes of data, an address record and the end; the
        // checksums are not looked at.
        QByteArray text;
        for (int r = 0; r < 4; ++r)
            text += ":10000000" + QByteArray(16, char('0' + r)).toHex() + "00\r\n";
        text += ":020000040800F2\r\n:00000001FF\r\n";
        QFile f(hexFile);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(text);
        f.close();
        quint16 total = 0;
        QCOMPARE(DataTasks::hexPayload(text, &total).size(), 64);
        QCOMPARE(total, quint16(64));

        m_hid.tavPresent = true;
        DocumentTables tables;
        DataTasks tasks(tables);
        m_hid.replies = {hex("0a55"), hex("0a55")};
        QCOMPARE(tasks.sendTask(hexFile, 3, 1, 2, 0x0102), quint8(1));
        // 52 bytes in the first frame; the 12 left do not fill a second.
        QCOMPARE(m_hid.written.size(), 1);
        QCOMPARE(m_hid.written.first().size(), 65);
        QCOMPARE(m_hid.written.first().left(11).toHex(), QByteArray("000a010301020102004034"));

        // A refusal stops the download.
        m_hid.written.clear();
        m_hid.replies = {hex("0a00")};
        QCOMPARE(tasks.sendTask(hexFile, 3, 0, 2, 0), quint8(0));
        QCOMPARE(m_hid.written.size(), 1);

        QCOMPARE(tasks.sendTask(m_dir.filePath(QStringLiteral("missing.hex")), 3, 0, 0, 0), quint8(0xFF));
        QVERIFY(m_sink->contains(QStringLiteral("Cannot open file")));
    }

    void firmwareVersions_data()
    {
        QTest::addColumn<QString>("min");
        QTest::addColumn<QString>("max");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("text");
        const QString low = QStringLiteral("<font color=\"red\">\n\nVersion is too low for the currently loaded XML (needs V.1.2.3..V.2.0.0).</font>");
        const QString high = QStringLiteral("<font color=\"red\">\n\nVersion is too high for the currently loaded XML (needs V.1.2.3..V.2.0.0).</font>");
        QTest::newRow("no range") << "0.0.0" << "0.0.0" << hex("0100010203") + QByteArray(1, 0) << 99
                                  << "Tav Firmware Version 1.2.3<font color=\"orange\">\n\nCurrently loaded XML has no version to compare with.</font>";
        QTest::newRow("equal to min") << "1.2.3" << "2.0.0" << hex("010001020300") << 0 << "";
        QTest::newRow("equal to max") << "1.2.3" << "2.0.0" << hex("010002000000") << 0 << "";
        QTest::newRow("too low") << "1.2.3" << "2.0.0" << hex("010001020200") << -1 << "Tav Firmware Version 1.2.2" + low;
        QTest::newRow("too high") << "1.2.3" << "2.0.0" << hex("010002000100") << 1 << "Tav Firmware Version 2.0.1" + high;
        // The fold makes 1.12.0 equal to 2.2.0.
        QTest::newRow("folded") << "2.2.0" << "2.9.9" << hex("0100010c0000") << 0 << "";
    }

    void firmwareVersions()
    {
        QFETCH(QString, min);
        QFETCH(QString, max);
        QFETCH(QByteArray, reply);
        QFETCH(int, state);
        QFETCH(QString, text);
        m_hid.tavPresent = true;
        m_hid.replies = {reply, reply};
        DocumentTables tables;
        DataTasks tasks(tables);
        StickFirmware firmware(tasks, nullptr);
        firmware.setRange(min, max);

        // At load (quiet) only a version that is not valid is printed.
        QCOMPARE(firmware.checkFirmwareVersion(true), state);
        QCOMPARE(m_hid.written.first().toHex(), QByteArray("000110"));
        QString html = text;
        html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
        QCOMPARE(m_sink->console.join(QString()), state == 0 ? QString() : html + QStringLiteral("<br>"));

        // The menu action always shows its box (the console in quiet mode).
        m_sink->clear();
        QCOMPARE(firmware.checkFirmwareVersion(false), state);
        QVERIFY2(m_sink->console.join(QString()).startsWith(QStringLiteral("Tav Firmware Version")), qPrintable(m_sink->console.join(QString())));
    }

    void firmwareWithoutAnswer()
    {
        DocumentTables tables;
        DataTasks tasks(tables);
        StickFirmware firmware(tasks, nullptr);
        QCOMPARE(firmware.checkFirmwareVersion(true), -2);
        QCOMPARE(m_sink->console, QStringList{"<font color=\"orange\">Could not retrieve firmware version.</font><br>"});
        m_sink->clear();
        QCOMPARE(firmware.checkFirmwareVersion(false), -2);
        QVERIFY(m_sink->contains(QStringLiteral("Could not retrieve firmware version.")));

        QCOMPARE(StickFirmware::compare(StickFirmware::parse(QStringLiteral("*.*.*")), StickFirmware::parse(QStringLiteral("0.0.1"))), -1);
    }

    void updater_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("success");
        QTest::addColumn<QString>("text");
        QTest::newRow("success") << true << QByteArray("5\n") << true << "Update successfully finished<br>(even if progress bar hasn't reached 100%).";
        QTest::newRow("failure") << true << QByteArray("0\n") << false << "Update failed.";
        QTest::newRow("other code") << true << QByteArray("1\n") << false << "Update failed.";
        QTest::newRow("updater missing") << false << QByteArray("5\n") << false << "Tav-Updater.exe not found.";
    }

    void updater()
    {
        QFETCH(bool, installed);
        QFETCH(QByteArray, answer);
        QFETCH(bool, success);
        QFETCH(QString, text);
        QTemporaryDir folder;
        if (installed)
            QVERIFY(QFile::copy(QStringLiteral(QUILLON_FAKE_UPDATER), folder.filePath(StickFirmware::updaterName())));
        const QString fw = folder.filePath(QStringLiteral("stick.hex"));
        QFile file(fw);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(answer);
        file.close();

        m_hid.tavPresent = true;
        DocumentTables tables;
        DataTasks tasks(tables);
        tasks.link();
        StickFirmware firmware(tasks, nullptr);
        firmware.setFolder(folder.path());
        QList<bool> timers;
        firmware.setTimersRunning = [&timers](bool running) { timers << running; };
        QCOMPARE(firmware.runUpdater(fw), success);
        QCOMPARE(m_sink->console.join(QString()), text + QStringLiteral("<br>"));
        if (installed) {
            // The link is closed for the updater and opened again; the timers
            // rest meanwhile.
            QCOMPARE(m_hid.closes, 1);
            QCOMPARE(m_hid.opened.size(), 2);
            QCOMPARE(timers, (QList<bool>{false, true}));
            QVERIFY(stickConnected);
        }
    }

private:
    FakeHid::State m_hid;
    RecordingSink *m_sink = nullptr;
    QTemporaryDir m_dir;
};

QTEST_MAIN(TestStickLink)
#include "tst_sticklink.moc"
