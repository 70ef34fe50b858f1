// Times the two automation paths that run per user action or per line of
// Python: a recorded line (file and console echo), and a Python call that
// reaches an element through the meta-object binding, compared with the same
// change made in C++.
//
//   QUILLON_PYTHON_BRIDGE=build/libquillon_python.so bench_automation [calls]
//                                                    (default: 10000)
//
// Each figure is the median of 5 rounds of the mean time of one call.

#include "automation/PythonBridge.h"
#include "automation/RecordingControl.h"
#include "automation/ScriptRecorder.h"
#include "config/Checksum.h"
#include "elements/DocumentTables.h"
#include "elements/RecordingHook.h"
#include "elements/SpinBox.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "shell/StartOptions.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const char *svdText =
    "<?xml version=\"1.0\"?>\n<device><name>BENCH</name><peripherals><peripheral><name>B</name>"
    "<baseAddress>0x40000000</baseAddress><registers><register><name>R</name><addressOffset>0</addressOffset>"
    "<size>32</size></register></registers></peripheral></peripherals></device>\n";

double medianOf(const std::function<double()> &round)
{
    std::vector<double> values;
    for (int i = 0; i < 5; ++i)
        values.push_back(round());
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int calls = argc > 1 ? std::max(1, atoi(argv[1])) : 10000;

    QTemporaryDir dir;
    QFile svd(dir.filePath(QStringLiteral("bench.svd")));
    if (!svd.open(QIODevice::WriteOnly))
        return 1;
    svd.write(svdText);
    svd.close();
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<nvxmlcfg version=\"2.5.0\">\n\t<checksum>")
        + Checksum::placeholder()
        + QStringLiteral("</checksum>\n<svd file=\"bench.svd\"/>\n<usesPython/>\n<verticalcontainer>\n"
                         "<spinbox define=\"B.R.CNT\" svd=\"0\" range=\"0;100000\"/>\n</verticalcontainer>\n</nvxmlcfg>\n");
    const QString path = dir.filePath(QStringLiteral("bench.xml"));
    QFile xml(path);
    if (!xml.open(QIODevice::WriteOnly))
        return 1;
    xml.write(Checksum::signedText(text));
    xml.close();

    StartOptions options;
    options.quiet = true;
    auto *window = new MainWindow(options);
    if (!window->open(path) || !PythonBridge::active()) {
        std::fprintf(stderr, "the form with Python did not open (is QUILLON_PYTHON_BRIDGE set?)\n");
        return 1;
    }
    window->startUp(false);
    auto *spin = dynamic_cast<SpinBox *>(window->document()->tables().element(QStringLiteral("B.R.CNT")));

    // A recorded line: the stream and the console echo, without the focus
    // test (that is a pointer comparison).
    auto *control = window->findChild<RecordingControl *>();
    control->start(dir.filePath(QStringLiteral("bench.script")));
    const double record = medianOf([&] {
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < calls; ++i)
            RecordingHook::record(QStringLiteral("Set(B.R.CNT, %1)").arg(i));
        return double(clock.nsecsElapsed()) / calls / 1000.0;
    });
    control->startStop();

    const double direct = medianOf([&] {
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < calls; ++i)
            spin->setValue(QString::number(i % 1000), 0);
        return double(clock.nsecsElapsed()) / calls / 1000.0;
    });
    const QString loop = QStringLiteral("python:for i in range(%1): B_R_CNT.value = i % 1000").arg(calls);
    const double python = medianOf([&] {
        QElapsedTimer clock;
        clock.start();
        window->runScript(loop);
        return double(clock.nsecsElapsed()) / calls / 1000.0;
    });
    const QString empty = QStringLiteral("python:for i in range(%1): pass").arg(calls);
    const double bare = medianOf([&] {
        QElapsedTimer clock;
        clock.start();
        window->runScript(empty);
        return double(clock.nsecsElapsed()) / calls / 1000.0;
    });

    std::printf("Python %s, %d calls per round\n", qPrintable(PythonBridge::pythonVersion()), calls);
    std::printf("%-44s %8.2f us\n", "recorded line (file + console echo)", record);
    std::printf("%-44s %8.2f us\n", "spin box value set in C++ (setValue)", direct);
    std::printf("%-44s %8.2f us\n", "spin box value set from Python (property)", python);
    std::printf("%-44s %8.2f us\n", "empty Python loop step", bare);
    delete window;
    return 0;
}
