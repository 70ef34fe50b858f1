#include <QtTest>

#include "QuillonRun.h"

#include <QTemporaryDir>

// Scripts run by the real program with -b: loops, assertions and the exit
// code of a regression run, the output log, the error messages and bad
// input.
class TestScripts : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(writeTextFile(m_dir.filePath(QStringLiteral("mini.svd")), miniSvd()));
        const QByteArray description = descriptionText("<svd file=\"mini.svd\"/>\n<verticalcontainer>\n<var define=\"counter\"/>\n"
                                                       "<var define=\"speed\" default=\"7\"/>\n<var define=\"zeta\" default=\"1\"/>\n"
                                                       "</verticalcontainer>");
        m_description = m_dir.filePath(QStringLiteral("form.xml"));
        QVERIFY(writeTextFile(m_description, signedDescription(description)));
    }

    void loopsAndAssertionsGiveTheExitCode()
    {
        QString mirror;
        QString output;
        const QuillonRun run = runScript("LoopStart(counter, 0, 1, 3)\n"
                                         "// body\n"
                                         "LoopStop()\n"
                                         "assert(counter, value, 3)\n"
                                         "Assert(speed, 0, 7)\n"
                                         "Assert(speed, value, 8)  // fails\n"
                                         "Set(speed, 9)\n"
                                         "Assert(speed, value, 9)\n"
                                         "Assert(zeta, value, 2)\n"
                                         "Exit(2)\n"
                                         "Assert(zeta, value, 5)\n",
                                         &mirror, &output);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 2);
        // The body ran for 0, 1 and 2.
        QCOMPARE(output.count(QStringLiteral("// body\n")), 3);
        QVERIFY2(output.contains(QLatin1String("Assert(counter(3) == 3) OK\n")), qPrintable(output));
        QVERIFY(output.contains(QLatin1String("Assert(speed(7) == 8) FAILED\n")));
        QVERIFY(output.contains(QLatin1String("Assert(speed(9) == 9) OK\n")));
        QVERIFY(mirror.contains(QLatin1String("Assert(zeta(1)<b> ==  2) <font color=\"red\">FAILED</b></font><br>")));
        // Nothing runs after EXIT.
        QVERIFY(!output.contains(QLatin1String("zeta(1) == 5")));
    }

    void exitWithoutFailures()
    {
        const QuillonRun run = runScript("Assert(speed, value, 7)\nExit(3)\n");
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
    }

    void errorsAndWhatFollowsThem()
    {
        QString mirror;
        QString output;
        const QuillonRun run = runScript("Foo(1)\n"
                                         "Set(nobody, 1)\n"
                                         "// still running\n"
                                         "SetTavCheck(1)\n"
                                         "// never reached\n",
                                         &mirror, &output);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(mirror.contains(QLatin1String("<font color=\"red\"> <b>Script Error: </b></font><b>Unknown command: Foo in line Foo(1) <b><a href=\"$xmlopen$")),
                 qPrintable(mirror));
        QVERIFY(mirror.contains(QLatin1String("$-n1$-c1\">file</a> line 1</b><b><br>")));
        QVERIFY(mirror.contains(QLatin1String("Unknown define: nobody in line Set(nobody, 1) ")));
        QVERIFY(output.contains(QLatin1String("// still running")));
        QVERIFY(mirror.contains(QLatin1String("<font color=\"red\"> <b>Script Error: </b></font><b>Missing parameter: SetTavCheck(1) in <b><a href=\"$xmlopen$")));
        QVERIFY(!output.contains(QLatin1String("never reached")));
    }

    void dumpAllWritesSortedRecords()
    {
        const QString dump = m_dir.filePath(QStringLiteral("dump.txt"));
        const QuillonRun run = runScript(QByteArray("Set(zeta, 4)\nDumpAll(") + dump.toUtf8() + ")\nExit(2)\n");
        QCOMPARE(run.exitCode, 0);
        const QString text = readTextFile(dump);
        // Elements first (the hidden $DIR$ line edit, where it exists), then the
        // records by name, without the program's own.
        QVERIFY2(text.endsWith(QLatin1String("counter == 0\nspeed == 7\nzeta == 4\n")), qPrintable(text));
        QVERIFY(!text.contains(QLatin1String("dummy_define")));
        QVERIFY(!text.contains(QLatin1String("$VALUE$")));
    }

    void badScripts_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("binary garbage") << QByteArray("\x00\x01\xff(\xfe,\x00)\n\x7f\x45LF\n", 14);
        QTest::newRow("100 KB line") << (QByteArray("Set(speed, ") + QByteArray(100 * 1024, '9') + ")\n");
        QTest::newRow("100 KB of parameters") << (QByteArray("Assert(") + QByteArray(100 * 1024, ',') + ")\n");
        QTest::newRow("unclosed loop") << QByteArray("LoopStop()\nLoopStart(counter,5,1,1)\n");
    }

    void badScripts()
    {
        QFETCH(QByteArray, script);
        const QuillonRun run = runScript(script + "Exit(2)\n");
        QVERIFY(run.finished);
        QVERIFY(run.exitCode == 0 || run.exitCode == 1);
    }

    void outputLogFolderMissing()
    {
        QString mirror;
        const QuillonRun run = runScript("Assert(speed, value, 1)\nExit(2)\n", &mirror, nullptr,
                                         QStringLiteral("/nonexistent-folder/out.log"));
        QVERIFY(run.finished);
        // The run did not happen: no assertion failed, so EXIT never ran either.
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(mirror.contains(QLatin1String("Cannot open file /nonexistent-folder/out.log:")), qPrintable(mirror));
        QVERIFY(!mirror.contains(QLatin1String("Assert(")));
    }

    void exampleRegressionScript()
    {
        const QString script = QuillonRun::sourceDir() + QStringLiteral("/tests/scripts/nrf52840_regression.script");
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        const QString out = m_dir.filePath(QStringLiteral("regression.log"));
        const QString mirror = m_dir.filePath(QStringLiteral("regression-console.log"));
        const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-b") + script, QStringLiteral("-o") + out,
                                                QStringLiteral("-c") + mirror, example},
                                               60000);
        QVERIFY(run.finished);
        const QString log = readTextFile(out);
        QCOMPARE(run.exitCode, 0);
        QVERIFY2(!log.contains(QLatin1String("FAILED")), qPrintable(log));
        QCOMPARE(log.count(QStringLiteral(") OK\n")), 10);
        QVERIFY(readTextFile(mirror).contains(QLatin1String("Unknown define: nothing.here")));
    }

private:
    QuillonRun runScript(const QByteArray &script, QString *mirror = nullptr, QString *output = nullptr,
                         const QString &outputPath = QString());
    QTemporaryDir m_dir;
    QString m_description;
    int m_runs = 0;
};

QuillonRun TestScripts::runScript(const QByteArray &script, QString *mirror, QString *output, const QString &outputPath)
{
    ++m_runs;
    const QString scriptPath = m_dir.filePath(QStringLiteral("run%1.script").arg(m_runs));
    const QString mirrorPath = m_dir.filePath(QStringLiteral("mirror%1.log").arg(m_runs));
    const QString outPath = outputPath.isEmpty() ? m_dir.filePath(QStringLiteral("out%1.log").arg(m_runs)) : outputPath;
    writeTextFile(scriptPath, script);
    const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-x"), QStringLiteral("-b") + scriptPath,
                                            QStringLiteral("-o") + outPath, QStringLiteral("-c") + mirrorPath,
                                            m_description},
                                           60000);
    if (mirror)
        *mirror = readTextFile(mirrorPath);
    if (output)
        *output = readTextFile(outPath);
    return run;
}

QTEST_GUILESS_MAIN(TestScripts)
#include "tst_scripts.moc"
