// Live target data: one poll pass over many target variables against the
// simulated probe library, and samples fed to a plot with 8 curves.
//
//   bench_livedata [variables samples]      (default: 1000 100000)
//
// Poll: the records are all due every pass (interval 0xFFFFFFFF), four
//   bytes each, the memory changes between passes so that every record sets
//   its value; the figure is the median over 7 rounds of the mean of 50
//   passes. The simulated library keeps no call log here.
// Plot: one define feeds all 8 curves of a plot (maxX 1000) in sweep and
//   in scrolling mode; the samples are timed in 10 blocks, so the cost of
//   the last block shows whether it grows with what came before.

#include "device/JLinkApi.h"
#include "device/JLinkConnection.h"
#include "device/JLinkProject.h"
#include "device/SeggerThread.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "shell/Dialogs.h"
#include "views/FloatSeriesData.h"
#include "views/MyQwtPlot.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLibrary>
#include <QSettings>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void benchPoll(int count)
{
    QTemporaryDir store;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, store.path());
    QSettings(QSettings::NativeFormat, QSettings::UserScope, "SEGGER", "J-Link")
        .setValue("InstallPath", QStringLiteral(QUILLON_JLINK_SIM_DIR));
    QLibrary sim(QDir(QStringLiteral(QUILLON_JLINK_SIM_DIR)).filePath("libjlinkarm.so"));
    if (!sim.load()) {
        std::printf("simulated probe not found: %s\n", qPrintable(sim.errorString()));
        return;
    }
    reinterpret_cast<void (*)(int)>(sim.resolve("SIMJLINK_SetLogging"))(0);
    auto poke = reinterpret_cast<int (*)(unsigned, unsigned, const void *)>(sim.resolve("SIMJLINK_Poke"));
    JLinkProject project;
    JLinkConnection::prepareJLink(project);
    if (JLinkConnection::connectJLink(project) != 0) {
        std::printf("connect failed\n");
        return;
    }

    std::vector<std::unique_ptr<DataClass>> data;
    QList<TargetVariable *> records;
    for (int i = 0; i < count; ++i) {
        data.emplace_back(new DataClass(QStringLiteral("V%1").arg(i)));
        auto *t = new TargetVariable;
        t->address = 0x20000000u + 4u * quint32(i);
        t->size = 4;
        t->interval = 0xFFFFFFFFu;
        data.back()->setTarget(t);
        records.append(t);
    }
    std::atomic<bool> run{true};
    SeggerThread thread(records, &run);
    std::vector<quint32> image(static_cast<size_t>(count));
    std::vector<double> rounds;
    quint32 stamp = 1;
    for (int round = 0; round < 8; ++round) {
        QElapsedTimer timer;
        qint64 total = 0;
        for (int pass = 0; pass < 50; ++pass) {
            for (quint32 &word : image)
                word = stamp;
            ++stamp;
            poke(0x20000000u, unsigned(4 * count), image.data());
            timer.start();
            thread.pollOnce(pass);
            total += timer.nsecsElapsed();
        }
        if (round > 0)
            rounds.push_back(double(total) / 50.0);
    }
    const double pass = median(rounds);
    auto reads = reinterpret_cast<long (*)()>(sim.resolve("SIMJLINK_Reads"));
    std::printf("poll pass, %d variables: %.3f ms (%.3f us per variable; %ld reads reached the probe in %d passes, "
                "last value %u)\n",
                count, pass / 1e6, pass / 1e3 / count, reads(), 8 * 50, data.back()->value);
}

void benchPlot(bool oszi, int samples)
{
    MyQwtPlot plot;
    plot.setModes(oszi, true);
    plot.setBounds(0, 1000, 0, 1000);
    plot.setAutoScale(true, true);
    for (int c = 0; c < 8; ++c)
        plot.addCurve(QStringLiteral("c%1").arg(c), 1, Qt::blue, QStringLiteral("x"));
    plot.resize(800, 400);
    const int blocks = 10;
    const int perBlock = samples / blocks;
    std::printf("plot, 8 curves, %s mode, %d samples, ns per sample and block:", oszi ? "scrolling" : "sweep", samples);
    int n = 0;
    for (int b = 0; b < blocks; ++b) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < perBlock; ++i, ++n)
            plot.feed(QStringLiteral("x"), double(n % 900));
        std::printf(" %.0f", double(timer.nsecsElapsed()) / perBlock);
    }
    std::printf("\n");
    // One full paint of the 8 full curves, as a shown plot would do.
    QElapsedTimer paint;
    paint.start();
    const int paints = 20;
    for (int i = 0; i < paints; ++i)
        plot.grab();
    std::printf("  paint of the full plot: %.2f ms\n", double(paint.nsecsElapsed()) / paints / 1e6);
}

// The store alone: the worst case is scrolling over the longest window.
void benchStore(int samples)
{
    for (int length : {1000, FloatSeriesData::MaxLength}) {
        std::vector<std::unique_ptr<FloatSeriesData>> series;
        for (int c = 0; c < 8; ++c)
            series.emplace_back(new FloatSeriesData(length, true, true));
        std::printf("store only, 8 series, scrolling, window %d, ns per sample and block:", length);
        const int perBlock = samples / 10;
        for (int b = 0; b < 10; ++b) {
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < perBlock; ++i)
                for (auto &s : series)
                    s->append(float(i));
            std::printf(" %.0f", double(timer.nsecsElapsed()) / perBlock);
        }
        std::printf("\n");
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Dialogs::setQuiet(true);
    const int variables = argc > 1 ? std::max(1, atoi(argv[1])) : 1000;
    const int samples = argc > 2 ? std::max(10, atoi(argv[2])) : 100000;
    benchPoll(variables);
    benchPlot(false, samples);
    benchPlot(true, samples);
    benchStore(samples);
    return 0;
}
