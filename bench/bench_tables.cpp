// Times the table element's whole-value paths (table file load and save, a
// configuration's round trip) at 1,000 and 10,000 rows, and a register
// view's rebuild on a register of 32 one-bit fields. Run by hand:
//     build/bench/bench_tables
#include "config/ConfigurationWriter.h"
#include "elements/DocumentTables.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/RegisterView.h"
#include "views/Table.h"
#include "views/TableFile.h"
#include "views/ViewContext.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

double medianMs(int runs, const std::function<void()> &work)
{
    QVector<double> times;
    work(); // warm-up
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        work();
        times << clock.nsecsElapsed() / 1e6;
    }
    std::sort(times.begin(), times.end());
    return times.at(times.size() / 2);
}

Table *makeTable(QWidget *parent)
{
    auto *table = new Table(parent);
    table->setObjectName(QStringLiteral("TABLE"));
    const char *types[] = {"regname", "address", "func", "value", "delay", "answer", "comment"};
    for (const char *type : types) {
        TableColumn c;
        c.kind = Table::kindOf(QLatin1String(type));
        c.format = c.kind == Table::Address || c.kind == Table::Value ? QStringLiteral("0x%08X") : QString();
        table->addColumn(c);
    }
    table->setNumRows(2);
    table->buildModel();
    return table;
}

QString rowsText(int rows)
{
    QString text;
    for (int i = 0; i < rows; ++i)
        text += QStringLiteral("UARTE0.CONFIG,0x%1,0,0x%2,%3,row %4;")
                    .arg(0x40002000 + 4 * (i % 64), 8, 16, QLatin1Char('0'))
                    .arg(i, 8, 16, QLatin1Char('0'))
                    .arg(i % 3)
                    .arg(i);
    return text;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QWidget owner;
    DocumentTables tables;
    DocumentTables::setCurrent(&tables);

    std::printf("| rows | load file ms | save file ms | .qlnp round trip ms |\n|---:|---:|---:|---:|\n");
    for (int rows : {1000, 10000}) {
        Table *table = makeTable(&owner);
        tables.clear();
        tables.addElement(QStringLiteral("TABLE"), table);
        table->loadValue(rowsText(rows));
        const QString path = dir.filePath(QStringLiteral("t%1.qlnp").arg(rows));
        const double save = medianMs(5, [&]() { TableFile::save(path, QStringLiteral("TABLE"), table->referenceValue()); });
        const double load = medianMs(5, [&]() { table->loadFile(path, false); });
        const double qlnp = medianMs(5, [&]() {
            const QByteArray bytes = ConfigurationWriter::build(tables, QStringLiteral("form.xml"), QStringLiteral("2.0.0"), false);
            QXmlStreamReader xml(bytes);
            QString value;
            while (!xml.atEnd()) {
                if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("value")) {
                    value = xml.readElementText();
                    break;
                }
            }
            table->buildModel();
            table->loadValue(value);
        });
        if (table->tableModel()->rowCount() != rows) {
            std::printf("row count %d, expected %d\n", table->tableModel()->rowCount(), rows);
            return 1;
        }
        std::printf("| %d | %.2f | %.2f | %.2f |\n", rows, load, save, qlnp);
        delete table;
    }

    // A 32-bit register of 32 one-bit fields, every second one enumerated.
    HardwareModel model(&tables);
    Peripheral *p = model.addPeripheral(QStringLiteral("P"));
    Register *reg = p->addRegister(QStringLiteral("R"), QString());
    reg->size = 32;
    reg->address = 0x40000000;
    for (int bit = 0; bit < 32; ++bit) {
        BitField *f = reg->addField(QStringLiteral("F%1").arg(bit));
        f->msb = f->lsb = bit;
        f->width = 1;
        if (bit % 2)
            f->enumeratedValues = {{QStringLiteral("Off"), QString(), 0}, {QStringLiteral("On"), QString(), 1}};
    }
    ViewContext::setModel(&model);
    auto *view = new RegisterView(&owner);
    view->resize(1200, 60);
    view->setValue(QStringLiteral("P"), 8);
    const double rebuild = medianMs(101, [&]() {
        RegisterView::setPending(0xA5A5A5A5);
        view->setValue(QStringLiteral("R"), 7);
    });
    if (view->viewModel()->columnCount() != 32)
        return 1;
    std::printf("\nregister view rebuild, 32 fields: %.3f ms (median of 101)\n", rebuild);
    ViewContext::setModel(nullptr);
    return 0;
}
