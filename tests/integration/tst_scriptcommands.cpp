#include <QtTest>

#include "RecordingSink.h"
#include "shell/MainWindow.h"
#include "shell/StartOptions.h"

#include <QTimer>

// Script commands run in the test's own process on a quiet window, where a
// test can act while a command is still running.
class TestScriptCommands : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
    }

    void init()
    {
        StartOptions options;
        options.quiet = true;
        m_window = new MainWindow(options);
        m_sink = new RecordingSink;
    }

    void cleanup()
    {
        delete m_sink;
        m_sink = nullptr;
        delete m_window;
        m_window = nullptr;
    }

    void waitProcessesEventsUntilDeadlineOrExit_data()
    {
        QTest::addColumn<QString>("milliseconds");
        QTest::addColumn<bool>("waits");
        QTest::newRow("ten milliseconds") << "10" << true;
        QTest::newRow("negative") << "-5" << false;
        QTest::newRow("zero") << "0" << false;
        QTest::newRow("not a number") << "soon" << false;
        // The deadline is a time of day: a whole day later is now again, so
        // there is nothing to wait for. It used to be a number past the end of
        // the day, which the time of day never reaches: the script hung.
        QTest::newRow("one day") << "86400000" << false;
        QTest::newRow("two days") << "172800000" << false;
    }

    void waitProcessesEventsUntilDeadlineOrExit()
    {
        QFETCH(QString, milliseconds);
        QFETCH(bool, waits);
        // A posted event that only a waiting WAIT processes; it ends the wait
        // the way closing the window does.
        bool processed = false;
        QTimer::singleShot(0, m_window, [this, &processed] {
            processed = true;
            m_window->requestExit(0);
        });
        QVERIFY(m_window->execScriptLine(QStringLiteral("Wait(%1)").arg(milliseconds), 1));
        QCOMPARE(processed, waits);
        QVERIFY(m_sink->console.filter(QStringLiteral("Script Error")).isEmpty());
    }

private:
    MainWindow *m_window = nullptr;
    RecordingSink *m_sink = nullptr;
};

QTEST_MAIN(TestScriptCommands)
#include "tst_scriptcommands.moc"
