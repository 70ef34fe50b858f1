#include <QtTest>

#include "views/FloatSeriesData.h"
#include "views/MyQwtPlot.h"

#include <qwt_scale_div.h>

#include "FakeElement.h"
#include "RecordingSink.h"
#include "TestPictures.h"
#include "config/Catalog.h"
#include "config/CatalogFilter.h"
#include "config/CatalogRecordApplier.h"
#include "config/ParameterMap.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "shell/Dialogs.h"
#include "views/MySortFilterProxyModel.h"
#include "views/SelectFromCatalogDialog.h"

#include <QBuffer>
#include <QLabel>
#include <QStandardItemModel>
#include <QTableView>
#include <QTableWidget>
#include <QTemporaryDir>

namespace {

const QByteArray kParameters = R"(<?xml version="1.0"?>
<parameters>
  <parameter Nr="1" ID="Name" VarName="XTAL.NAME" Text="Part" DisplayMask="1" Filter="1" comment="Order code">first</parameter>
  <parametergroup name="electrical">
    <parameter Nr="2" ID="Freq" VarName="XTAL.FREQ" Text="Frequency" Unit="MHz" type="float" min="1" max="64" Filter="1" DisplayMask="1"/>
    <parametergroup>
      <parameter Nr="3" ID="Load" VarName="XTAL.LOAD" Text="Load capacitance" Unit="pF" type="ul32" Filter="yes" DisplayMask="1"/>
    </parametergroup>
    <note>skipped</note>
  </parametergroup>
  <parameter Nr="4" ID="" VarName="DROPPED"/>
  <parameter Nr="5" ID="Sheet" VarName="XTAL.SHEET" Text="Data sheet" type="URL" Filter="1" DisplayMask="0"/>
  <parameter Nr="6" ID="Photo" VarName="XTAL.PHOTO" Text="Photo"/>
  <parameter Nr="7" ID="Plot" VarName="XTAL.PLOT" Text="Response"/>
</parameters>
)";

// "//" is written as character references: moc reads it as a comment even
// inside a raw string, and loses the test class.
const QByteArray kCatalog = R"(<?xml version="1.0"?>
<Catalog>
  <CatalogEntry Name="ABM8-32.000MHZ" Freq="32 MHz" Load="10" Sheet="https:&#47;&#47;example.com/abm8.pdf" Color="blue">Abracon, 3.2 x 2.5 mm</CatalogEntry>
  <CatalogEntry Name="TSX-3225 16MHz" Freq="16" Load="9" Sheet="https:&#47;&#47;example.com/tsx.pdf"/>
  <Other Name="not a record"/>
  <CatalogEntry Name="NX2016SA 32MHz" Freq="32" Load="8" Sheet="https:&#47;&#47;example.com/nx.pdf"/>
  <CatalogEntry Name="odd one" Freq="n/a" Load="x"/>
</Catalog>
)";

QList<Parameter> parameters()
{
    ParameterMap map;
    QBuffer buffer;
    buffer.setData(kParameters);
    buffer.open(QIODevice::ReadOnly);
    map.read(&buffer, QStringLiteral("params.xml"));
    return map.parameters;
}

Catalog catalog()
{
    Catalog c;
    QBuffer buffer;
    buffer.setData(kCatalog);
    buffer.open(QIODevice::ReadOnly);
    c.read(&buffer, QStringLiteral("catalog.xml"));
    return c;
}

QStringList passing(const QList<CatalogFilter::Row> &rows, const QList<Parameter> &params, const Catalog &c)
{
    QStringList names;
    for (const CatalogRecord &record : c.records) {
        if (CatalogFilter::passes(rows, params, record))
            names << record.value(QStringLiteral("Name"));
    }
    return names;
}

} // namespace

class TestCatalogs : public QObject
{
    Q_OBJECT

private slots:
    void parameterMapFlattensGroupsAndDropsEmptyIds();
    void parameterMapBadInput_data();
    void parameterMapBadInput();
    void catalogKeepsAttributesInOrder();
    void catalogBadInput_data();
    void catalogBadInput();
    void filters_data();
    void filters();
    void textInANumericCellCountsAsEmpty();
    void valueForms();
    void applyingARecord();
    void dialogFiltersAndApplies();
    void quietModeCountsAsCancelled();
};

