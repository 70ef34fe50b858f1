#include <QtTest>

#include "QuillonRun.h"
#include "shell/AppVersion.h"

#include <QTemporaryDir>

// The real program, headless: the unattended flows end with 0 whatever
// happened to the document, every failure leaves its message in the -c
// mirror, and nothing ever waits for a user.
class TestCli : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(QFileInfo::exists(QuillonRun::binary()));
        QVERIFY(m_dir.isValid());
    }

    void unattendedFlowsEndWithZero_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("-g") << QStringList{"-q", "-g"};
        QTest::newRow("-s") << QStringList{"-q", "-s"};
        QTest::newRow("-s and -g") << QStringList{"-q", "-s", "-g"};
        QTest::newRow("-x") << QStringList{"-q", "-x"};
        QTest::newRow("-x with defines") << QStringList{"-q", "-x", "-dnothing=1"};
    }

    void unattendedFlowsEndWithZero()
    {
        QFETCH(QStringList, args);
        const QString file = m_dir.filePath(QStringLiteral("missing-description.xml"));
        const QuillonRun run = QuillonRun::run(args << file, 60000);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
    }

    void badDescriptions_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        const QString newer = QStringLiteral("%1.%2.0").arg(AppVersion::major() + 1).arg(AppVersion::minor());
        QTest::newRow("empty") << QByteArray() << QStringLiteral("Premature end of document.");
        QTest::newRow("not XML") << QByteArray("hello\n") << QStringLiteral("Cannot read file ");
        QTest::newRow("binary") << QByteArray("\x00\x01\x02\xff\xfe", 5) << QStringLiteral("Cannot read file ");
        QTest::newRow("truncated") << descriptionText("<tabcontainer><verticalcontainer>").left(140) << QStringLiteral("Cannot read file ");
        QTest::newRow("wrong root") << QByteArray("<?xml version=\"1.0\"?>\n<foo><verticalcontainer/></foo>\n")
                                    << QStringLiteral("Error: Wrong version of Quillon.\n");
        QTest::newRow("V1 document") << descriptionText("<verticalcontainer/>", "0.9.9")
                                     << QStringLiteral("Error: The selected configuration is supported by Quillon V1.x only.");
        QTest::newRow("newer document") << descriptionText("<verticalcontainer/>", newer.toLatin1())
                                        << QStringLiteral("requires minimum Quillon %1\nCurrent version of Quillon is %2").arg(newer, AppVersion::text());
        QTest::newRow("no container") << descriptionText("<svd file=\"x.svd\"/>") << QStringLiteral("Not starting with a container type!");
        QTest::newRow("missing include") << descriptionText("<tabcontainer><include>nowhere.xml</include></tabcontainer>")
                                         << QStringLiteral("Cannot open file ");
        QTest::newRow("self include") << descriptionText("<tabcontainer><include>self.xml</include></tabcontainer>")
                                      << QStringLiteral("includes itself");
        QTest::newRow("no svd named") << descriptionText("<tabcontainer/>") << QStringLiteral("No svd file named in ");
        QTest::newRow("svd missing") << descriptionText("<svd file=\"gone.svd\"/><tabcontainer/>") << QStringLiteral("SVD file is missing.");
    }

    void badDescriptions()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);
        const QString file = m_dir.filePath(QStringLiteral("self.xml"));
        QVERIFY(writeTextFile(file, signedDescription(content)));
        int code = -1;
        const QString mirror = mirrorOf({QStringLiteral("-q"), QStringLiteral("-g")}, file, &code);
        QVERIFY2(mirror != QLatin1String("<HUNG>"), "quillon did not end");
        QCOMPARE(code, 0);
        QVERIFY2(mirror.contains(expected), qPrintable(mirror));
    }

    void usageInQuietMode()
    {
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-?"), QStringLiteral("-x")}, 30000);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(run.standardOutput.startsWith(QLatin1String("Quillon <Filename.xml | Filename.qlnp> [options]\nOptions:\n")),
                 qPrintable(run.standardOutput));
        QVERIFY(run.standardOutput.contains(QLatin1String("  -b<Batchfile>\tRun batchfile\n")));
    }

    void relativeNamesFromTheCallersFolder()
    {
        QVERIFY(writeTextFile(m_dir.filePath(QStringLiteral("rel/form.xml")), signedDescription(descriptionText("<svd file=\"none.svd\"/><tabcontainer/>"))));
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-g"), QStringLiteral("-crel/out.log"),
                                                QStringLiteral("rel/form.xml")},
                                               60000, m_dir.path());
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        const QString mirror = readTextFile(m_dir.filePath(QStringLiteral("rel/out.log")));
        // The file was found and read: its missing SVD is what is reported.
        QVERIFY2(mirror.contains(QLatin1String("SVD file is missing.")), qPrintable(mirror));
    }

    void mirrorThatCannotBeWritten()
    {
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-x"),
                                                QStringLiteral("-c/nonexistent-dir/x/mirror.log")}, 30000);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
    }

    void exampleHeadersCompile()
    {
        // A copy of the example, so the saved configuration and headers go to a
        // folder of the test's own; the build's copy holds the firmware file
        // compiled for the live data tab.
        const QString source = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840");
        const QString work = m_dir.filePath(QStringLiteral("board"));
        QDir().mkpath(work);
        for (const QString &name : QDir(source).entryList(QDir::Files))
            QVERIFY(QFile::copy(QDir(source).filePath(name), QDir(work).filePath(name)));
        const QString description = QDir(work).filePath(QStringLiteral("nrf52840_board.xml"));
        int code = -1;
        const QString mirror = mirrorOf({QStringLiteral("-q"), QStringLiteral("-s")}, description, &code);
        QCOMPARE(code, 0);
        QVERIFY2(mirror.contains(QLatin1String("Saved project: </font></b>") + QDir(work).filePath(QStringLiteral("nrf52840_board.qlnp"))),
                 qPrintable(mirror));
        const QStringList headers = QDir(work).entryList({QStringLiteral("*.h")});
        QCOMPARE(headers, (QStringList{"clock_config.h", "gpio_config.h", "rtc_config.h", "timer_config.h", "uart_config.h"}));
        // The same form again gives byte-identical headers.
        const QString uart = readTextFile(QDir(work).filePath(QStringLiteral("uart_config.h")));
        QFile::remove(QDir(work).filePath(QStringLiteral("uart_config.h")));
        const QString again = mirrorOf({QStringLiteral("-q"), QStringLiteral("-g")}, description, &code);
        QCOMPARE(code, 0);
        QVERIFY(!again.isEmpty());
        for (const char *complaint : {"manipulated", "Cannot", "Not found in svd file"})
            QVERIFY2(!(mirror + again).contains(QLatin1String(complaint)), qPrintable(mirror + again));
        QCOMPARE(readTextFile(QDir(work).filePath(QStringLiteral("uart_config.h"))), uart);

        if (QStandardPaths::findExecutable(QStringLiteral("gcc")).isEmpty())
            QSKIP("gcc is not installed");

        QByteArray c;
        for (const QString &h : headers)
            c += "#include \"" + h.toUtf8() + "\"\n";
        // Defaults of the description: 115200 baud, TXD on P0.6, LFCLK from the
        // crystal, LED pin an output with its input buffer disconnected, RTC
        // ticks at 1024 Hz.
        c += "_Static_assert(UARTE0_BAUDRATE == 0x01D60000, \"baud\");\n"
             "_Static_assert((UARTE0_PSEL_TXD & 0x1F) == 6, \"txd\");\n"
             "_Static_assert((CLOCK_LFCLKSRC & 3) == 1, \"lfclk\");\n"
             "_Static_assert((P0_PIN_CNF13 & 3) == 3, \"led pin\");\n"
             "_Static_assert(RTC0_PRESCALER == 31, \"rtc\");\n"
             "int main(void) { return 0; }\n";
        QVERIFY(writeTextFile(QDir(work).filePath(QStringLiteral("main.c")), c));
        QProcess gcc;
        gcc.setWorkingDirectory(work);
        gcc.start(QStringLiteral("gcc"), {QStringLiteral("-fsyntax-only"), QStringLiteral("-Wall"), QStringLiteral("-Werror"),
                                          QStringLiteral("main.c")});
        QVERIFY(gcc.waitForFinished(60000));
        QVERIFY2(gcc.exitCode() == 0, gcc.readAllStandardError().constData());
    }

private:
    QString mirrorOf(const QStringList &extraArgs, const QString &file, int *exitCode = nullptr);
    QTemporaryDir m_dir;
};

QString TestCli::mirrorOf(const QStringList &extraArgs, const QString &file, int *exitCode)
{
    const QString mirror = m_dir.filePath(QStringLiteral("mirror-%1.log").arg(QDateTime::currentMSecsSinceEpoch()));
    QStringList args = extraArgs;
    args << QStringLiteral("-c") + mirror << file;
    const QuillonRun run = QuillonRun::run(args, 60000);
    if (!run.finished)
        return QStringLiteral("<HUNG>");
    if (exitCode)
        *exitCode = run.exitCode;
    return readTextFile(mirror);
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
