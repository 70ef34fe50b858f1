// Times the pin mapper and the catalog filter.
//
//   bench_pinmapper [idle-seconds]      (default: 10)
//
// Repaint: a chip of 400 pins with 500, 1,000 and 2,000 map conditions
//   (half text comparisons, half expressions, on records of the form); a
//   quarter of them hold. Each figure is the median of 15 renders of the
//   scene into an image. The time must grow linearly with the conditions.
// Idle: a shown pin mapper on that chip with 2,000 conditions, nothing
//   changing; CPU time of the process over the idle seconds. The refresh
//   timer must not make an idle program busy.
// Catalog: filtering 10,000 and 100,000 records through the dialog's proxy
//   (two filter rows, numeric and text), median of 7.

#include "config/Catalog.h"
#include "config/ParameterMap.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "views/PinMapperPane.h"
#include "views/PinMapping.h"
#include "views/PinMappingDocument.h"
#include "views/QGraphicsChipItem.h"
#include "views/SelectFromCatalogDialog.h"
#include "views/MySortFilterProxyModel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

const int kRecords = 50;

std::shared_ptr<PinMappingDocument> chip(int pins, int conditions)
{
    auto doc = std::make_shared<PinMappingDocument>();
    doc->name = QStringLiteral("BENCH");
    doc->chipSize = 4000;
    for (int i = 0; i < pins; ++i) {
        Pin pin;
        pin.nr = quint16(i + 1);
        pin.pinname = QStringLiteral("P%1").arg(i);
        pin.quadrant = quint16(i % 4);
        pin.index = quint16(i / 4);
        doc->pinsByName.insert(pin.pinname, doc->pins.size());
        doc->pins.append(pin);
    }
    for (int i = 0; i < conditions; ++i) {
        MapEntry entry;
        entry.pinname = QStringLiteral("P%1").arg(i % pins);
        entry.function = QStringLiteral("F%1").arg(i);
        entry.output = i % 2;
        doc->functionsByName.insert(entry.function, doc->entries.size());
        doc->entries.append(entry);
        MapCondEntry cond;
        cond.function = entry.function;
        // Records hold 0..3: a quarter of the conditions hold.
        cond.cond = i % 2 ? QStringLiteral("R%1==%2").arg(i % kRecords).arg(i % 4)
                          : QStringLiteral("R%1 + 1 == %2 && R%1 >= 0").arg(i % kRecords).arg(i % 4 + 1);
        cond.compiled.compile(cond.cond);
        doc->conditions.append(cond);
    }
    return doc;
}

double repaintMs(const std::shared_ptr<PinMappingDocument> &doc)
{
    QGraphicsScene scene;
    auto *item = new QGraphicsChipItem(doc);
    scene.addItem(item);
    QImage image(1000, 1000, QImage::Format_ARGB32_Premultiplied);
    std::vector<double> times;
    for (int round = 0; round < 15; ++round) {
        image.fill(Qt::white);
        QPainter painter(&image);
        QElapsedTimer timer;
        timer.start();
        scene.render(&painter, QRectF(), QRectF(-500, -500, 5000, 5000));
        times.push_back(timer.nsecsElapsed() / 1e6);
    }
    return median(times);
}

QString catalogFile(const QString &folder, int records)
{
    const QString path = QStringLiteral("%1/catalog_%2.xml").arg(folder).arg(records);
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("<Catalog>\n");
    for (int i = 0; i < records; ++i)
        file.write(QStringLiteral("<CatalogEntry Name=\"Part %1 %2\" Freq=\"%3 MHz\" Load=\"%4\"/>\n")
                       .arg(i)
                       .arg(i % 7 ? QStringLiteral("SMD") : QStringLiteral("THT"))
                       .arg(1 + i % 64)
                       .arg(i % 20)
                       .toUtf8());
    file.write("</Catalog>\n");
    return path;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int idleSeconds = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 10;

    DocumentTables tables;
    DocumentTables::setCurrent(&tables);
    for (int i = 0; i < kRecords; ++i)
        tables.addDataValue(new DataClass(QStringLiteral("R%1").arg(i)))->setValue(quint32(i % 4));

    std::printf("Repaint of a 400-pin chip (median of 15)\n");
    for (int conditions : {500, 1000, 2000}) {
        const double ms = repaintMs(chip(400, conditions));
        std::printf("  %5d conditions: %8.2f ms\n", conditions, ms);
    }

    {
        PinMapping mapper(chip(400, 2000));
        mapper.resize(800, 800);
        mapper.show();
        QElapsedTimer settle;
        settle.start();
        while (settle.elapsed() < 1000)
            app.processEvents(QEventLoop::AllEvents, 50);
        const int repaintsBefore = mapper.pane()->repaintCount();
        const double cpuBefore = cpuSeconds();
        QElapsedTimer wall;
        wall.start();
        QTimer::singleShot(idleSeconds * 1000, &app, &QApplication::quit);
        app.exec();
        const double cpu = cpuSeconds() - cpuBefore;
        std::printf("Idle pin mapper (2,000 conditions) over %.1f s: CPU %.3f s (%.2f %%), repaints %d\n",
                    wall.elapsed() / 1000.0, cpu, 100.0 * cpu / (wall.elapsed() / 1000.0),
                    mapper.pane()->repaintCount() - repaintsBefore);
    }

    QTemporaryDir dir;
    QList<Parameter> params;
    Parameter name;
    name.id = QStringLiteral("Name");
    name.text = QStringLiteral("Name");
    name.filter = name.displayMask = QStringLiteral("1");
    Parameter freq;
    freq.id = QStringLiteral("Freq");
    freq.type = QStringLiteral("float");
    freq.filter = freq.displayMask = QStringLiteral("1");
    params << name << freq;
    std::printf("Catalog filter, two rows (median of 7)\n");
    for (int records : {10000, 100000}) {
        const QString path = catalogFile(dir.path(), records);
        QElapsedTimer load;
        load.start();
        SelectFromCatalogDialog dialog(path, params, &tables);
        const double loadMs = load.nsecsElapsed() / 1e6;
        dialog.filterTable()->item(0, 0)->setText(QStringLiteral("SMD"));
        dialog.filterTable()->item(1, 0)->setText(QStringLiteral("10"));
        dialog.filterTable()->item(1, 1)->setText(QStringLiteral("40"));
        std::vector<double> times;
        int shown = 0;
        for (int round = 0; round < 7; ++round) {
            QElapsedTimer timer;
            timer.start();
            dialog.rebuildFilter();
            shown = dialog.proxy()->rowCount();
            times.push_back(timer.nsecsElapsed() / 1e6);
        }
        std::printf("  %6d records: filter %8.2f ms (%d pass), dialog with read %8.1f ms\n", records, median(times),
                    shown, loadMs);
    }
    DocumentTables::setCurrent(nullptr);
    return 0;
}
