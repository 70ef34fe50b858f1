// Times the SVD model read against a bare tokenising pass over the same
// bytes, and, when libxml2's xmllint is installed, against
// `xmllint --stream --noout` on the file (a whole process, start included).
// The model read should cost at most 1.5 times the bare pass.
//
//   bench_svd [file.svd ...]     (default: every *.svd in /work/shared/svd)

#include "elements/DocumentTables.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "model/SvdReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

const int runs = 5;

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Keeps the compiler from dropping a pass whose result nobody reads.
volatile qint64 sink = 0;

double barePass(const QByteArray &bytes)
{
    QElapsedTimer timer;
    timer.start();
    QXmlStreamReader xml(bytes);
    qint64 tokens = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        ++tokens;
    }
    const double ms = timer.nsecsElapsed() / 1e6;
    sink = sink + tokens;
    return ms;
}

struct ModelRun {
    double ms = 0;
    bool ok = false;
    int peripherals = 0;
    int registers = 0;
};

ModelRun modelPass(const QByteArray &bytes)
{
    DocumentTables tables;
    HardwareModel model(&tables);
    ModelRun run;
    QElapsedTimer timer;
    timer.start();
    SvdReader reader(model);
    run.ok = reader.read(bytes);
    run.ms = timer.nsecsElapsed() / 1e6;
    run.peripherals = model.peripherals().size();
    for (const Peripheral *p : model.peripherals())
        run.registers += p->registers.size();
    return run;
}

// Milliseconds of one xmllint streaming pass, or -1 when it failed.
double xmllintPass(const QString &xmllint, const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.start(xmllint, {QStringLiteral("--stream"), QStringLiteral("--noout"), path});
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return -1;
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QStringList files = app.arguments().mid(1);
    if (files.isEmpty()) {
        const QDir dir(QStringLiteral("/work/shared/svd"));
        for (const QString &name : dir.entryList({QStringLiteral("*.svd")}, QDir::Files, QDir::Name))
            files.append(dir.filePath(name));
    }

    const QString xmllint = QStandardPaths::findExecutable(QStringLiteral("xmllint"));
    std::printf("%-34s %8s %6s %7s %10s %10s %6s %11s\n", "file", "KiB", "periph", "regs", "bare ms", "model ms", "ratio",
                "xmllint ms");
    bool allOk = true;
    for (const QString &path : qAsConst(files)) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            std::printf("%-34s cannot open\n", qPrintable(QFileInfo(path).fileName()));
            allOk = false;
            continue;
        }
        const QByteArray bytes = file.readAll();

        std::vector<double> bare;
        std::vector<double> model;
        std::vector<double> lint;
        ModelRun last;
        // One untimed round of each warms caches and the allocator.
        barePass(bytes);
        modelPass(bytes);
        for (int i = 0; i < runs; ++i) {
            bare.push_back(barePass(bytes));
            last = modelPass(bytes);
            model.push_back(last.ms);
            if (!xmllint.isEmpty())
                lint.push_back(xmllintPass(xmllint, path));
        }
        const double b = median(bare);
        const double m = median(model);
        const double l = lint.empty() ? -1 : median(lint);
        std::printf("%-34s %8.0f %6d %7d %10.2f %10.2f %6.2f %11.2f%s\n", qPrintable(QFileInfo(path).fileName()),
                    bytes.size() / 1024.0, last.peripherals, last.registers, b, m, m / b, l,
                    last.ok ? "" : "  (read failed)");
        allOk = allOk && last.ok;
    }
    return allOk ? 0 : 1;
}
