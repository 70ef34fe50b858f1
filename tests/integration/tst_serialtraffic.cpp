#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "SimulatedStick.h"
#include "device/DataTasks.h"
#include "device/StickLink.h"
#include "device/TerminalPort.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "shell/Console.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QTemporaryDir>
#include <QTextBrowser>

// Board traffic over a real serial port: the form talks to a pseudo-
// terminal whose far end is a simulated board. Replies that come late stay
// in the port until the next transfer; short, long and missing replies,
// the polling task, a port that disappears or does not exist, the terminal
// tab, and the bundled example run without any stick.
class TestSerialTraffic : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QVERIFY(m_dir.isValid());
        QVERIFY(writeTextFile(m_dir.filePath(QStringLiteral("mini.svd")), miniSvd()));
    }

    void init()
    {
        m_stick = new SimulatedStick;
        QVERIFY2(m_stick->isValid(), "no pseudo-terminal");
        m_stick->setLateMs(200);
        m_stick->start();
    }

    void cleanup()
    {
        // The sink goes first: it hands the messages back to the window's
        // console.
        delete m_sink;
        m_sink = nullptr;
        delete m_window;
        m_window = nullptr;
        delete m_stick;
        m_stick = nullptr;
    }

    void portOpensAtLoadAndKeepsLateReplies()
    {
        // The description names the port in capitals, as descriptions do.
        QVERIFY(openWindow(writeDescription(QStringLiteral("load.xml"), m_stick->portName().toUpper(), QString())));
        DataTasks &tasks = m_window->dataTasks();
        QVERIFY(tasks.existingLink());
        QVERIFY(stickConnected);
        QVERIFY(m_stick->portName().endsWith(tasks.existingLink()->serialPort().portName()));
        QVERIFY(!m_sink->contains(QStringLiteral("Cannot connect")));
        QCOMPARE(tasks.existingLink()->serialPort().baudRate(), 9600);
        QVERIFY(tasks.isPolling());

        m_window->sendUSB(QStringLiteral("0x01;2:0x0a0b;-2:COUNT"));
        QTRY_COMPARE(m_stick->framesSeen(), 1);
        QCOMPARE(m_stick->lastFrame().toHex(), QByteArray("010a0b0201"));

        // A reply that comes late stays in the port until the next transfer.
        m_stick->setReply(0x02, QByteArray::fromHex("1234"));
        m_window->sendUSB(QStringLiteral("0x02"));
        m_window->recData(QStringLiteral("2:VALUE"));
        QVERIFY(m_sink->contains(QStringLiteral("USB timeout: cannot supply (\"2:VALUE\"). 2 bytes needed, 0 available.<br>")));
        QCOMPARE(element(QStringLiteral("VALUE"))->value(0), QStringLiteral("0"));
        QCOMPARE(m_window->dataTasks().ioTimeoutCount, quint16(1));

        QTRY_COMPARE(m_stick->repliesSent(), 1);
        m_window->sendUSB(QStringLiteral("0x04"));
        m_window->recData(QStringLiteral("2:VALUE"));
        QCOMPARE(element(QStringLiteral("VALUE"))->value(0), QString::number(0x1234));
    }

    void replies_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("recdata");
        QTest::addColumn<QString>("value");
        QTest::addColumn<quint32>("raw");
        QTest::addColumn<QString>("message");
        QTest::newRow("exact") << QByteArray::fromHex("01020304") << "2:VALUE;-2:RAW" << "258" << quint32(0x0403) << "";
        QTest::newRow("longer: the rest is left") << QByteArray::fromHex("0102030405060708") << "2:VALUE;?;RAW" << "258"
                                                  << quint32(0x04) << "";
        QTest::newRow("shorter: nothing changes") << QByteArray::fromHex("0102") << "2:VALUE;-2:RAW" << "0" << quint32(0)
                                                  << "(\"2:VALUE;-2:RAW\"). 4 bytes needed, 2 available.<br>";
        QTest::newRow("unknown destination") << QByteArray::fromHex("010203") << "VALUE;GHOST;RAW" << "1" << quint32(0)
                                             << "Invalid value in recdata: \"GHOST\"";
    }

    void replies()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QString, recdata);
        QFETCH(QString, value);
        QFETCH(quint32, raw);
        QFETCH(QString, message);
        QVERIFY(openWindow(writeDescription(QStringLiteral("replies.xml"), m_stick->portName(), QString())));
        requestAndPull(0x02, reply);
        m_sink->clear();
        m_window->recData(recdata);
        QCOMPARE(element(QStringLiteral("VALUE"))->value(0), value);
        QCOMPARE(m_window->dataTasks().existingLink()->receivedSize(), reply.size());
        QCOMPARE(m_window->dataValue(QStringLiteral("RAW"))->value, raw);
        if (message.isEmpty())
            QVERIFY2(m_sink->console.isEmpty() && m_sink->errors.isEmpty(), qPrintable(m_sink->console.join(QLatin1Char('\n'))));
        else
            QVERIFY2(m_sink->contains(message), qPrintable((m_sink->console + m_sink->errors).join(QLatin1Char('\n'))));
    }

    void actionsOfAnElement()
    {
        QVERIFY(openWindow(writeDescription(QStringLiteral("action.xml"), m_stick->portName(), QString())));
        m_stick->setReply(0x02, QByteArray::fromHex("0a0b"));
        // The spin box's action sends its data with COUNT's value, then waits
        // for its reply, which is late: the time-out names the element.
        QVERIFY(element(QStringLiteral("TRIGGER"))->setValue(QStringLiteral("1"), 0));
        QTRY_COMPARE(m_stick->framesSeen(), 1);
        QCOMPARE(m_stick->lastFrame().toHex(), QByteArray("020102"));
        QVERIFY(m_sink->contains(QStringLiteral("cannot supply TRIGGER(\"2:VALUE\"). 2 bytes needed, 0 available.")));
        QTRY_COMPARE(m_stick->repliesSent(), 1);
        // The next change's transfer brings the first reply in.
        QVERIFY(element(QStringLiteral("TRIGGER"))->setValue(QStringLiteral("2"), 0));
        QCOMPARE(element(QStringLiteral("VALUE"))->value(0), QString::number(0x0a0b));
        QTRY_COMPARE(m_stick->framesSeen(), 2);

        // An action runs only while its condition holds.
        QVERIFY(element(QStringLiteral("GATE"))->setValue(QStringLiteral("2"), 0));
        QTest::qWait(50);
        QCOMPARE(m_stick->framesSeen(), 2);
        QVERIFY(element(QStringLiteral("GATE"))->setValue(QStringLiteral("3"), 0));
        QTRY_COMPARE(m_stick->framesSeen(), 3);
        QCOMPARE(m_stick->lastFrame().toHex(), QByteArray("0403"));
    }

    void pollingTask()
    {
        QVERIFY(openWindow(writeDescription(QStringLiteral("poll.xml"), m_stick->portName(), QString())));
        QVERIFY(m_window->dataTasks().isPolling());
        // The task consumes whatever reply the link holds once it is long
        // enough; it sends nothing of its own.
        QTest::qWait(100);
        QCOMPARE(m_stick->framesSeen(), 0);
        requestAndPull(0x02, QByteArray::fromHex("3412"));
        QTRY_COMPARE(element(QStringLiteral("POLLED"))->value(0), QString::number(0x1234));

        // Closing the document stops the thread and drops the link.
        m_window->setWindowModified(false);
        m_window->newProject();
        QVERIFY(!m_window->dataTasks().isPolling());
        QVERIFY(!m_window->dataTasks().existingLink());
    }

    void portDisappears()
    {
        QVERIFY(openWindow(writeDescription(QStringLiteral("gone.xml"), m_stick->portName(), QString())));
        m_window->sendUSB(QStringLiteral("0x05"));
        QTRY_COMPARE(m_stick->framesSeen(), 1);
        // The far end is gone: sending fails, the one reopen fails, the reply
        // wait ends with its message.
        QTRY_VERIFY(!QFileInfo::exists(m_stick->portName()));
        m_window->sendUSB(QStringLiteral("0x01;0x02"));
        m_window->recData(QStringLiteral("2:VALUE"));
        QVERIFY(!stickConnected);
        QVERIFY(m_sink->contains(QStringLiteral("2 bytes needed, 0 available.")));
        m_window->sendUSB(QStringLiteral("0x01"));
        QCOMPARE(element(QStringLiteral("VALUE"))->value(0), QStringLiteral("0"));
    }

    void portsThatDoNotOpen_data()
    {
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("message");
        QTest::newRow("no such device") << "/dev/quillon_no_such_tty"
                                        << "This script uses an /DEV/QUILLON_NO_SUCH_TTY, but there can no one be found.<br>"
                                           "Please connect one to the USB.<br>";
        // "?" asks; a quiet run counts the question as cancelled.
        QTest::newRow("asked, not chosen") << "?" << "selection \"Select a COM port\" counts as cancelled.";
    }

    void portsThatDoNotOpen()
    {
        QFETCH(QString, port);
        QFETCH(QString, message);
        QVERIFY(openWindow(writeDescription(QStringLiteral("closed.xml"), port, QString())));
        QVERIFY2(m_sink->contains(message), qPrintable(m_sink->console.join(QLatin1Char('\n'))));
        QCOMPARE(ioPortName, port.toUpper());
        QVERIFY(!stickConnected);
        m_window->sendUSB(QStringLiteral("0x01"));
        m_window->recData(QStringLiteral("VALUE"));
        QVERIFY(m_sink->contains(QStringLiteral("1 bytes needed, 0 available.")));
        QCOMPARE(m_stick->framesSeen(), 0);
        // The firmware query is for the stick only.
        QCOMPARE(m_window->checkFirmwareVersion(true), -3);
        QVERIFY(m_sink->contains(QStringLiteral("Currently loaded XML doesn't use an Tav.")));
    }

    void terminalTab()
    {
        SimulatedStick terminal;
        QVERIFY(terminal.isValid());
        const QString extra = QStringLiteral("<terminal port=\"%1\" settings=\"115200;8;N;1\"/>\n").arg(terminal.portName());
        QVERIFY(openWindow(writeDescription(QStringLiteral("terminal.xml"), m_stick->portName(), extra)));
        Console *console = m_window->console();
        QCOMPARE(console->tabs()->tabText(console->tabs()->currentIndex()), QStringLiteral("Terminal"));
        QVERIFY(m_window->terminalPort()->isOpen());
        // An unfinished line waits for its end.
        QVERIFY(terminal.writeRaw("boot"));
        QTest::qWait(50);
        QVERIFY(!console->terminal()->toPlainText().contains(QLatin1String("boot")));
        QVERIFY(terminal.writeRaw(" ok\n"));
        QTRY_VERIFY(console->terminal()->toPlainText().contains(QLatin1String("boot ok")));
        QVERIFY(!console->plainText().contains(QLatin1String("boot ok")));
    }

    void scriptCommands()
    {
        QVERIFY(openWindow(writeDescription(QStringLiteral("script.xml"), m_stick->portName(), QString())));
        DataTasks &tasks = m_window->dataTasks();
        // SETTAVCHECK takes its first parameter but wants two.
        QVERIFY(!m_window->execScriptLine(QStringLiteral("SetTavCheck(0)"), 1));
        QCOMPARE(tasks.ioCheckMode, quint16(3));
        QVERIFY(m_window->execScriptLine(QStringLiteral("SetTavCheck(0, 0)"), 2));
        QCOMPARE(tasks.ioCheckMode, quint16(0));
        m_sink->clear();
        m_window->recData(QStringLiteral("2:VALUE"));
        QVERIFY(m_sink->console.isEmpty());
        QCOMPARE(tasks.ioTimeoutCount, quint16(1));

        const QString log = m_dir.filePath(QStringLiteral("script-traffic.log"));
        QVERIFY(m_window->execScriptLine(QStringLiteral("SetTavLogging(3, 0,%1)").arg(log), 3));
        m_window->sendUSB(QStringLiteral("0x04;0x2a"));
        QCOMPARE(m_sink->console, QStringList{"<font color=\"green\">--> 0x04 0x2a </b></font><br>"});
        QCOMPARE(readTextFile(log), QStringLiteral("<font color=\"green\">--> 0x04 0x2a </b></font><br>\n"));

        // The task download is for the stick only.
        QVERIFY(m_window->execScriptLine(QStringLiteral("SendTask(task.hex, 1, 1, 2, 3)"), 4));
        QVERIFY(m_sink->contains(QStringLiteral("Currently loaded XML doesn't use an Tav.")));
    }

    void exampleWithoutStick()
    {
        // The example's traffic tab with no stick on the machine: the actions'
        // replies time out with their message and the run goes on to its end.
        const QString script = m_dir.filePath(QStringLiteral("traffic.script"));
        QVERIFY(writeTextFile(script, "Set(BOARD.LED, 1)\nSet(BOARD.LED, 0)\nExit(2)\n"));
        const QString mirror = m_dir.filePath(QStringLiteral("traffic.log"));
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-b") + script,
                                                QStringLiteral("-c") + mirror, example});
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        const QString log = readTextFile(mirror);
        QVERIFY2(log.contains(QLatin1String("USB timeout: cannot supply BOARD.LED(")), qPrintable(log));
        QVERIFY(!log.contains(QLatin1String("Unknown define")));
    }

