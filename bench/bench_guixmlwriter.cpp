// Times the form editor's writer: reading a description into a form, then
// writing the form back (the text alone, and the whole save with signing
// through a save file), side by side with a bare QXmlStreamReader pass over
// the written text. Median of 5 runs after one untimed warm-up.
//
//   bench_guixmlwriter [description.xml ...]
//   (default: the built example, and a description generated in tree and
//   in group layout from /work/shared/svd/STMicro_STM32H743x.svd)

#include "automation/PythonBridge.h"
#include "reader/DescriptionReader.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "tooling/GuiXmlWriter.h"
#include "tooling/XmlGenerator.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QWidget>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const int runs = 5;

double timed(const std::function<void()> &f)
{
    std::vector<double> t;
    f();
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        f();
        t.push_back(timer.nsecsElapsed() / 1e6);
    }
    std::sort(t.begin(), t.end());
    return t[t.size() / 2];
}

void measure(const QString &path, const QString &outFolder)
{
    Document document(nullptr);
    const double read = timed([&]() { document.read(path, ReaderOptions()); });
    if (!document.root()) {
        std::printf("%s: does not load: %s\n", qPrintable(path), qPrintable(document.errorText()));
        return;
    }
    const int elements = document.root()->findChildren<QWidget *>().size();
    GuiXmlWriter writer(document);
    QString text;
    const double textMs = timed([&]() { text = writer.text(); });
    const QString out = QDir(outFolder).filePath(QFileInfo(path).fileName());
    const double save = timed([&]() { writer.write(out); });
    const QByteArray bytes = text.toUtf8();
    const double bare = timed([&]() {
        QXmlStreamReader xml(bytes);
        while (!xml.atEnd())
            xml.readNext();
    });
    std::printf("| %s | %d | %d | %.1f | %.1f | %.1f | %.1f | %.2f |\n", qPrintable(QFileInfo(path).fileName()),
                int(bytes.size() / 1024), elements, read, textMs, save, bare, save / read);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Dialogs::setQuiet(true);
    PythonBridge::setPluginPath(QStringLiteral(QUILLON_SOURCE_DIR "/build/libquillon_python.so"));
    QTemporaryDir dir;
    QStringList paths = app.arguments().mid(1);
    if (paths.isEmpty()) {
        paths << QStringLiteral(QUILLON_SOURCE_DIR "/build/examples/nrf52840/nrf52840_board.xml");
        const QString svd = QStringLiteral("/work/shared/svd/STMicro_STM32H743x.svd");
        for (bool tree : {true, false}) {
            const QString folder = dir.filePath(tree ? QStringLiteral("tree") : QStringLiteral("group"));
            QDir().mkpath(folder);
            const QString copy = QDir(folder).filePath(QFileInfo(svd).fileName());
            QFile::copy(svd, copy);
            XmlGenerator generator;
            if (generator.generateXMLFromSVD(copy, tree))
                paths << generator.outputPath();
        }
    }
    const QString outFolder = dir.filePath(QStringLiteral("out"));
    QDir().mkpath(outFolder);
    std::printf("| description | KiB written | widgets | read ms | text ms | save ms | bare pass ms | save/read |\n"
                "|---|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const QString &path : paths)
        measure(path, outFolder);
    return 0;
}
