#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "device/ELFReader.h"
#include "views/FloatSeriesData.h"
#include "views/MyQwtPlot.h"
#include "SimulatedProbe.h"
#include "device/JLinkApi.h"
#include "device/JLinkConnection.h"
#include "device/JLinkDownload.h"
#include "device/JLinkProject.h"
#include "device/JLinkTargetMemory.h"
#include "device/SeggerThread.h"
#include "device/TargetAccess.h"
#include "device/TargetVariable.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "shell/Dialogs.h"
#include "shell/MainWindow.h"

#include <QSettings>
#include <QSignalSpy>
#include <qwt_dial.h>
#include <qwt_thermo.h>
#include <QTemporaryDir>

#include <sys/resource.h>

namespace {

// The debug channel, kept for the callbacks' lines.
QStringList g_debug;
QtMessageHandler g_former = nullptr;

void keepDebug(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        g_debug << text;
    else if (g_former)
        g_former(type, context, text);
}

double processCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

const QStringList kConnectSteps = {"OpenEx", "ExecCommand ProjectFile = Settings.jlink", "ExecCommand device = NVC4207",
                                   "TIF_Select 1", "SetSpeed 4000", "Connect"};

} // namespace

// The probe library through the real loader, the connect, the polling
// thread, writes and downloads, against the simulated library of the build.
class TestJLink : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        Dialogs::setQuiet(true);
        g_former = qInstallMessageHandler(keepDebug);
        m_probe = new SimulatedProbe;
    }

    void cleanupTestCase()
    {
        qInstallMessageHandler(g_former);
        delete m_probe;
    }

    void init()
    {
        m_sink = new RecordingSink;
        g_debug.clear();
        TargetMemory::install(&m_memory);
    }

    void cleanup()
    {
        TargetMemory::install(nullptr);
        qDeleteAll(m_data);
        m_data.clear();
        delete m_sink;
    }

    // Module folder, the executable's folder, then the store's InstallPath.
    void searchOrder()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        const QStringList folders = JLinkApi::searchFolders();
        QCOMPARE(folders.size(), 3);
        QCOMPARE(folders.at(0), QCoreApplication::applicationDirPath());
        QCOMPARE(folders.at(1), QCoreApplication::applicationDirPath());
        QCOMPARE(folders.at(2), SimulatedProbe::folder(SimulatedProbe::Full));
        QCOMPARE(JLinkApi::installPath(), SimulatedProbe::folder(SimulatedProbe::Full));
        // Nothing beside the test: the library comes from the install path.
        QVERIFY(JLinkApi::load());
        QCOMPARE(JLinkApi::loadedFile(), QDir(SimulatedProbe::folder(SimulatedProbe::Full)).filePath("libjlinkarm.so"));
        QVERIFY(m_sink->console.isEmpty());
    }

    // Not loaded until a wrapper is called; then one box, and every
    // wrapper answers 0.
    void missingLibrary()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Missing));
        QVERIFY(!JLinkApi::isLoaded());
        QCOMPARE(JLinkApi::JLINKARM_IsOpen(), 0);
        quint32 word = 0x12345678;
        QCOMPARE(JLinkApi::JLINKARM_ReadMem(0x20000000, 4, &word), 0);
        QCOMPARE(word, 0x12345678u);
        QCOMPARE(JLinkApi::JLINKARM_Connect(), 0);
        QCOMPARE(JLinkApi::JLINKARM_OpenEx(nullptr, nullptr), static_cast<const char *>(nullptr));
        QCOMPARE(JLinkApi::JLINK_DownloadFile("x.hex", 0), 0);
        QCOMPARE(m_sink->console.size(), 1);
        QCOMPARE(m_sink->console.first(), QStringLiteral("Target DLL libjlinkarm.so not found !<br>"));
        QVERIFY(!JLinkApi::isLoaded());
    }

    void missingFunction()
    {
        QVERIFY(m_probe->use(SimulatedProbe::WithoutGo));
        QCOMPARE(JLinkApi::JLINKARM_Connect(), 0);
        QVERIFY(JLinkApi::isLoaded());
        QVERIFY(m_sink->console.isEmpty());
        JLinkApi::JLINKARM_Go();
        JLinkApi::JLINKARM_Go();
        QCOMPARE(m_sink->console, QStringList{QStringLiteral("DLL function JLINKARM_Go(...) not found !<br>")});
        QCOMPARE(m_probe->log(), QStringList{"Connect"});
    }

    // A file of that name that is no library: the search goes on, and ends
    // with the box.
    void brokenLibrary()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Missing));
        QTemporaryDir dir;
        QVERIFY(writeTextFile(dir.filePath(QStringLiteral("libjlinkarm.so")), "not a shared object\n"));
        QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("SEGGER"), QStringLiteral("J-Link"))
            .setValue(QStringLiteral("InstallPath"), dir.path());
        JLinkApi::unload();
        QCOMPARE(JLinkApi::JLINKARM_Connect(), 0);
        QVERIFY(!JLinkApi::isLoaded());
        QCOMPARE(m_sink->console, QStringList{QStringLiteral("Target DLL libjlinkarm.so not found !<br>")});
    }

    void connectSequence_data()
    {
        QTest::addColumn<int>("host");
        QTest::addColumn<unsigned>("serial");
        QTest::addColumn<QString>("failures");
        QTest::addColumn<int>("result");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<QString>("error");
        QTest::newRow("defaults") << 1 << 0u << "" << 0 << kConnectSteps << "";
        QTest::newRow("by serial number") << 1 << 600111u << "" << 0
                                          << (QStringList{"EMU_SelectByUSBSN 600111"} + kConnectSteps) << "";
        QTest::newRow("serial number refused") << 1 << 5u << "select" << -1
                                               << QStringList{"EMU_SelectByUSBSN 5"} << "";
        QTest::newRow("over IP") << 2 << 0u << "" << 0 << (QStringList{"SelectIP 10.0.0.9 0"} + kConnectSteps) << "";
        QTest::newRow("IP refused") << 2 << 0u << "selectip" << -1 << QStringList{"SelectIP 10.0.0.9 0"} << "";
        QTest::newRow("open fails") << 1 << 0u << "open" << -1 << QStringList{"OpenEx"}
                                    << "ERROR: Cannot open J-Link.";
        QTest::newRow("project rejected") << 1 << 0u << "project" << -1 << QStringList(kConnectSteps.mid(0, 2))
                                          << "ERROR: Cannot open project file";
        QTest::newRow("device rejected") << 1 << 0u << "device" << -1 << QStringList(kConnectSteps.mid(0, 3))
                                         << "ERROR: Unknown device name";
        QTest::newRow("no target") << 1 << 0u << "connect" << -1 << kConnectSteps
                                   << "ERROR: Could not connect to target.";
    }

    void connectSequence()
    {
        QFETCH(int, host);
        QFETCH(unsigned, serial);
        QFETCH(QString, failures);
        QFETCH(int, result);
        QFETCH(QStringList, calls);
        QFETCH(QString, error);
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        m_probe->setFailures(failures);
        JLinkProject project;
        QCOMPARE(JLinkConnection::prepareJLink(project), 0);
        QCOMPARE(project.projectFile, QByteArray("Settings.jlink"));
        QCOMPARE(project.device, QByteArray("NVC4207"));
        project.hostInterface = host;
        project.serialNumber = serial;
        project.ipAddress = "10.0.0.9";
        QCOMPARE(JLinkConnection::connectJLink(project), result);
        QCOMPARE(m_probe->log(), calls);
        if (!error.isEmpty())
            QVERIFY2(g_debug.contains(error), qPrintable(g_debug.join('|')));
        else
            QVERIFY(!g_debug.filter(QStringLiteral("ERROR: ")).size());
        if (result == 0)
            QVERIFY(g_debug.contains(QStringLiteral("Log: Simulated J-Link opened")));
    }

    // One pass at a time, at chosen times: intervals, forced sets, buffers.
    void pollingByInterval()
    {
        QVERIFY(connected());
        DataClass *slow = variable("slow", 0x20000000, 4, 100);
        DataClass *never = variable("never", 0x20000010, 4, 0);
        DataClass *always = variable("always", 0x20000020, 2, 0xFFFFFFFF);
        DataClass *forced = variable("forced", 0x20000030, 1, 0xFFFFFFFF, true);
        DataClass *block = variable("block", 0x20000040, 8, 50);
        m_probe->pokeWord(0x20000000, 77);
        m_probe->pokeWord(0x20000010, 5);
        m_probe->pokeWord(0x20000020, 0xABCD1234);
        m_probe->pokeWord(0x20000030, 9);
        m_probe->poke(0x20000040, QByteArray("\x01\x02\x03\x04\x05\x06\x07\x08", 8));
        QSignalSpy slowSignals(slow, &DataClass::updateLEDs);
        QSignalSpy alwaysSignals(always, &DataClass::updateLEDs);
        QSignalSpy forcedSignals(forced, &DataClass::updateLEDs);
        QSignalSpy blockSignals(block, &DataClass::updateLEDs);

        std::atomic<bool> run{true};
        SeggerThread thread(records(), &run);
        m_probe->clearLog();
        QCOMPARE(thread.pollOnce(1000), 4);
        QCOMPARE(slow->value, 77u);
        QCOMPARE(always->value, 0x1234u); // two bytes of a little-endian word
        QCOMPARE(forced->value, 9u);
        QCOMPARE(block->buffer(), QByteArray("\x01\x02\x03\x04\x05\x06\x07\x08", 8));
        QCOMPARE(never->value, 0u);
        QVERIFY(slow->target()->valid && block->target()->valid);
        // In the order of the records; the one with no interval is never read.
        QCOMPARE(m_probe->log(), (QStringList{"ReadMem 0x20000020 2", "ReadMem 0x20000040 8", "ReadMem 0x20000030 1",
                                              "ReadMem 0x20000000 4"}));
        // Values read by the poll are not written back.
        QCOMPARE(m_probe->writes(), 0L);

        // 50 ms later: the block is due, the slow word is not.
        m_probe->clearLog();
        QCOMPARE(thread.pollOnce(1050), 3);
        QCOMPARE(m_probe->log().filter("0x20000000").size(), 0);
        QCOMPARE(thread.idleTime(1050), 0);
        m_probe->pokeWord(0x20000000, 78);
        QCOMPARE(thread.pollOnce(1099), 2);
        QCOMPARE(slow->value, 77u);
        QCOMPARE(thread.pollOnce(1100), 4);
        QCOMPARE(slow->value, 78u);
        // Unchanged small values stay quiet unless forced; buffers never signal.
        QCOMPARE(slowSignals.size(), 2);
        QCOMPARE(alwaysSignals.size(), 1);
        QCOMPARE(forcedSignals.size(), 4);
        QCOMPARE(blockSignals.size(), 0);
    }

    void idleTimeUntilDue()
    {
        QVERIFY(connected());
        variable("a", 0x20000000, 4, 100);
        variable("b", 0x20000004, 4, 30);
        variable("c", 0x20000008, 4, 0);
        std::atomic<bool> run{true};
        SeggerThread thread(records(), &run);
        QCOMPARE(thread.idleTime(0), 0);
        thread.pollOnce(500);
        QCOMPARE(thread.idleTime(510), 20);
        QCOMPARE(thread.idleTime(530), 0);

        qDeleteAll(m_data);
        m_data.clear();
        variable("off", 0x20000000, 4, 0);
        SeggerThread idle(records(), &run);
        QCOMPARE(idle.idleTime(0), -1);
    }

    // Writes on change unless read-only; reads on access.
    void writesAndReadsOnAccess()
    {
        QVERIFY(connected());
        DataClass *word = variable("word", 0x20000100, 4, 0);
        DataClass *half = variable("half", 0x20000104, 2, 0);
        DataClass *locked = variable("locked", 0x20000108, 4, 0);
        locked->target()->readOnly = 1;
        DataClass *wide = variable("wide", 0x20000110, 6, 0);
        DataClass *polled = variable("polled", 0x20000120, 4, 100);
        m_probe->clearLog();
        word->setValue(0xCAFEF00D);
        half->setValue(0x1234ABCD);
        locked->setValue(7);
        wide->buffer() = QByteArray("abcdef");
        wide->setValue(1);
        // Not valid before its first read: nothing is written yet.
        polled->setValue(3);
        QCOMPARE(m_probe->peekWord(0x20000100), 0xCAFEF00Du);
        QCOMPARE(m_probe->peek(0x20000104, 4), QByteArray("\xCD\xAB\x00\x00", 4));
        QCOMPARE(m_probe->peekWord(0x20000108), 0u);
        QCOMPARE(m_probe->peek(0x20000110, 6), QByteArray("abcdef"));
        QCOMPARE(m_probe->log(), (QStringList{"WriteMem 0x20000100 4", "WriteMem 0x20000104 2", "WriteMem 0x20000110 6"}));

        DataClass *live = variable("live", 0x20000200, 4, 0);
        live->readOnAccess = true;
        m_probe->pokeWord(0x20000200, 4242);
        QCOMPARE(live->getValue(), 4242u);
        m_probe->pokeWord(0x20000200, 17);
        QCOMPARE(live->getValue(), 17u);
    }

    // The thread polls by itself and sleeps while nothing is due.
    void threadPollsAndIdles()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        DocumentTables tables;
        auto *fast = tables.addDataValue(new DataClass("fast"));
        auto *target = new TargetVariable;
        target->address = 0x20000300;
        target->size = 4;
        target->interval = 20;
        fast->setTarget(target);
        auto *quiet = tables.addDataValue(new DataClass("quiet"));
        auto *constant = new TargetVariable;
        constant->address = 0x20000304;
        constant->size = 4;
        constant->interval = 0;
        quiet->setTarget(constant);

        TargetAccess access;
        access.open(tables);
        QCOMPARE(access.records().size(), 2);
        QCOMPARE(access.lastConnect(), 0);
        QVERIFY(access.polling());
        QVERIFY(m_probe->log().mid(0, 2).contains("IsOpen"));
        m_probe->pokeWord(0x20000300, 31337);
        QTRY_COMPARE_WITH_TIMEOUT(fast->value, 31337u, 2000);

        // Half a second of polling a 20 ms record costs little CPU.
        const double cpu = processCpuSeconds();
        QElapsedTimer wall;
        wall.start();
        QTest::qWait(500);
        const double used = processCpuSeconds() - cpu;
        QVERIFY2(used < 0.25 * wall.elapsed() / 1000.0, qPrintable(QString::number(used)));
        const long reads = m_probe->reads();
        QVERIFY(reads > 5);
        QVERIFY(m_probe->log().filter("0x20000304").isEmpty());

        access.stop();
        QVERIFY(!access.polling());
        const long after = m_probe->reads();
        QTest::qWait(100);
        QCOMPARE(m_probe->reads(), after);
    }

    // Connect failure: -1, the error line, and polling all the same; with
    // the probe already open, no second connect.
    void connectAtLoad()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        m_probe->setFailures("connect");
        DocumentTables tables;
        auto *v = tables.addDataValue(new DataClass("v"));
        auto *t = new TargetVariable;
        t->address = 0x20000000;
        t->size = 4;
        t->interval = 1000;
        v->setTarget(t);
        TargetAccess access;
        access.open(tables);
        QCOMPARE(access.lastConnect(), -1);
        QVERIFY(g_debug.contains(QStringLiteral("ERROR: Could not connect to target.")));
        QVERIFY(access.polling());
        access.stop();

        m_probe->setFailures(QString());
        m_probe->clearLog();
        TargetAccess again;
        again.open(tables);
        again.stop();
        QVERIFY(m_probe->log().contains("IsOpen"));
        QVERIFY(!m_probe->log().contains("Connect"));
    }

    void noRecordsNoProbe()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        DocumentTables tables;
        tables.addDataValue(new DataClass("plain"));
        TargetAccess access;
        access.open(tables);
        QVERIFY(!access.polling());
        QVERIFY(m_probe->log().isEmpty());
    }

    void download_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("failures");
        QTest::addColumn<int>("result");
        QTest::addColumn<QStringList>("tail");
        const QStringList ok = {"Reset", "BeginDownload 0", "DownloadFile %1 0x0", "EndDownload", "Reset", "Go", "Close"};
        QTest::newRow("hex") << "fw.hex" << "" << int(JLinkDownload::Done) << ok;
        QTest::newRow("upper-case srec") << "FW.SREC" << "" << int(JLinkDownload::Done) << ok;
        QTest::newRow("s19") << "fw.s19" << "" << int(JLinkDownload::Done) << ok;
        QTest::newRow("elf is passed over") << "fw.elf" << "" << int(JLinkDownload::Skipped) << QStringList();
        QTest::newRow("axf is passed over") << "fw.axf" << "" << int(JLinkDownload::Skipped) << QStringList();
        QTest::newRow("refused") << "fw.bin" << "download" << int(JLinkDownload::DownloadFailed)
                                 << QStringList{"Reset", "BeginDownload 0", "DownloadFile %1 0x0", "EndDownload", "Close"};
        QTest::newRow("no target") << "fw.hex" << "connect" << int(JLinkDownload::ConnectFailed)
                                   << QStringList{"Connect"};
    }

    void download()
    {
        QFETCH(QString, name);
        QFETCH(QString, failures);
        QFETCH(int, result);
        QFETCH(QStringList, tail);
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        m_probe->setFailures(failures);
        QTemporaryDir dir;
        const QString file = dir.filePath(name);
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(":00000001FF\n");
        f.close();
        QCOMPARE(int(JLinkDownload::download(file)), result);
        const QStringList log = m_probe->log();
        if (tail.isEmpty()) {
            QVERIFY(log.isEmpty());
            return;
        }
        for (QString &line : tail) {
            if (line.contains(QLatin1String("%1")))
                line = line.arg(file);
        }
        QCOMPARE(log.mid(log.size() - tail.size()), tail);
        // After a download attempt the link is closed; polling then reads nothing.
        if (result != JLinkDownload::ConnectFailed)
            QVERIFY(!m_probe->isOpen());
    }

    // A whole form: symbols from the firmware file, the connect at load,
    // polled values reaching a dial and a plot, a change written back, and
    // the thread ending with the document.
    void liveForm()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        ELFReader elf;
        QCOMPARE(elf.Read(QUILLON_TEST_FIRMWARE), 0);
        unsigned long counter = 0, speed = 0, size = 0;
        QCOMPARE(elf.GetAddress("counter", &counter, &size), 0);
        QCOMPARE(elf.GetAddress("speed", &speed, &size), 0);

        FormWindow form;
        QVERIFY(form.write(miniSvd(), "<verticalcontainer>"
                                      "<var define=\"C\" symbol=\"counter\" interval=\"10\"/>"
                                      "<var define=\"S\" symbol=\"speed\"/>"
                                      "<dial define=\"D\" min=\"0\" max=\"100000\" data=\"C\"/>"
                                      "<plot define=\"P\" maxX=\"100\"><curve data=\"C\"/><curve data=\"K\"/></plot>"
                                      "<spinbox define=\"K\" svd=\"0\" range=\"0;1000\"/>"
                                      "<thermo define=\"T\" data=\"K\"/>"
                                      "</verticalcontainer>",
                           "<elf file=\"" QUILLON_TEST_FIRMWARE "\"/>"));
        QVERIFY(form.open());
        QVERIFY2(form.openMessages.filter("rror").isEmpty(), qPrintable(form.openMessages.join('\n')));
        const QStringList log = m_probe->log();
        QVERIFY(log.size() >= 7);
        QCOMPARE(log.mid(0, 7), QStringList{"IsOpen"} + kConnectSteps);

        m_probe->pokeWord(quint32(counter), 1234);
        auto *dial = qobject_cast<QwtDial *>(form.tables().dials.value("D"));
        auto *plot = qobject_cast<MyQwtPlot *>(form.tables().plots.value("P"));
        QVERIFY(dial && plot);
        QTRY_COMPARE_WITH_TIMEOUT(dial->value(), 1234.0, 3000);
        QVERIFY(plot->series(0)->counter() >= 1);
        QCOMPARE(plot->series(0)->value(int(plot->series(0)->size()) - 1), 1234.0f);

        // A value element feeds through the window's slots as well.
        QVERIFY(form.tables().element("K")->setValue(QStringLiteral("77"), 0));
        QCOMPARE(qobject_cast<QwtThermo *>(form.tables().thermos.value("T"))->value(), 77.0);
        QCOMPARE(plot->series(1)->value(0), 77.0f);

        form.tables().dataValue("S")->setValue(321);
        QCOMPARE(m_probe->peek(quint32(speed), 2), QByteArray("\x41\x01", 2));

        form.close();
        const long reads = m_probe->reads();
        QTest::qWait(60);
        QCOMPARE(m_probe->reads(), reads);
    }

    // The script command: marked files are flashed, others passed over, a
    // failed download stops the script with its line.
    void downloadCommand()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Full));
        FormWindow form;
        QVERIFY(form.write(miniSvd(), "<verticalcontainer><text label=\"x\"/></verticalcontainer>"));
        QVERIFY(form.open());
        QTemporaryDir dir;
        const QString hex = dir.filePath(QStringLiteral("fw.hex"));
        QVERIFY(writeTextFile(hex, ":00000001FF\n"));
        m_probe->clearLog();
        QVERIFY(form.window->execScriptLine(QStringLiteral("Download(%1)").arg(hex), 1));
        QCOMPARE(m_probe->log().mid(m_probe->log().size() - 3), (QStringList{"Reset", "Go", "Close"}));
        m_probe->clearLog();
        QVERIFY(form.window->execScriptLine(QStringLiteral("Download(%1)").arg(dir.filePath("fw.elf")), 2));
        QVERIFY(m_probe->log().isEmpty());
        form.sink->clear();
        QVERIFY(!form.window->execScriptLine(QStringLiteral("Download(%1)").arg(dir.filePath("gone.hex")), 3));
        QVERIFY(form.sink->contains(QStringLiteral("J-Link download failed: DOWNLOAD(")));
        QVERIFY(!m_probe->log().contains("Go"));
    }

    // No library on the machine: one box, the form opens, values stay 0.
    void liveFormWithoutLibrary()
    {
        QVERIFY(m_probe->use(SimulatedProbe::Missing));
        FormWindow form;
        QVERIFY(form.write(miniSvd(), "<verticalcontainer>"
                                      "<var define=\"V\" address=\"0x20000000\" size=\"4\" interval=\"5\"/>"
                                      "<thermo define=\"T\" data=\"V\"/>"
                                      "</verticalcontainer>"));
        QVERIFY(form.open());
        QCOMPARE(form.openMessages.filter(QStringLiteral("Target DLL libjlinkarm.so not found !")).size(), 1);
        QTest::qWait(50);
        QCOMPARE(form.tables().dataValue("V")->getValue(), 0u);
        // Reopening does not ask again.
        QVERIFY(form.open());
        QVERIFY(form.openMessages.filter(QStringLiteral("Target DLL")).isEmpty());
    }