private:
    QString writeDescription(const QString &name, const QString &port, const QString &extra);
    MainWindow *openWindow(const QString &path);
    // Sends a request the board answers late, waits for the answer to be in
    // the port, and pulls it in with a frame the board ignores.
    void requestAndPull(quint8 command, const QByteArray &reply);
    ActiveElement *element(const QString &name) const { return m_window->document()->tables().element(name); }

    QTemporaryDir m_dir;
    SimulatedStick *m_stick = nullptr;
    MainWindow *m_window = nullptr;
    RecordingSink *m_sink = nullptr;
};

QString TestSerialTraffic::writeDescription(const QString &name, const QString &port, const QString &extra)
{
    const QByteArray text = "<svd file=\"mini.svd\"/>\n"
                            "<ioconfig port=\"" + port.toUtf8() + "\" settings=\"9600;8;N;1\"/>\n"
                            "<iocheck mode=\"3\"/>\n" + extra.toUtf8() +
                            "<verticalcontainer>\n"
                            " <spinbox define=\"TRIGGER\" svd=\"0\" range=\"0;100\">\n"
                            "  <action event=\"changed\" cmd=\"sendUSB\" data=\"0x02;2:COUNT\" recdata=\"2:VALUE\"/>\n"
                            " </spinbox>\n"
                            " <spinbox define=\"GATE\" svd=\"0\" range=\"0;100\">\n"
                            "  <action event=\"changed\" cmd=\"sendUSB\" data=\"0x04;GATE\" cond=\"GATE&gt;2\"/>\n"
                            " </spinbox>\n"
                            " <spinbox define=\"VALUE\" svd=\"0\" range=\"0;65535\"/>\n"
                            " <spinbox define=\"COUNT\" svd=\"0\" range=\"0;65535\" default=\"258\"/>\n"
                            " <spinbox define=\"POLLED\" svd=\"0\" range=\"0;65535\"/>\n"
                            " <var define=\"RAW\"/>\n"
                            " <communication data=\"0x09\" recdata=\"-2:POLLED\" interval=\"30\" timeout=\"20\"/>\n"
                            "</verticalcontainer>\n";
    const QString path = m_dir.filePath(name);
    writeTextFile(path, signedDescription(descriptionText(text)));
    return path;
}

MainWindow *TestSerialTraffic::openWindow(const QString &path)
{
    StartOptions options;
    options.quiet = true;
    m_window = new MainWindow(options);
    m_sink = new RecordingSink;
    if (!m_window->open(path))
        return nullptr;
    m_window->startUp(false);
    return m_window;
}

void TestSerialTraffic::requestAndPull(quint8 command, const QByteArray &reply)
{
    const int answered = m_stick->repliesSent();
    m_stick->setReply(command, reply);
    m_window->sendUSB(QStringLiteral("0x%1").arg(command, 2, 16, QLatin1Char('0')));
    QTRY_COMPARE(m_stick->repliesSent(), answered + 1);
    // Frame 0x04 gets no answer: its transfer reads what the port holds.
    m_window->sendUSB(QStringLiteral("0x04"));
}

QTEST_MAIN(TestSerialTraffic)
#include "tst_serialtraffic.moc"
