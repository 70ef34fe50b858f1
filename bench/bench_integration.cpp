// What the desktop integration costs at start when nothing is there: no
// launcher service, no network, a Keil menu full of entries. Run by hand:
//   build/bench/bench_integration
#include "integration/BlockingGet.h"
#include "integration/KeilIntegration.h"
#include "integration/KeilToolStore.h"
#include "integration/LauncherClient.h"
#include "integration/UpdateCheck.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

namespace {

quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

void line(const char *what, double ms)
{
    std::printf("%-62s %9.2f ms\n", what, ms);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir scratch;
    qputenv("XDG_CONFIG_HOME", scratch.path().toLocal8Bit());
    QElapsedTimer clock;

    {
        LauncherClient client;
        client.setServicePort(freePort());
        client.toolFeatureId = QStringLiteral("bench.feature");
        QEventLoop loop;
        QObject::connect(&client, &LauncherClient::stateReported, &loop, &QEventLoop::quit);
        clock.start();
        client.checkRegisteredTools(QStringLiteral("/x/board.xml"));
        line("launcher flow, first call returns (no service)", clock.nsecsElapsed() / 1e6);
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        loop.exec();
        line("launcher flow, background end (no service)", clock.nsecsElapsed() / 1e6);
        clock.start();
        client.checkRegisteredTools(QStringLiteral("/x/board.xml"));
        line("launcher flow, second call returns", clock.nsecsElapsed() / 1e6);
        loop.exec();
    }

    clock.start();
    BlockingGet::get(QStringLiteral("127.0.0.1"), freePort(), QStringLiteral("/stable/features"));
    line("update GET, nobody listening", clock.nsecsElapsed() / 1e6);
    clock.start();
    BlockingGet::get(QStringLiteral("updates.invalid"), 80, QStringLiteral("/stable/features"));
    line("update GET, host unknown", clock.nsecsElapsed() / 1e6);
    clock.start();
    BlockingGet::get(QStringLiteral("10.255.255.1"), 80, QStringLiteral("/stable/features"));
    line("update GET, packets dropped (time-out)", clock.nsecsElapsed() / 1e6);

    QByteArray listing;
    const QByteArray prefix = UpdateCheck::defaultPrefix().toUtf8();
    while (listing.size() < 8 * 1024 * 1024)
        listing += "<a href=\"" + prefix + "2.4.9.v20240101.jar\">" + prefix + "2.4.9.v20240101.jar</a>\n";
    clock.start();
    UpdateCheck::newestIn(listing, UpdateCheck::defaultPrefix(), UpdateCheck::versionNumber(2, 5, 0));
    line("listing of 8 MB searched", clock.nsecsElapsed() / 1e6);

    QDir().mkpath(scratch.filePath(QStringLiteral("Keil/uVision5")));
    KeilToolStore store(scratch.filePath(QStringLiteral("Keil/uVision5/ToolM.ini")));
    for (int i = 0; i < KeilToolStore::kSlots; ++i) {
        store.setValue("Mtx", i, QStringLiteral("Tool %1").arg(i));
        store.setValue("Mfg", i, 0x900);
        store.setValue("Mex", i, QStringLiteral("/usr/bin/true"));
    }
    store.sync();
    KeilIntegration keil(store);
    keil.report = [](const QString &) {};
    clock.start();
    keil.integrateAtStart(true);
    line("Keil start step, menu of 20 entries", clock.nsecsElapsed() / 1e6);
    return 0;
}
