#include <QtTest>

#include "HttpTestServer.h"
#include "elements/MessageSink.h"
#include "integration/DesktopIntegration.h"
#include "integration/KeilToolStore.h"
#include "integration/LauncherClient.h"
#include "shell/Dialogs.h"
#include "shell/IniSettings.h"
#include "shell/Preferences.h"

#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

// Collects what would reach the console.
class CollectingSink : public MessageSink
{
public:
    void consolePrint(const QString &html) override { text += html; }
    void showError(const QString &t) override { text += t; }
    QString text;
};

} // namespace

// The window's side of the integration: the settings.ini keys reach the
// launcher client and the update check, help without a launcher says so,
// and the Keil step honours the launcher setting. Quiet mode, so every box
// becomes a console line.
class TestDesktopIntegration : public QObject
{
    Q_OBJECT

    QTemporaryDir m_config;
    CollectingSink m_sink;
    MessageSink *m_former = nullptr;

private slots:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_config.path());
        Dialogs::setQuiet(true);
        m_former = MessageSink::install(&m_sink);
    }

    void cleanupTestCase() { MessageSink::install(m_former); }

    void init() { m_sink.text.clear(); }

    void settingsReachTheLauncherClient()
    {
        HttpTestServer server([](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.body = "[]";
            return r;
        });
        IniSettings ini;
        ini.lanternServicePort = server.port();
        ini.disableProductStateStorage = true;
        Preferences prefs;
        DesktopIntegration integration(ini, prefs);
        QSignalSpy done(integration.launcher(), &LauncherClient::stateReported);
        integration.documentOpened(QStringLiteral("/data/board.xml"));
        QVERIFY(done.wait(10000));
        const auto requests = server.requests();
        QVERIFY(!requests.isEmpty());
        QCOMPARE(requests.last().method, QByteArray("POST"));
        // Product storage switched off: the document is not named.
        QVERIFY(requests.last().body.contains("\"payload\":\"description: tool started.\""));
    }

    void updateCheckUsesTheConfiguredHosts()
    {
        const QByteArray listing = "<a>com.nvx.ln.legacy.qlpanel.feature_9.1.2.jar</a>";
        HttpTestServer server([&](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.body = listing;
            return r;
        });
        IniSettings ini;
        Preferences prefs;
        prefs.updatePeriod = 1;
        prefs.lastUpdate = QDateTime::currentDateTimeUtc().addDays(-11);
        {
            DesktopIntegration integration(ini, prefs);
            integration.checkForUpdates();
            QCOMPARE(server.requests().size(), 0); // no host configured: no check
        }
        ini.publicUpdateHost = QStringLiteral("127.0.0.1:%1").arg(server.port());
        DesktopIntegration integration(ini, prefs);
        integration.checkForUpdates();
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(server.requests().first().path, QByteArray("/stable/features"));
        QVERIFY2(m_sink.text.contains(QLatin1String("A newer version of Quillon (V9.1.2) is available.<br>"
                                                    "Please update with Norvane Lantern.")),
                 qPrintable(m_sink.text));
        QVERIFY(qAbs(prefs.lastUpdate.secsTo(QDateTime::currentDateTimeUtc())) < 5);
        QCOMPARE(prefs.updatePeriod, 1);
    }

    void helpWithoutLauncher()
    {
        IniSettings ini;
        Preferences prefs;
        DesktopIntegration integration(ini, prefs);
        integration.showHelp(nullptr);
        QVERIFY2(m_sink.text.contains(QLatin1String("Help is available within Norvane Lantern only.")),
                 qPrintable(m_sink.text));
    }

    void keilStepAtStart_data()
    {
        QTest::addColumn<QString>("viaLantern");
        QTest::addColumn<bool>("entered");
        QTest::newRow("direct entry") << QString() << true;
        // Configured for the launcher, but not started under the debug
        // monitor: this start has nothing to enter.
        QTest::newRow("launcher configured") << QStringLiteral("yes") << false;
    }

    void keilStepAtStart()
    {
        QFETCH(QString, viaLantern);
        QFETCH(bool, entered);
        const QString file = KeilToolStore::defaultFileName();
        QVERIFY(file.startsWith(m_config.path()));
        QDir().mkpath(QFileInfo(file).absolutePath());
        QFile::remove(file);
        IniSettings ini;
        ini.integrateViaLantern = viaLantern;
        Preferences prefs;
        DesktopIntegration integration(ini, prefs);
        integration.keilAtStart(true, true);
        KeilToolStore store;
        QCOMPARE(store.text("Mex", 0) == QDir::toNativeSeparators(QCoreApplication::applicationFilePath()), entered);
        QCOMPARE(store.text("Mex", 0).isEmpty(), !entered);

        // The menu action finds this program entered and adds nothing.
        if (entered) {
            integration.integrateKeil();
            QVERIFY(!m_sink.text.contains(QLatin1String("was added")));
            QFile::remove(file);
            integration.integrateKeil();
            QVERIFY2(m_sink.text.contains(QLatin1String("Quillon was added to the Keil")), qPrintable(m_sink.text));
            QCOMPARE(KeilToolStore().text("Mtx", 0), QStringLiteral("Quillon V") + QCoreApplication::applicationVersion());
        }

        // Without -k and without enablekeil nothing runs at all.
        QFile::remove(file);
        integration.keilAtStart(false, true);
        QVERIFY(KeilToolStore().text("Mex", 0).isEmpty());
    }
};

QTEST_MAIN(TestDesktopIntegration)
#include "tst_desktopintegration.moc"