private:
    bool connected()
    {
        if (!m_probe->use(SimulatedProbe::Full))
            return false;
        JLinkProject project;
        JLinkConnection::prepareJLink(project);
        return JLinkConnection::connectJLink(project) == 0;
    }

    DataClass *variable(const char *name, quint32 address, quint32 size, quint32 interval, bool forced = false)
    {
        auto *d = new DataClass(QLatin1String(name));
        if (size > 4)
            d->setSize(int(size));
        auto *t = new TargetVariable;
        t->address = address;
        t->size = size;
        t->interval = interval;
        t->forceSet = forced;
        t->valid = interval == 0;
        d->setTarget(t);
        m_data.append(d);
        return d;
    }

    QList<TargetVariable *> records() const
    {
        QList<TargetVariable *> list;
        for (DataClass *d : m_data)
            list.append(d->target());
        std::sort(list.begin(), list.end(), [](TargetVariable *a, TargetVariable *b) {
            return a->dataClass->objectName() < b->dataClass->objectName();
        });
        return list;
    }

    SimulatedProbe *m_probe = nullptr;
    RecordingSink *m_sink = nullptr;
    JLinkTargetMemory m_memory;
    QList<DataClass *> m_data;
};

QTEST_MAIN(TestJLink)
#include "tst_jlink.moc"