void TestCatalogs::parameterMapFlattensGroupsAndDropsEmptyIds()
{
    RecordingSink sink;
    const QList<Parameter> params = parameters();
    QStringList ids;
    for (const Parameter &p : params)
        ids << p.id;
    QCOMPARE(ids, QStringList({"Name", "Freq", "Load", "Sheet", "Photo", "Plot"}));
    QCOMPARE(params.at(0).elementText, QStringLiteral("first"));
    QCOMPARE(params.at(0).comment, QStringLiteral("Order code"));
    QCOMPARE(params.at(1).unit, QStringLiteral("MHz"));
    QCOMPARE(params.at(1).headerText(), QStringLiteral("Frequency (MHz)"));
    QVERIFY(params.at(1).isNumeric() && params.at(2).isNumeric() && !params.at(0).isNumeric());
    QVERIFY(params.at(2).hasFilter());
    QVERIFY(!params.at(3).isShown());
    QVERIFY(params.at(3).isUrl());
    QVERIFY(sink.console.isEmpty());
}

void TestCatalogs::parameterMapBadInput_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("count");
    QTest::newRow("no IDs") << QByteArray("<parameters><parameter VarName=\"A\"/><parameter ID=\"\"/></parameters>") << true
                            << "holds no parameter with an ID" << 0;
    QTest::newRow("wrong root") << QByteArray("<Catalog/>") << false << "XML Error" << 0;
    QTest::newRow("empty") << QByteArray() << false << "XML Error" << 0;
    QTest::newRow("broken after one") << QByteArray("<parameters><parameter ID=\"A\"/><parameter ID=\"B\"") << false
                                      << "XML Error" << 1;
}

void TestCatalogs::parameterMapBadInput()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, ok);
    QFETCH(QString, message);
    QFETCH(int, count);
    RecordingSink sink;
    ParameterMap map;
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    QCOMPARE(map.read(&buffer, QStringLiteral("params.xml")), ok);
    QVERIFY2(sink.contains(message), qPrintable(sink.console.join('\n')));
    QCOMPARE(map.parameters.size(), count);

    QTemporaryDir dir;
    ParameterMap missing;
    QVERIFY(!missing.readFile(dir.filePath(QStringLiteral("none.xml"))));
    QVERIFY(sink.errors.last().startsWith(QStringLiteral("Cannot open file ")));
}

void TestCatalogs::catalogKeepsAttributesInOrder()
{
    RecordingSink sink;
    const Catalog c = catalog();
    QCOMPARE(c.records.size(), 4);
    const CatalogRecord &first = c.records.at(0);
    QCOMPARE(first.fields.size(), 5);
    QCOMPARE(first.fields.at(0).first, QStringLiteral("Name"));
    QCOMPARE(first.fields.at(4), qMakePair(QStringLiteral("Color"), QStringLiteral("blue")));
    QCOMPARE(first.text, QStringLiteral("Abracon, 3.2 x 2.5 mm"));
    QCOMPARE(c.records.at(2).value(QStringLiteral("Name")), QStringLiteral("NX2016SA 32MHz"));
    QVERIFY(!c.records.at(1).has(QStringLiteral("Color")));
    QVERIFY(sink.console.isEmpty());
}

void TestCatalogs::catalogBadInput_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("records");
    QTest::newRow("broken record") << QByteArray("<Catalog><CatalogEntry A=\"1\"/><CatalogEntry A=\"2\" A=\"3\"/></Catalog>") << 1;
    QTest::newRow("unclosed") << QByteArray("<Catalog><CatalogEntry A=\"1\"/><CatalogEntry A=\"2\">text") << 1;
    QTest::newRow("wrong root") << QByteArray("<parameters/>") << 0;
    QTest::newRow("not xml") << QByteArray("Name;Freq\nA;1\n") << 0;
}

void TestCatalogs::catalogBadInput()
{
    QFETCH(QByteArray, text);
    QFETCH(int, records);
    RecordingSink sink;
    Catalog c;
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(!c.read(&buffer, QStringLiteral("catalog.xml")));
    QVERIFY(sink.contains(QStringLiteral("XML Error")));
    QVERIFY(sink.contains(QStringLiteral("$xmlopen$catalog.xml$-n")));
    QCOMPARE(c.records.size(), records);
}

