#include <QtTest>

#include "HttpTestServer.h"
#include "integration/LauncherClient.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QLabel>
#include <QStatusBar>
#include <QTcpServer>
#include <QTemporaryDir>
#include <atomic>

// The launcher service client against a real local HTTP server: the
// requests with their bodies and headers, the port walk, the payload rule,
// and services that misbehave.
class TestLauncherClient : public QObject
{
    Q_OBJECT

    using Request = HttpTestServer::Request;
    using Response = HttpTestServer::Response;

    static Response answer(const QByteArray &body)
    {
        Response r;
        r.body = body;
        return r;
    }

    // Runs the flow for a description and waits until the state was posted.
    static bool runFlow(LauncherClient &client, const QString &description, int timeoutMs = 10000)
    {
        QSignalSpy done(&client, &LauncherClient::stateReported);
        client.checkRegisteredTools(description);
        return done.wait(timeoutMs);
    }

    static QStringList summary(const QList<Request> &requests)
    {
        QStringList list;
        for (const Request &r : requests)
            list << QString::fromUtf8(r.method + ' ' + r.path);
        return list;
    }

    // The same, with a request the network stack sent again after a
    // dropped connection counted once.
    static QStringList steps(const QList<Request> &requests)
    {
        QStringList list;
        for (const QString &s : summary(requests)) {
            if (list.isEmpty() || list.last() != s)
                list << s;
        }
        return list;
    }

private slots:
    void manifest_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("version");
        QTest::newRow("usual") << QByteArray("Manifest-Version: 1.0\r\nBundle-SymbolicName: com.nvx.quillon;singleton:=true\r\n"
                                             "Bundle-Version: 2.5.0.202611\r\n")
                               << "com.nvx.quillon.feature" << "2.5.0.202611";
        QTest::newRow("no version line") << QByteArray("Bundle-SymbolicName: com.nvx.q\n") << "com.nvx.q.feature"
                                         << "Unknown";
        QTest::newRow("no lines") << QByteArray("Manifest-Version: 1.0\n") << "" << "Unknown";
        QTest::newRow("no blank after colon") << QByteArray("Bundle-SymbolicName:com.nvx.q\nBundle-Version:2.0\n") << ""
                                              << "Unknown";
        QTest::newRow("tab separator") << QByteArray("Bundle-SymbolicName:\tcom.nvx.q\n") << "" << "Unknown";
        QTest::newRow("empty") << QByteArray() << "" << "Unknown";
        QTest::newRow("binary junk") << QByteArray("\x00\xff\xfe Bundle-Version: \x01\n", 22) << "" << "\x01";
    }

    void manifest()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, id);
        QFETCH(QString, version);
        QTemporaryDir root;
        QDir(root.path()).mkpath(QStringLiteral("META-INF"));
        QDir(root.path()).mkpath(QStringLiteral("bin"));
        QFile f(root.filePath(QStringLiteral("META-INF/MANIFEST.MF")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(text);
        f.close();
        LauncherClient client;
        client.readManifestOf(root.filePath(QStringLiteral("bin")));
        QCOMPARE(client.toolFeatureId, id);
        QCOMPARE(client.versionText(), QStringLiteral("Quillon - Version %1").arg(version));
    }

    void withoutManifest()
    {
        QTemporaryDir root;
        QDir(root.path()).mkpath(QStringLiteral("bin"));
        // A folder where the file should be is no manifest either.
        QDir(root.path()).mkpath(QStringLiteral("META-INF/MANIFEST.MF"));
        LauncherClient client;
        client.readManifestOf(root.filePath(QStringLiteral("bin")));
        QVERIFY(client.toolFeatureId.isEmpty());
        QCOMPARE(client.versionText(),
                 QStringLiteral("Quillon - Unsupported Version (Use the Norvane Lantern to get support)"));
        QStatusBar bar;
        client.decorateStatusBar(&bar);
        auto *ready = bar.findChild<QLabel *>(QStringLiteral("readyStatusLabel"));
        QVERIFY(ready);
        QCOMPARE(ready->text(), QStringLiteral("Ready"));
        QCOMPARE(bar.findChild<QLabel *>(QStringLiteral("versionStatusLabel"))->text(), client.versionText());
    }

    void payload_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<bool>("disabled");
        QTest::addColumn<QString>("payload");
        QTest::newRow("product") << "/x/nrf52840_board.xml" << false << "product: nrf52840_board; ";
        QTest::newRow("home page") << "/x/scripts/index.xml" << false << "";
        QTest::newRow("Index is not index") << "/x/Index.xml" << false << "product: Index; ";
        QTest::newRow("storage disabled") << "/x/board.xml" << true << "";
        QTest::newRow("no document") << "" << false << "";
    }

    void payload()
    {
        QFETCH(QString, description);
        QFETCH(bool, disabled);
        QFETCH(QString, payload);
        QCOMPARE(LauncherClient::payload(description, disabled), payload);
    }

    void registersThenReportsState()
    {
        HttpTestServer server([](const Request &r) {
            if (r.method == "GET")
                return answer("[{\"toolFeatureId\":\"com.other.feature\",\"port\":\"50000\"}]");
            return answer("{\"result\":\"ok\"}");
        });
        LauncherClient client;
        client.setServicePort(server.port());
        client.toolFeatureId = QStringLiteral("com.nvx.quillon.feature");
        QVERIFY(runFlow(client, QStringLiteral("/data/board.xml")));
        const QList<Request> requests = server.requests();
        QCOMPARE(summary(requests), (QStringList{"GET /lantern-service/register/allTools",
                                                 "PUT /lantern-service/register",
                                                 "POST /lantern-service/state/com.nvx.quillon.feature"}));
        const QByteArray put = "{\"request\":\"registerToolPort\",\"requestingToolFeatureId\":\"com.nvx.quillon.feature\","
                               "\"port\":\"50000\"}";
        QCOMPARE(requests.at(1).body, put);
        QCOMPARE(requests.at(1).headers.value("content-length"), QByteArray::number(put.size()));
        const QByteArray post = "{\"request\":\"setCurrentState\",\"currentState\":{\"state\":\"RUNNING\","
                                "\"payload\":\"product: board; description: tool started.\"}}";
        QCOMPARE(requests.at(2).body, post);
        QCOMPARE(requests.at(2).headers.value("content-length"), QByteArray::number(post.size()));
        for (const Request &r : requests)
            QCOMPARE(r.headers.value("content-type"), QByteArray("text/plain"));
        // Every manager went away with its reply.
        QTRY_COMPARE(client.findChildren<QObject *>().size(), 0);
    }

    void knownToolGoesStraightToState()
    {
        HttpTestServer server([](const Request &) { return answer("[{\"toolFeatureId\":\"COM.NVX.Quillon.Feature\"}]"); });
        LauncherClient client;
        client.setServicePort(server.port());
        client.toolFeatureId = QStringLiteral("com.nvx.quillon.feature");
        QVERIFY(runFlow(client, QStringLiteral("/data/scripts/index.xml")));
        QCOMPARE(summary(server.requests()), (QStringList{"GET /lantern-service/register/allTools",
                                                          "POST /lantern-service/state/com.nvx.quillon.feature"}));
        QVERIFY(server.requests().last().body.contains("\"payload\":\"description: tool started.\""));
    }

    void portWalk_data()
    {
        QTest::addColumn<int>("refusals");
        QTest::newRow("free at once") << 0;
        QTest::newRow("refused twice") << 2;
        QTest::newRow("refused five times, other case") << 5;
    }

    void portWalk()
    {
        QFETCH(int, refusals);
        std::atomic<int> refused{0};
        HttpTestServer server([&](const Request &r) {
            if (r.method == "PUT" && refused < refusals) {
                ++refused;
                return answer(refused % 2 ? "Error: port is already registered" : "PORT IS ALREADY REGISTERED");
            }
            return answer("[]");
        });
        LauncherClient client;
        client.setServicePort(server.port());
        client.toolFeatureId = QStringLiteral("t.feature");
        QVERIFY(runFlow(client, QStringLiteral("/data/board.xml")));
        const QList<Request> requests = server.requests();
        QCOMPARE(requests.size(), refusals + 3);
        for (int i = 0; i <= refusals; ++i) {
            QCOMPARE(requests.at(1 + i).method, QByteArray("PUT"));
            QVERIFY(requests.at(1 + i).body.endsWith("\"port\":\"" + QByteArray::number(50000 + i) + "\"}"));
        }
        QCOMPARE(client.toolPort, 50000 + refusals);
        QCOMPARE(requests.last().method, QByteArray("POST"));

        // The next document starts the walk at 50000 again.
        refused = 0;
        QVERIFY(runFlow(client, QStringLiteral("/data/board.xml")));
        QVERIFY(server.requests().at(requests.size() + 1).body.endsWith("\"port\":\"50000\"}"));
    }

    void emptyIdPostsToBarePath()
    {
        HttpTestServer server([](const Request &) { return answer("anything at all"); });
        LauncherClient client;
        client.setServicePort(server.port());
        QVERIFY(runFlow(client, QStringLiteral("/data/board.xml")));
        QCOMPARE(summary(server.requests()),
                 (QStringList{"GET /lantern-service/register/allTools", "POST /lantern-service/state/"}));
    }

    void misbehavingService_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("raw");
        QTest::newRow("garbage") << int(Response::Raw) << QByteArray("\x01\x02 not http at all\r\n\r\n");
        QTest::newRow("closes the connection") << int(Response::Close) << QByteArray();
        QTest::newRow("never answers") << int(Response::Silent) << QByteArray();
        QTest::newRow("server error") << int(Response::Raw)
                                      << QByteArray("HTTP/1.1 500 Oops\r\nContent-Length: 0\r\n\r\n");
    }

    void misbehavingService()
    {
        QFETCH(int, mode);
        QFETCH(QByteArray, raw);
        HttpTestServer server([&](const Request &) {
            Response r;
            r.mode = Response::Mode(mode);
            r.raw = raw;
            return r;
        });
        LauncherClient client;
        client.setServicePort(server.port());
        client.setTransferTimeoutMs(400);
        client.toolFeatureId = QStringLiteral("t.feature");
        QElapsedTimer clock;
        clock.start();
        // Nothing useful comes back: list, one register attempt, the state.
        QVERIFY(runFlow(client, QStringLiteral("/data/board.xml")));
        QVERIFY2(clock.elapsed() < 2 * 3 * 400 + 2000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(steps(server.requests()), (QStringList{"GET /lantern-service/register/allTools",
                                                        "PUT /lantern-service/register",
                                                        "POST /lantern-service/state/t.feature"}));
        QCOMPARE(client.toolPort, 50000);
    }

    void absentServiceCostsNothing()
    {
        quint16 port = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
            port = probe.serverPort();
        }
        LauncherClient client;
        client.setServicePort(port);
        client.toolFeatureId = QStringLiteral("t.feature");
        QElapsedTimer clock;
        clock.start();
        client.checkRegisteredTools(QStringLiteral("/data/board.xml"));
        // The call returns at once (the first one sets the network stack up);
        // the flow ends in the background, long before any time-out.
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        QSignalSpy done(&client, &LauncherClient::stateReported);
        QVERIFY(done.wait(3000));
        QVERIFY2(clock.elapsed() < LauncherClient::kTransferTimeoutMs / 2, qPrintable(QString::number(clock.elapsed())));
    }

    void helpNeedsTheLauncher()
    {
        QTemporaryDir root;
        const QString program = root.filePath(QStringLiteral("a/b/c/bin"));
        QDir().mkpath(program);
        LauncherClient client;
        QVERIFY(LauncherClient::launcherProgram(program).isEmpty());
        QVERIFY(!client.startHelp(program));
        // A stand-in launcher three folders up records its arguments.
        const QString launcher = root.filePath(QStringLiteral("a/Norvane-Lantern"));
        const QString record = root.filePath(QStringLiteral("args.txt"));
        QFile f(launcher);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("#!/bin/sh\nfor a in \"$@\"; do echo \"$a\"; done > '" + record.toUtf8() + "'\n");
        f.close();
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
        QCOMPARE(LauncherClient::launcherProgram(program), launcher);
        QVERIFY(client.startHelp(program));
        auto recorded = [&record] {
            QFile r(record);
            return r.open(QIODevice::ReadOnly) ? QString::fromUtf8(r.readAll()) : QString();
        };
        QTRY_COMPARE(recorded(),
                     QStringLiteral("-lantern.service\ndoStartTool com.nvx.ln.help.feature.feature.jar\n"));
    }
};

QTEST_MAIN(TestLauncherClient)
#include "tst_launcherclient.moc"
