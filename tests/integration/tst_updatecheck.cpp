#include <QtTest>

#include "HttpTestServer.h"
#include "integration/BlockingGet.h"
#include "integration/UpdateCheck.h"
#include "shell/Preferences.h"

#include <QElapsedTimer>
#include <QSettings>
#include <QTcpServer>
#include <QTemporaryDir>

// The update check: when it is due, how it reads a listing, and the whole
// run against real local HTTP servers serving listings.
class TestUpdateCheck : public QObject
{
    Q_OBJECT

    QTemporaryDir m_config;
    const quint64 m_own = UpdateCheck::versionNumber(2, 5, 0);

    static QByteArray listing(const QStringList &files)
    {
        QByteArray html = "<html><body><h1>Index of /stable/features</h1><ul>\n";
        for (const QString &f : files)
            html += "<li><a href=\"" + f.toUtf8() + "\">" + f.toUtf8() + "</a></li>\n";
        return html + "</ul></body></html>\n";
    }


private slots:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_config.path());
    }

    void due_data()
    {
        QTest::addColumn<int>("period");
        QTest::addColumn<qint64>("secondsAgo");
        QTest::addColumn<bool>("due");
        const qint64 day = 86400;
        QTest::newRow("never") << 0 << 1000 * day << false;
        QTest::newRow("daily, nine days ago") << 1 << 9 * day << false;
        QTest::newRow("daily, exactly ten days") << 1 << 10 * day << false;
        QTest::newRow("daily, ten days and a second") << 1 << 10 * day + 1 << true;
        QTest::newRow("weekly, 69 days") << 2 << 69 * day << false;
        QTest::newRow("weekly, 70 days and a second") << 2 << 70 * day + 1 << true;
        QTest::newRow("monthly, 299 days") << 3 << 299 * day << false;
        QTest::newRow("monthly, 300 days and a second") << 3 << 300 * day + 1 << true;
        QTest::newRow("odd period counts as weekly") << 7 << 70 * day + 1 << true;
        QTest::newRow("odd period, 69 days") << -1 << 69 * day << false;
        QTest::newRow("in the future") << 1 << -100 * day << false;
    }

    void due()
    {
        QFETCH(int, period);
        QFETCH(qint64, secondsAgo);
        QFETCH(bool, due);
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QCOMPARE(UpdateCheck::isDue(period, now.addSecs(-secondsAgo), now), due);
    }

    void noStoredDateMeansNow()
    {
        QVERIFY(!UpdateCheck::isDue(1, QDateTime(), QDateTime::currentDateTimeUtc()));
        QCOMPARE(UpdateCheck::thresholdSeconds(1), 864000);
        QCOMPARE(UpdateCheck::thresholdSeconds(2), 6048000);
        QCOMPARE(UpdateCheck::thresholdSeconds(3), 25920000);
    }

    void prefix_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("prefix");
        QTest::newRow("plain install") << "/usr/lib/quillon" << "com.nvx.ln.legacy.qlpanel.feature_";
        QTest::newRow("launcher plug-in") << "/opt/lantern/plugins/com.nvx.ln.quillon_2.5.0/bin"
                                          << "com.nvx.ln.quillon.feature_";
        QTest::newRow("plug-in without version") << "/opt/lantern/plugins/quillon" << "quillon.feature_";
        QTest::newRow("plugins only as a word") << "/home/me/myplugins/quillon" << "com.nvx.ln.legacy.qlpanel.feature_";
    }

    void prefix()
    {
        QFETCH(QString, folder);
        QFETCH(QString, prefix);
        QCOMPARE(UpdateCheck::featurePrefix(folder), prefix);
    }

    void versions_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("newest");
        const QString p = UpdateCheck::defaultPrefix();
        QTest::newRow("same version shows nothing") << QStringList{p + "2.5.0.jar"} << QString();
        QTest::newRow("older shows nothing") << QStringList{p + "2.4.9.v2023.jar"} << QString();
        QTest::newRow("newer patch") << QStringList{p + "2.5.1.jar"} << "2.5.1";
        QTest::newRow("largest wins, order free")
            << QStringList{p + "2.6.0.jar", p + "3.0.1.qualifier.jar", p + "2.9.9.jar"} << "3.0.1";
        QTest::newRow("two parts ignored") << QStringList{p + "1.2.jar", p + "3.jar"} << QString();
        QTest::newRow("letters ignored") << QStringList{p + "x.y.z.jar", p + "3.a.0.jar"} << QString();
        QTest::newRow("huge major is a version") << QStringList{p + "99999.0.0.jar"} << "99999.0.0";
        QTest::newRow("other features ignored") << QStringList{"com.other.feature_9.0.0.jar", p + "2.5.2.jar"} << "2.5.2";
        QTest::newRow("no .jar after the prefix") << QStringList{p + "9.0.0.zip"} << QString();
    }

    void versions()
    {
        QFETCH(QStringList, files);
        QFETCH(QString, newest);
        const UpdateCheck::Candidate c = UpdateCheck::newestIn(listing(files), UpdateCheck::defaultPrefix(), m_own);
        QCOMPARE(c.version, newest);
        QCOMPARE(c.number == 0, newest.isEmpty());
    }

    void ownNumberBelowTenThousandIsStillCompared()
    {
        // A candidate of 0.0.0 is number 0: never above anything.
        QCOMPARE(UpdateCheck::newestIn("x.feature_0.0.0.jar", "x.feature_", 0).number, quint64(0));
        QCOMPARE(UpdateCheck::newestIn("x.feature_0.10.0.jar", "x.feature_", 0).version, QStringLiteral("0.10.0"));
        // 1 to 9999 are no versions, even above an own number of 0.
        QCOMPARE(UpdateCheck::newestIn("x.feature_0.9.999.jar x.feature_0.0.1.jar", "x.feature_", 0).number,
                 quint64(0));
    }

    void megabyteListingInOnePass()
    {
        QByteArray big;
        const QByteArray p = UpdateCheck::defaultPrefix().toUtf8();
        for (int i = 0; i < 60000; ++i)
            big += p + QByteArray::number(i % 3) + ".1.0.jar ";
        big += p + "2.7.3.jar";
        // Prefixes with no .jar behind them at all.
        for (int i = 0; i < 60000; ++i)
            big += p;
        QVERIFY(big.size() > 4 * 1024 * 1024);
        QElapsedTimer clock;
        clock.start();
        const UpdateCheck::Candidate c = UpdateCheck::newestIn(big, UpdateCheck::defaultPrefix(), m_own);
        QCOMPARE(c.version, QStringLiteral("2.7.3"));
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
    }

    void sites_data()
    {
        QTest::addColumn<QString>("internal");
        QTest::addColumn<QString>("pub");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("none") << "" << "" << QStringList{};
        QTest::newRow("both, in order") << "updates.lan" << "updates.example.com"
                                        << QStringList{"updates.lan:80/updatesite/stable/plugins",
                                                       "updates.example.com:80/stable/features"};
        QTest::newRow("public only, with port") << " " << "127.0.0.1:8080"
                                                << QStringList{"127.0.0.1:8080/stable/features"};
        QTest::newRow("ipv6") << "[::1]:81" << "::1" << QStringList{"::1:81/updatesite/stable/plugins",
                                                                    "::1:80/stable/features"};
        QTest::newRow("bad ports left out") << "host:99999" << "host:x" << QStringList{};
    }

    void sites()
    {
        QFETCH(QString, internal);
        QFETCH(QString, pub);
        QFETCH(QStringList, expected);
        QStringList got;
        for (const UpdateCheck::Site &s : UpdateCheck::sites(internal, pub))
            got << QStringLiteral("%1:%2%3").arg(s.host).arg(s.port).arg(s.path);
        QCOMPARE(got, expected);
    }

    void blockingGetReadsAnswers_data()
    {
        QTest::addColumn<bool>("chunked");
        QTest::addColumn<int>("size");
        QTest::newRow("length, small") << false << 100;
        QTest::newRow("chunked, small") << true << 100;
        QTest::newRow("length, 3 MB") << false << 3 * 1024 * 1024;
        QTest::newRow("chunked, 1 MB") << true << 1024 * 1024;
        QTest::newRow("empty") << false << 0;
    }

    void blockingGetReadsAnswers()
    {
        QFETCH(bool, chunked);
        QFETCH(int, size);
        QByteArray body(size, 'a');
        for (int i = 0; i < size; i += 997)
            body[i] = char('0' + i % 10);
        HttpTestServer server([&](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.body = body;
            r.chunked = chunked;
            return r;
        });
        const BlockingGet::Result result = BlockingGet::get(QStringLiteral("127.0.0.1"), server.port(),
                                                            QStringLiteral("/stable/features"), 10000);
        QVERIFY2(result.ok, qPrintable(result.error));
        QCOMPARE(result.status, 200);
        QCOMPARE(result.body, body);
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(server.requests().first().path, QByteArray("/stable/features"));
        QCOMPARE(server.requests().first().headers.value("host"), "127.0.0.1:" + QByteArray::number(server.port()));
    }

    void blockingGetFailures_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("raw");
        QTest::newRow("closed without answer") << int(HttpTestServer::Response::Close) << QByteArray();
        QTest::newRow("never answers") << int(HttpTestServer::Response::Silent) << QByteArray();
        QTest::newRow("garbage") << int(HttpTestServer::Response::Raw) << QByteArray("hello there\r\n");
        QTest::newRow("not found") << int(HttpTestServer::Response::Raw)
                                   << QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\n\r\nnop");
        QTest::newRow("cut short") << int(HttpTestServer::Response::Raw)
                                   << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 300\r\n\r\nshort");
        QTest::newRow("broken chunks") << int(HttpTestServer::Response::Raw)
                                       << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nab");
    }

    void blockingGetFailures()
    {
        QFETCH(int, mode);
        QFETCH(QByteArray, raw);
        HttpTestServer server([&](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.mode = HttpTestServer::Response::Mode(mode);
            r.raw = raw;
            return r;
        });
        QElapsedTimer clock;
        clock.start();
        const BlockingGet::Result result =
            BlockingGet::get(QStringLiteral("127.0.0.1"), server.port(), QStringLiteral("/x"), 700);
        QVERIFY(!result.ok);
        QVERIFY(!result.error.isEmpty());
        // Bounded by the time-out, whatever the server does.
        QVERIFY2(clock.elapsed() < 700 + 1500, qPrintable(QString::number(clock.elapsed())));
    }

    void nobodyListeningCostsNoTime()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!BlockingGet::get(QStringLiteral("127.0.0.1"), port, QStringLiteral("/"), 5000).ok);
        QVERIFY(!BlockingGet::get(QStringLiteral("no-such-host.invalid"), 80, QStringLiteral("/"), 1500).ok);
        QVERIFY2(clock.elapsed() < 1500 + 1500, qPrintable(QString::number(clock.elapsed())));
    }

    // The whole run: the first site fails, the second serves a listing.
    void run_data()
    {
        QTest::addColumn<int>("period");
        QTest::addColumn<qint64>("daysAgo");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<bool>("neverRemind");
        QTest::addColumn<int>("requests");
        QTest::addColumn<QString>("told");
        QTest::addColumn<bool>("lastUpdateStored");
        const QString p = UpdateCheck::defaultPrefix();
        QTest::newRow("newer, remind again") << 1 << qint64(11) << QStringList{p + "2.6.0.jar"} << false << 2
                                             << "2.6.0" << true;
        QTest::newRow("newer, never remind") << 2 << qint64(71) << QStringList{p + "3.0.0.jar"} << true << 2
                                             << "3.0.0" << true;
        QTest::newRow("nothing newer") << 1 << qint64(11) << QStringList{p + "2.5.0.jar"} << false << 2
                                       << QString() << true;
        QTest::newRow("not due: no request") << 1 << qint64(9) << QStringList{p + "2.6.0.jar"} << false << 0
                                             << QString() << false;
        QTest::newRow("never: no request") << 0 << qint64(900) << QStringList{p + "2.6.0.jar"} << false << 0
                                           << QString() << false;
    }

    void run()
    {
        QFETCH(int, period);
        QFETCH(qint64, daysAgo);
        QFETCH(QStringList, files);
        QFETCH(bool, neverRemind);
        QFETCH(int, requests);
        QFETCH(QString, told);
        QFETCH(bool, lastUpdateStored);

        HttpTestServer broken([](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.status = 500;
            r.body = "oops";
            return r;
        });
        const QByteArray body = listing(files);
        HttpTestServer good([&](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.body = body;
            r.chunked = true;
            return r;
        });

        const QDateTime now = QDateTime::currentDateTimeUtc();
        const QDateTime last = now.addDays(-daysAgo);
        {
            QSettings s(QCoreApplication::organizationName(), Preferences::applicationKey());
            s.setValue(QStringLiteral("UpdatePeriod"), period);
            s.setValue(QStringLiteral("LastUpdate"), last);
        }
        Preferences prefs;
        prefs.read();
        UpdateCheck check(prefs);
        check.setOwnNumber(m_own);
        check.setPrefix(UpdateCheck::defaultPrefix());
        check.setSites(UpdateCheck::sites(QStringLiteral("127.0.0.1:%1").arg(broken.port()),
                                          QStringLiteral("127.0.0.1:%1").arg(good.port())));
        QStringList shown;
        check.tell = [&](const QString &version) {
            shown << version;
            return neverRemind;
        };
        QCOMPARE(check.run(now), told);
        QCOMPARE(shown, told.isEmpty() ? QStringList() : QStringList{told});
        QCOMPARE(broken.requests().size() + good.requests().size(), requests);
        if (requests) {
            QCOMPARE(broken.requests().first().path, QByteArray("/updatesite/stable/plugins"));
            QCOMPARE(good.requests().first().path, QByteArray("/stable/features"));
        }

        Preferences reread;
        reread.read();
        QCOMPARE(reread.updatePeriod, neverRemind ? 0 : period);
        QCOMPARE(prefs.updatePeriod, neverRemind ? 0 : period);
        QCOMPARE(qAbs(reread.lastUpdate.secsTo(now)) < 2, lastUpdateStored);
    }

    void firstSiteWithNewsEndsTheCheck()
    {
        const QString p = UpdateCheck::defaultPrefix();
        const QByteArray first = listing({p + "2.5.7.jar"});
        const QByteArray second = listing({p + "9.0.0.jar"});
        HttpTestServer one([&](const HttpTestServer::Request &) { HttpTestServer::Response r; r.body = first; return r; });
        HttpTestServer two([&](const HttpTestServer::Request &) { HttpTestServer::Response r; r.body = second; return r; });
        {
            QSettings s(QCoreApplication::organizationName(), Preferences::applicationKey());
            s.setValue(QStringLiteral("UpdatePeriod"), 1);
            s.setValue(QStringLiteral("LastUpdate"), QDateTime::currentDateTimeUtc().addDays(-30));
        }
        Preferences prefs;
        prefs.read();
        UpdateCheck check(prefs);
        check.setOwnNumber(m_own);
        check.setPrefix(p);
        check.setSites(UpdateCheck::sites(QStringLiteral("127.0.0.1:%1").arg(one.port()),
                                          QStringLiteral("127.0.0.1:%1").arg(two.port())));
        check.tell = [](const QString &) { return false; };
        QCOMPARE(check.run(), QStringLiteral("2.5.7"));
        QCOMPARE(two.requests().size(), 0);
    }

    void silentSitesDoNotHoldTheStartLong()
    {
        HttpTestServer silent([](const HttpTestServer::Request &) {
            HttpTestServer::Response r;
            r.mode = HttpTestServer::Response::Silent;
            return r;
        });
        {
            QSettings s(QCoreApplication::organizationName(), Preferences::applicationKey());
            s.setValue(QStringLiteral("UpdatePeriod"), 1);
            s.setValue(QStringLiteral("LastUpdate"), QDateTime::currentDateTimeUtc().addDays(-30));
        }
        Preferences prefs;
        prefs.read();
        UpdateCheck check(prefs);
        const QString host = QStringLiteral("127.0.0.1:%1").arg(silent.port());
        check.setSites(UpdateCheck::sites(host, host));
        check.setTimeoutMs(600);
        bool told = false;
        check.tell = [&](const QString &) { told = true; return false; };
        QElapsedTimer clock;
        clock.start();
        QVERIFY(check.run().isEmpty());
        QVERIFY(!told);
        // Two sites, each bounded by the default time-out.
        QVERIFY2(clock.elapsed() < 2 * 600 + 1500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(BlockingGet::kDefaultTimeoutMs <= 3000);
    }
};

QTEST_GUILESS_MAIN(TestUpdateCheck)
#include "tst_updatecheck.moc"