void TestCatalogs::filters_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("minCell");
    QTest::addColumn<QString>("maxCell");
    QTest::addColumn<QStringList>("names");
    const QStringList all = {"ABM8-32.000MHZ", "TSX-3225 16MHz", "NX2016SA 32MHz", "odd one"};
    QTest::newRow("numeric, both empty: all pass") << 1 << "" << "" << all;
    QTest::newRow("numeric range, first word") << 1 << "20" << "40" << QStringList({"ABM8-32.000MHZ", "NX2016SA 32MHz"});
    QTest::newRow("inclusive ends") << 1 << "16" << "16" << QStringList({"TSX-3225 16MHz"});
    QTest::newRow("only a minimum") << 2 << "9" << "" << QStringList({"ABM8-32.000MHZ", "TSX-3225 16MHz"});
    QTest::newRow("only a maximum") << 2 << "" << "8" << QStringList({"NX2016SA 32MHz"});
    QTest::newRow("minimum from the field's own limits") << 1 << "" << "100"
                                                         << QStringList({"ABM8-32.000MHZ", "TSX-3225 16MHz", "NX2016SA 32MHz"});
    QTest::newRow("text") << 0 << "32" << "" << QStringList({"ABM8-32.000MHZ", "TSX-3225 16MHz", "NX2016SA 32MHz"});
    QTest::newRow("text, longer") << 0 << "32M" << "" << QStringList({"NX2016SA 32MHz"});
    QTest::newRow("text is case-sensitive") << 0 << "mhz" << "" << QStringList();
    QTest::newRow("empty text") << 0 << "" << "ignored" << all;
    QTest::newRow("URL filter is text") << 3 << "tsx" << "" << QStringList({"TSX-3225 16MHz"});
}

void TestCatalogs::filters()
{
    QFETCH(int, column);
    QFETCH(QString, minCell);
    QFETCH(QString, maxCell);
    QFETCH(QStringList, names);
    const QList<Parameter> params = parameters();
    const Catalog c = catalog();
    const QList<CatalogFilter::Row> rows = {CatalogFilter::makeRow(params, column, minCell, maxCell)};
    QCOMPARE(passing(rows, params, c), names);
}

void TestCatalogs::textInANumericCellCountsAsEmpty()
{
    const QList<Parameter> params = parameters();
    const Catalog c = catalog();
    int bad = 0;
    CatalogFilter::Row row = CatalogFilter::makeRow(params, 1, QStringLiteral("abc"), QStringLiteral("20"), &bad);
    QCOMPARE(bad, 1);
    QCOMPARE(row.minimum, 1.0);  // the field's own limit
    QCOMPARE(row.maximum, 20.0);
    QCOMPARE(passing({row}, params, c), QStringList({"TSX-3225 16MHz"}));
    row = CatalogFilter::makeRow(params, 1, QStringLiteral("x"), QStringLiteral("y"), &bad);
    QCOMPARE(bad, 3);
    QCOMPARE(passing({row}, params, c).size(), 4);
    // Two rows: both must pass.
    const QList<CatalogFilter::Row> two = {CatalogFilter::makeRow(params, 1, "30", ""), CatalogFilter::makeRow(params, 2, "", "9")};
    QCOMPARE(passing(two, params, c), QStringList({"NX2016SA 32MHz"}));
}

void TestCatalogs::valueForms()
{
    const QList<Parameter> params = parameters();
    QCOMPARE(CatalogRecordApplier::valueFor(params.at(1), QStringLiteral("32 MHz")), QStringLiteral("32"));
    QCOMPARE(CatalogRecordApplier::valueFor(params.at(2), QStringLiteral("0x0A")), QStringLiteral("10"));
    QCOMPARE(CatalogRecordApplier::valueFor(params.at(0), QStringLiteral("32 MHz")), QStringLiteral("32 MHz"));
    QCOMPARE(CatalogRecordApplier::labelText(params.at(3), QStringLiteral("https://e.com/a.pdf")),
             QStringLiteral("<a href=\"https://e.com/a.pdf\">Data sheet</a>"));
    QCOMPARE(CatalogRecordApplier::labelText(params.at(0), QStringLiteral("<b>")), QStringLiteral("<b>"));
}

