#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "automation/PythonBridge.h"
#include "automation/python/PythonBridgeInterface.h"
#include "elements/DataClass.h"
#include "elements/LineEdit.h"
#include "elements/SpinBox.h"
#include "shell/MainWindow.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QTimer>

static const QByteArray kForm = R"xml(
<verticalcontainer label="Python">
 <spinbox define="P.R.CNT" range="0;255" default="5"/>
 <edit define="OUT" svd="0"/>
 <button define="GO" label="Go"><action event="clicked" cmd="runScript" data="python:application.setDef('OUT=from button')"/></button>
 <button define="LOOP" label="Loop"><action event="clicked" cmd="runScript" data="python:loop.py"/></button>
 <var define="V.X" default="42"/>
</verticalcontainer>
)xml";

static const QByteArray kFields = "<field><name>CNT</name><lsb>0</lsb><msb>7</msb></field>\n";

// The Python bridge on a real form: without the plug-in (the warning, and
// descriptions without Python unharmed), then with it: the exposed window,
// elements and vars, text and files from actions, output and errors on the
// console, and the runs that must not take the program with them.
class TestPythonBridge : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_python.write(miniSvd(kFields), kForm, "<usesPython/>\n"));
        QVERIFY(m_plain.write(miniSvd(kFields), kForm));
    }

    // Must run first: once started, Python stays for the process.
    void missingPluginStopsOnlyPythonDescriptions_data()
    {
        QTest::addColumn<QString>("plugin");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no file") << "does-not-exist.so" << "the bridge library does not exist";
        QTest::newRow("not a library") << "not-a-library.so" << "not-a-library.so";
    }

    void missingPluginStopsOnlyPythonDescriptions()
    {
        QFETCH(QString, plugin);
        QFETCH(QString, reason);
        const QString path = m_python.dir.filePath(plugin);
        if (plugin.startsWith(QLatin1String("not-")))
            QVERIFY(writeTextFile(path, "this is text, not a shared library\n"));
        PythonBridge::setPluginPath(path);
        QVERIFY(!m_python.open());
        const QString all = (m_python.sink->console + m_python.sink->errors).join('\n');
        QVERIFY2(all.contains(QLatin1String("Python integration: </b></font>WARNING: <br>This script uses Python but this is "
                                            "not installed correctly.")),
                 qPrintable(all));
        QVERIFY2(all.contains(reason), qPrintable(all));
        QVERIFY(all.contains(QLatin1String("The script can not be executed.")));
        QVERIFY(!PythonBridge::active());
        m_python.close();

        // The same form without usesPython opens, and its python: actions
        // do nothing and say nothing.
        QVERIFY(m_plain.open());
        m_plain.window->runScript(QStringLiteral("python:print(1)"));
        m_plain.window->runScript(QStringLiteral("python:x.py"));
        QCOMPARE(m_plain.sink->console, QStringList());
        QCOMPARE(m_plain.sink->errors, QStringList());
        m_plain.close();
    }

    void startsWithThePlugin()
    {
        PythonBridge::setPluginPath(QStringLiteral(QUILLON_BUILD_DIR "/libquillon_python.so"));
        QVERIFY2(m_python.open(), qPrintable(m_python.openMessages.join('\n')));
        QVERIFY(PythonBridge::active());
        QVERIFY(PythonBridge::pythonVersion().startsWith(QLatin1String("3.")));
        QVERIFY(PythonBridge::lastError().isEmpty());
    }

    void scriptLinesAllRun()
    {
        // An unknown define in the first line does not keep the second.
        run(QStringLiteral("Set(NOPE, 1);Set(OUT, second)"));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("second"));
    }

    void outputAndErrors_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("upper-case prefix") << "PYTHON:print(1)" << QStringList{"Python stdOut: 1<br>"};
        QTest::newRow("one print, one line") << "python:print('a', 'b', 3)" << QStringList{"Python stdOut: a b 3<br>"};
        QTest::newRow("lines and markup") << "python:print('x<y\\nz')" << QStringList{"Python stdOut: x&lt;y<br>Python stdOut: z<br>"};
        QTest::newRow("exception") << "python:1/0" << QStringList{"Python stdErr: ", "ZeroDivisionError: division by zero"};
        QTest::newRow("syntax error") << "python:def (" << QStringList{"Python stdErr: ", "SyntaxError"};
        QTest::newRow("exit is not the program's") << "python:import sys; sys.exit(3)" << QStringList{"Python stdErr: SystemExit: 3<br>"};
        QTest::newRow("missing file") << "python:no_such_file.py"
                                      << QStringList{"Python stdErr: Python file ", "no_such_file.py can't be read"};
        QTest::newRow("wrong arguments") << "python:application.setDef(1, 2, 3)"
                                         << QStringList{"Python stdErr: ", "TypeError", "setDef(QString)"};
        QTest::newRow("caught") << "python:\ntry:\n  1/0\nexcept BaseException as e:\n  print('caught', repr(e))\n" << QStringList{"Python stdOut: caught"};
        QTest::newRow("no such slot") << "python:application.noSuchSlot()" << QStringList{"AttributeError", "noSuchSlot"};
    }

    void outputAndErrors()
    {
        QFETCH(QString, action);
        QFETCH(QStringList, expected);
        const QString console = run(action).join(QString());
        for (const QString &part : expected)
            QVERIFY2(console.contains(part), qPrintable(console));
        // The program goes on: Python still answers.
        QVERIFY(run(QStringLiteral("python:print('alive')")).contains(QStringLiteral("Python stdOut: alive<br>")));
    }

    void reachesWindowElementsAndVars()
    {
        run(QStringLiteral("python:application.setDef('OUT=from python')"));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("from python"));
        // An element under its define with "." as "_": slots and properties.
        run(QStringLiteral("python:P_R_CNT.value = 17"));
        QCOMPARE(element<SpinBox>("P.R.CNT")->QSpinBox::value(), 17);
        QCOMPARE(run(QStringLiteral("python:print(P_R_CNT.value + 1, P_R_CNT.objectName)")),
                 QStringList{"Python stdOut: 18 P.R.CNT<br>"});
        run(QStringLiteral("python:OUT.setText('typed')"));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("typed"));
        // A var's DataClass.
        QCOMPARE(run(QStringLiteral("python:print(V_X.value)")), QStringList{"Python stdOut: 42<br>"});
        run(QStringLiteral("python:V_X.value = 7"));
        QCOMPARE(m_python.tables().dataValue(QStringLiteral("V.X"))->getValue(), quint32(7));
        // A slot with a return value, and a script line from Python.
        run(QStringLiteral("python:application.runScript('Set(OUT, via script)')"));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("via script"));
        QCOMPARE(run(QStringLiteral("python:print(application.execScriptLine('Set(OUT, z)', 0))")),
                 QStringList{"Python stdOut: True<br>"});
        // A read-only property refuses with a message.
        QVERIFY(run(QStringLiteral("python:P_R_CNT.cleanText = 'x'")).join(QString()).contains(QLatin1String("can't be set")));
    }

    void buttonActionRunsPython()
    {
        auto *button = m_python.window->findChild<QPushButton *>(QStringLiteral("GO"));
        QVERIFY(button);
        button->click();
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("from button"));
    }

    void filesByCaseInsensitiveSuffix()
    {
        QVERIFY(writeTextFile(m_python.dir.filePath(QStringLiteral("helper.py")), "def twice(x):\n    return 2 * x\n"));
        QVERIFY(writeTextFile(m_python.dir.filePath(QStringLiteral("calc.PY")),
                              "import helper\nprint('twice', helper.twice(21))\napplication.setDef('OUT=' + str(helper.twice(4)))\n"));
        // Relative to the description's folder; its neighbours import.
        QCOMPARE(run(QStringLiteral("python:calc.PY")), QStringList{"Python stdOut: twice 42<br>"});
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("8"));
        QCOMPARE(run(QStringLiteral("python:") + m_python.dir.filePath(QStringLiteral("calc.PY"))),
                 QStringList{"Python stdOut: twice 42<br>"});
    }

    void megabytesOfOutputAreCut()
    {
        QElapsedTimer clock;
        clock.start();
        const QStringList console = run(QStringLiteral("python:\nfor i in range(300000): print('line', i)"));
        const QString all = console.join(QString());
        QVERIFY2(all.contains(QLatin1String("Output of this Python run was cut after")), qPrintable(all.right(300)));
        QVERIFY(all.size() < 3 * (1 << 20));
        QVERIFY2(clock.elapsed() < 60000, "printing took too long");
    }

    void loopForEverEndsWithTheWindow()
    {
        // The window closes while Python loops: the run ends with
        // KeyboardInterrupt, the close goes through.
        m_python.window->setCloseMode(2);
        QTimer::singleShot(300, m_python.window, SLOT(close()));
        QElapsedTimer clock;
        clock.start();
        const QString all = run(QStringLiteral("python:\nwhile True: pass")).join(QString());
        QVERIFY2(clock.elapsed() < 20000, "the loop was not stopped");
        QVERIFY2(all.contains(QLatin1String("KeyboardInterrupt")), qPrintable(all));
        QVERIFY(!m_python.window->isVisible());
        QVERIFY(!PythonBridge::running());
    }

    void loopForEverEndsAtTheTimeLimit()
    {
        PythonBridge::plugin()->setTimeLimit(500);
        QElapsedTimer clock;
        clock.start();
        const QString all = run(QStringLiteral("python:\nn = 0\nwhile True: n += 1\n")).join(QString());
        PythonBridge::plugin()->setTimeLimit(0);
        QVERIFY2(clock.elapsed() < 20000, "the loop was not stopped");
        QVERIFY2(clock.elapsed() >= 500, "stopped before its time");
        QVERIFY2(all.contains(QLatin1String("Python stdErr: The Python run took longer than its time limit of 500 ms")),
                 qPrintable(all));
        QVERIFY(all.contains(QLatin1String("KeyboardInterrupt")));
        // What the run did stays, and the next run starts clean.
        QCOMPARE(run(QStringLiteral("python:print(n > 0)")), QStringList{"Python stdOut: True<br>"});
    }

    void clickDuringALoopIsRefusedNotNested()
    {
        // The window works while Python loops; a Python action clicked
        // meanwhile is refused with a message instead of blocking the stop.
        element<LineEdit>("OUT")->setText(QStringLiteral("before"));
        auto *button = m_python.window->findChild<QPushButton *>(QStringLiteral("GO"));
        QVERIFY(button);
        bool clicked = false;
        QTimer::singleShot(200, button, [button, &clicked] {
            clicked = true;
            button->click();
        });
        PythonBridge::plugin()->setTimeLimit(800);
        const QString all = run(QStringLiteral("python:\nn = 0\nwhile True: n += 1\n")).join(QString());
        PythonBridge::plugin()->setTimeLimit(0);
        QVERIFY(clicked);
        QVERIFY2(all.contains(QLatin1String("Python is still running another script; this one was not started.")),
                 qPrintable(all));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("before"));
    }

    void closedFormLeavesNoDanglingObjects()
    {
        run(QStringLiteral("python:kept = OUT"));
        QVERIFY(m_python.open());
        // The new window is `application` now; the old element is gone.
        run(QStringLiteral("python:application.setDef('OUT=new window')"));
        QCOMPARE(element<LineEdit>("OUT")->text(), QStringLiteral("new window"));
        const QString all = run(QStringLiteral("python:kept.setText('x')")).join(QString());
        QVERIFY2(all.contains(QLatin1String("ReferenceError")), qPrintable(all));
        QVERIFY(run(QStringLiteral("python:print(OUT.text)")).contains(QStringLiteral("Python stdOut: new window<br>")));
    }

    void realProgramRunsPythonFromAScript()
    {
        // The program as users start it: -b with a script whose line runs
        // the button's Python action; the plug-in is found beside it.
        const QString script = m_python.dir.filePath(QStringLiteral("py.script"));
        const QString dump = m_python.dir.filePath(QStringLiteral("py-dump.txt"));
        QVERIFY(writeTextFile(script, QStringLiteral("Clicked(GO)\nDumpAll(%1)\nExit(2)\n").arg(dump).toUtf8()));
        const QuillonRun result = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-b") + script, m_python.path}, 60000);
        QVERIFY(result.finished);
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(readTextFile(dump).contains(QLatin1String("OUT(LineEdit) == from button")), qPrintable(readTextFile(dump)));
    }

    void unattendedRunIsBoundedByTheTimeLimit()
    {
        // A -b run whose Python loops for ever still ends, with the limit.
        QVERIFY(writeTextFile(m_python.dir.filePath(QStringLiteral("loop.py")), "n = 0\nwhile True:\n    n += 1\n"));
        const QString script = m_python.dir.filePath(QStringLiteral("loop.script"));
        const QString dump = m_python.dir.filePath(QStringLiteral("loop-dump.txt"));
        const QString console = m_python.dir.filePath(QStringLiteral("loop-console.log"));
        QVERIFY(writeTextFile(script, QStringLiteral("Clicked(LOOP)\nSet(OUT, after the loop)\nDumpAll(%1)\nExit(2)\n")
                                          .arg(dump)
                                          .toUtf8()));
        qputenv("QUILLON_PYTHON_TIMEOUT", "1");
        const QuillonRun result = QuillonRun::run(
            {QStringLiteral("-q"), QStringLiteral("-c") + console, QStringLiteral("-b") + script, m_python.path}, 60000);
        qunsetenv("QUILLON_PYTHON_TIMEOUT");
        QVERIFY2(result.finished, "the run hung");
        QCOMPARE(result.exitCode, 0);
        QVERIFY(readTextFile(dump).contains(QLatin1String("OUT(LineEdit) == after the loop")));
        QVERIFY2(readTextFile(console).contains(QLatin1String("took longer than its time limit of 1000 ms")),
                 qPrintable(readTextFile(console)));
    }

    void bundledExampleComputesTheBaudRate()
    {
        const QString script = m_python.dir.filePath(QStringLiteral("example.script"));
        const QString dump = m_python.dir.filePath(QStringLiteral("example-dump.txt"));
        const QString console = m_python.dir.filePath(QStringLiteral("example-console.log"));
        QVERIFY(writeTextFile(script, QStringLiteral("Set(PY_BAUD, 250000)\nClicked(PY_COMPUTE)\nDumpAll(%1)\nExit(2)\n")
                                          .arg(dump)
                                          .toUtf8()));
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        const QuillonRun result =
            QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-c") + console, QStringLiteral("-b") + script, example}, 60000);
        QVERIFY(result.finished);
        QCOMPARE(result.exitCode, 0);
        const QString values = readTextFile(dump);
        // 250000 Bd is 2^26 exactly; the nearest listed rate is 230400 Bd.
        QVERIFY2(values.contains(QLatin1String("PY_NEAREST(LineEdit) == 230400 Bd")), qPrintable(values));
        QVERIFY(values.contains(QLatin1String("UARTE0.BAUDRATE.BAUDRATE(ComboBox) == 61865984")));
        QVERIFY2(readTextFile(console).contains(QLatin1String("Python stdOut: 250000 Bd: BAUDRATE 0x04000000")),
                 qPrintable(readTextFile(console)));
    }

private:
    QStringList run(const QString &action)
    {
        m_python.sink->clear();
        m_python.window->runScript(action);
        return m_python.sink->console;
    }

    template <class T>
    T *element(const char *define)
    {
        return m_python.element<T>(QLatin1String(define));
    }

    FormWindow m_python;
    FormWindow m_plain;
};

QTEST_MAIN(TestPythonBridge)
#include "tst_pythonbridge.moc"
