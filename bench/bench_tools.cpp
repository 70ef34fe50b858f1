// Times the tools for description authors:
//
// 1. SVD completion and description generation of one vendor file, each as a
//    whole process (quillon-svd-complete; quillon -q -b with a
//    GENERATEXMLFROMSVD script), side by side with a bare QXmlStreamReader
//    tokenising pass over the same file, also as a whole process (this
//    program with --tokenise). Target: completion at most 3 times the pass.
//    The in-process parts (tokenise, complete, generate) are shown too.
// 2. The define validator on descriptions of 1,250 to 10,000 elements:
//    the time per element should stay flat (linear in the size).
//
//   bench_tools [file.svd]     (default: /work/shared/svd/STMicro_STM32H743x.svd)
//   bench_tools --tokenise file

#include "elements/MessageSink.h"
#include "tooling/DefineValidator.h"
#include "tooling/SvdCompleter.h"
#include "tooling/XmlGenerator.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const int runs = 5;

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double timed(const std::function<void()> &f)
{
    std::vector<double> t;
    f();  // warm-up
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        f();
        t.push_back(timer.nsecsElapsed() / 1e6);
    }
    return median(t);
}

volatile qint64 sink = 0;

qint64 tokenise(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    QXmlStreamReader xml(&file);
    qint64 tokens = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        ++tokens;
    }
    return tokens;
}

double process(const QString &program, const QStringList &args)
{
    return timed([&] {
        QProcess p;
        p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p.start(program, args);
        p.waitForFinished(-1);
    });
}

// Discards the validator's console lines: the bench times the checks.
class NullSink : public MessageSink
{
public:
    void consolePrint(const QString &) override {}
    void showError(const QString &) override {}
};

QByteArray description(int elements)
{
    QByteArray body;
    body.reserve(elements * 120);
    for (int i = 0; i < elements; ++i) {
        const QByteArray n = QByteArray::number(i);
        switch (i % 4) {
        case 0:
            body += "<spinbox define=\"P" + n + ".R.F[3:0]\" range=\"0;15\" default=\"3\"/>\n";
            break;
        case 1:
            body += "<checkbox define=\"P" + n + ".R.G[0]\" lockon=\"P" + QByteArray::number(i - 1) + ".R.F[3:0]=1\"/>\n";
            break;
        case 2:
            body += "<combo define=\"P" + n + ".R.H[1:0]\" default=\"label=b\"><item label=\"a\"/><item label=\"b\"/></combo>\n";
            break;
        default:
            body += "<math define=\"M" + n + "\" formula=\"P" + QByteArray::number(i - 3) + ".R.F + 1\"/>\n";
        }
    }
    return "<?xml version=\"1.0\"?>\n<nvxmlcfg version=\"2.0.0\">\n<tabcontainer>\n<verticalcontainer>\n" + body
        + "</verticalcontainer>\n</tabcontainer>\n</nvxmlcfg>\n";
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 3 && args[1] == QLatin1String("--tokenise")) {
        sink = tokenise(args[2]);
        return sink < 0 ? 1 : 0;
    }
    const QString svd = args.size() > 1 ? args[1] : QStringLiteral("/work/shared/svd/STMicro_STM32H743x.svd");
    const QString binDir = QFileInfo(app.applicationDirPath()).absolutePath();  // build/ above build/bench
    const QString tool = binDir + QStringLiteral("/quillon-svd-complete");
    const QString quillon = binDir + QStringLiteral("/quillon");
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("input.svd"));
    QFile::copy(svd, input);
    const QString completed = dir.filePath(QStringLiteral("input_completed.svd"));

    NullSink nullSink;
    MessageSink::install(&nullSink);

    std::printf("## %s (%.0f KiB)\n\n", qPrintable(QFileInfo(svd).fileName()), QFileInfo(svd).size() / 1024.0);
    const double bareIn = timed([&] { sink = tokenise(input); });
    SvdCompleter completer;
    const double completeIn = timed([&] { completer.completeFile(input, completed); });
    std::printf("completed: %d peripherals, %d registers, %d fields, %.0f KiB\n\n", completer.peripheralCount(),
                completer.registerCount(), completer.fieldCount(), QFileInfo(completed).size() / 1024.0);
    const double bareCompletedIn = timed([&] { sink = tokenise(completed); });
    const double generateIn = timed([&] { XmlGenerator().generateXMLFromSVD(completed, true); });

    const double bareProc = process(app.applicationFilePath(), {QStringLiteral("--tokenise"), input});
    const double completeProc = process(tool, {QStringLiteral("--quiet"), input, completed});
    const QString script = dir.filePath(QStringLiteral("gen.script"));
    {
        QFile f(script);
        f.open(QIODevice::WriteOnly);
        f.write(QStringLiteral("GENERATEXMLFROMSVD(%1, 1)\nEXIT(0)\n").arg(completed).toUtf8());
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const double generateProc = process(quillon, {QStringLiteral("-q"), QStringLiteral("-b") + script});

    std::printf("| step | in process ms | whole process ms | ratio to the bare pass (process) |\n|---|---:|---:|---:|\n");
    std::printf("| bare tokenising pass, vendor file | %.1f | %.1f | 1.00 |\n", bareIn, bareProc);
    std::printf("| completion (read, complete, write) | %.1f | %.1f | %.2f |\n", completeIn, completeProc, completeProc / bareProc);
    std::printf("| bare tokenising pass, completed file | %.1f | | |\n", bareCompletedIn);
    std::printf("| generation from the completed file (read, write, sign) | %.1f | %.1f | %.2f |\n\n", generateIn,
                generateProc, generateProc / bareProc);

    std::printf("## Define validator\n\n| elements | KiB | ms | us per element |\n|---:|---:|---:|---:|\n");
    for (int n : {1250, 2500, 5000, 10000}) {
        const QString file = dir.filePath(QStringLiteral("d%1.xml").arg(n));
        QFile f(file);
        f.open(QIODevice::WriteOnly);
        f.write(description(n));
        f.close();
        const double ms = timed([&] { DefineValidator().validate(file); });
        std::printf("| %d | %.0f | %.1f | %.1f |\n", n, QFileInfo(file).size() / 1024.0, ms, ms * 1000.0 / n);
    }
    MessageSink::install(nullptr);
    return 0;
}