void TestCatalogs::applyingARecord()
{
    RecordingSink sink;
    QTemporaryDir dir;
    QVERIFY(TestPictures::writePng(dir.filePath(QStringLiteral("photo.png")), 8, 6, Qt::red));
    const QList<Parameter> params = parameters();

    DocumentTables tables;
    QWidget form;
    auto *freq = new FakeElement(QStringLiteral("XTAL.FREQ"), &form);
    freq->maximum = 1000;
    tables.addElement(freq->objectName(), freq);
    DataClass *load = tables.addDataValue(new DataClass(QStringLiteral("XTAL.LOAD")));
    auto *sheet = new QLabel(&form);
    sheet->setObjectName(QStringLiteral("XTAL.SHEET"));
    auto *name = new QLabel(&form);
    name->setObjectName(QStringLiteral("XTAL.NAME"));
    auto *photo = new Image(&form);
    photo->setObjectName(QStringLiteral("XTAL.PHOTO"));
    tables.images.insert(photo->objectName(), photo);

    CatalogRecord record;
    record.fields = {{"Name", "ABM8 <fast>"}, {"Freq", "32 MHz"}, {"Load", "0x0A"},
                     {"Sheet", "https://example.com/abm8.pdf"}, {"Photo", "photo.png"}, {"Unknown", "1"}};
    CatalogRecordApplier applier(&tables, &form, dir.path());
    const QList<CatalogRecordApplier::Target> reached = applier.apply(params, record);
    using T = CatalogRecordApplier;
    QCOMPARE(reached, QList<T::Target>({T::Label, T::Define, T::Define, T::Label, T::Picture, T::None}));
    QCOMPARE(freq->number, qint64(32));
    QCOMPARE(load->getValue(), quint32(10));
    QCOMPARE(name->text(), QStringLiteral("ABM8 <fast>"));
    QCOMPARE(sheet->text(), QStringLiteral("<a href=\"https://example.com/abm8.pdf\">Data sheet</a>"));
    QVERIFY(sheet->openExternalLinks());
    QVERIFY(!photo->pixmap(Qt::ReturnByValue).isNull());
    QVERIFY2(sink.errors.isEmpty(), qPrintable(sink.errors.join('\n')));

    // A plot is reached by name through its methods.
    QWidget plot(&form);
    tables.plots.insert(QStringLiteral("XTAL.PLOT"), &plot);
    QCOMPARE(applier.applyOne(params.at(5), QStringLiteral("3")), T::Plot);
    QCOMPARE(plot.property("catalogValue").toString(), QStringLiteral("3"));

    // On a real plot the curves start afresh and the axes return to its bounds.
    MyQwtPlot live(&form);
    live.setBounds(0, 100, 0, 50);
    live.addCurve(QStringLiteral("c"), 1, QColor(), QStringLiteral("XTAL.FREQ"));
    for (int i = 0; i < 10; ++i)
        live.addSample(0, 500, false);
    QVERIFY(live.series(0)->size() > 0);
    live.setAxisScale(QwtPlot::yLeft, -7, 7);
    tables.plots.insert(QStringLiteral("XTAL.PLOT"), &live);
    QCOMPARE(applier.applyOne(params.at(5), QStringLiteral("4")), T::Plot);
    QCOMPARE(live.series(0)->size(), size_t(0));
    QCOMPARE(live.axisScaleDiv(QwtPlot::yLeft).upperBound(), double(live.maxY));
}

void TestCatalogs::dialogFiltersAndApplies()
{
    RecordingSink sink;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("catalog.xml"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(kCatalog);
    file.close();

    DocumentTables tables;
    QWidget form;
    auto *freq = new FakeElement(QStringLiteral("XTAL.FREQ"), &form);
    freq->maximum = 1000;
    tables.addElement(freq->objectName(), freq);

    SelectFromCatalogDialog dialog(path, parameters(), &tables);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Select a record from the database to fill in the values"));
    // Filter rows for Name, Freq, Load and Sheet; columns for Name, Freq, Load.
    QCOMPARE(dialog.filterTable()->rowCount(), 4);
    QCOMPARE(dialog.filterTable()->verticalHeaderItem(1)->text(), QStringLiteral("Frequency (MHz) 1..64"));
    QCOMPARE(dialog.recordModel()->columnCount(), 3);
    QCOMPARE(dialog.proxy()->rowCount(), 4);

    dialog.filterTable()->item(1, 0)->setText(QStringLiteral("20"));
    dialog.rebuildFilter();
    QCOMPARE(dialog.proxy()->rowCount(), 2);
    dialog.filterTable()->item(1, 0)->setText(QStringLiteral("many"));
    dialog.rebuildFilter();
    // Not a number: the cell counts as empty, so the row lets all pass.
    QCOMPARE(dialog.proxy()->rowCount(), 4);
    QCOMPARE(dialog.filterTable()->item(1, 0)->background().color(), QColor(255, 200, 200));

    dialog.filterTable()->item(1, 1)->setText(QStringLiteral("40"));
    dialog.rebuildFilter();
    // "odd one" has no number in the field.
    QCOMPARE(dialog.proxy()->rowCount(), 3);
    dialog.on_doubleClicked(dialog.proxy()->index(2, 0));
    QCOMPARE(dialog.chosenRow(), 2);
    QCOMPARE(freq->number, qint64(32));
    QVERIFY(dialog.applied());
}

void TestCatalogs::quietModeCountsAsCancelled()
{
    RecordingSink sink;
    Dialogs::setQuiet(true);
    DocumentTables tables;
    QVERIFY(!SelectFromCatalogDialog::run(QStringLiteral("whatever.xml"), parameters(), &tables, nullptr));
    Dialogs::setQuiet(false);
    QVERIFY(sink.contains(QStringLiteral("counts as cancelled")));
}

QTEST_MAIN(TestCatalogs)
#include "tst_catalogs.moc"
