#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ActiveElement.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "config/Catalog.h"
#include "config/CatalogRecordApplier.h"
#include "config/ParameterMap.h"
#include "elements/DocumentTables.h"
#include "elements/Selectors.h"
#include "shell/StartOptions.h"
#include "views/PinMapperPane.h"
#include "views/PinMapping.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingExport.h"
#include "views/PortMappingDetailsDialog.h"
#include "views/PortMappingDialog.h"
#include "views/QGraphicsChipItem.h"

#include <QCheckBox>
#include <QLabel>
#include <QDir>
#include <QGraphicsScene>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTimer>

namespace {

const QByteArray kPins = R"(<?xml version="1.0"?>
<pinmapping>
  <name>MINI</name>
  <chipsize len="600"/>
  <geometry>
    <pin nr="1" pinname="PA0" quadrant="0" index="0" color="0;0;0"/>
    <pin nr="2" pinname="PA1" quadrant="1" index="0"/>
    <pin nr="3" pinname="PA2" quadrant="2" index="0"/>
  </geometry>
  <mapping>
    <mapentry pinname="PA0" direction="O" function="TX" dispname="Serial TX" link="P.R.MODE"/>
    <mapentry pinname="PA0" direction="I" function="GPIO_IN"/>
    <mapentry pinname="PA2" direction="I" function="RX"/>
  </mapping>
  <mapconditions>
    <mapcondentry cond="P.R.MODE==1" function="TX"/>
    <mapcondentry cond="P.R.MODE==0" function="GPIO_IN"/>
    <mapcondentry cond="P.R.EN==1" function="RX"/>
  </mapconditions>
</pinmapping>
)";

const QByteArray kParameters = R"(<parameters>
  <parameter Nr="1" ID="Mode" VarName="P.R.MODE" Text="Mode" type="ul32" Filter="1" DisplayMask="1"/>
  <parameter Nr="2" ID="Name" VarName="NAME_LABEL" Text="Name" DisplayMask="1"/>
</parameters>
)";

const QByteArray kForm = R"(<verticalcontainer>
 <combo define="P.R.MODE" default="0">
  <item label="Idle" value="0" override="0"/>
  <item label="Run" value="1" override="1"/>
  <item label="Sleep" value="2" override="2"/>
 </combo>
 <checkbox define="P.R.EN" label="Enable"/>
 <text define="NAME_LABEL" label="-"/>
 <pinmapper define="MAPPER"/>
 <pinmapper define="SECOND"/>
 <pinmapper/>
</verticalcontainer>
)";

const QByteArray kFields =
    "<field><name>MODE</name><lsb>0</lsb><msb>1</msb><enumeratedValues>\n"
    "<enumeratedValue><name>IDLE</name><value>0</value></enumeratedValue>\n"
    "<enumeratedValue><name>RUN</name><value>1</value></enumeratedValue>\n"
    "</enumeratedValues></field>\n"
    "<field><name>EN</name><lsb>4</lsb><msb>4</msb></field>\n";

} // namespace

// The pin mapper and the catalog on a real form: read with the
// description, live with its values, refused where the description breaks
// the rules.
class TestPinMapper : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(writeTextFile(m_form.dir.filePath(QStringLiteral("pins.xml")), kPins));
        QVERIFY(writeTextFile(m_form.dir.filePath(QStringLiteral("params.xml")), kParameters));
        QVERIFY(m_form.write(miniSvd(kFields), kForm,
                             "<pinmapping file=\"pins.xml\"/>\n<parametermap file=\"params.xml\"/>\n"));
    }

    void init() { QVERIFY(m_form.open(true)); }
    void cleanup() { m_form.close(); }

    void oneMapperWithADefine()
    {
        const QString all = m_form.openMessages.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QStringLiteral("Only one pinmapper per XML allowed: ")), qPrintable(all));
        QVERIFY(all.contains(QStringLiteral(">SECOND</a>")));
        QVERIFY(all.contains(QStringLiteral("pinmapper without define is not allowed: ")));
        const QList<PinMapping *> mappers = m_form.window->findChildren<PinMapping *>();
        QCOMPARE(mappers.size(), 1);
        QCOMPARE(mappers.first()->objectName(), QStringLiteral("MAPPER"));
        const auto mapping = m_form.window->document()->state().pinMapping;
        QVERIFY(mapping);
        QCOMPARE(mapping->pins.size(), 3);
        QCOMPARE(mapping->name, QStringLiteral("MINI"));
        const auto params = m_form.window->document()->state().parameterMap;
        QVERIFY(params);
        QCOMPARE(params->parameters.size(), 2);
    }

    void followsTheFormOnTheTimer()
    {
        PinMapping *mapper = m_form.window->findChild<PinMapping *>();
        QVERIFY(mapper);
        PinMapperPane *pane = mapper->pane();
        QCOMPARE(pane->detailsButton()->text(), QStringLiteral("&Details..."));
        QCOMPARE(pane->exportButton()->text(), QStringLiteral("&Export..."));
        QVERIFY(pane->timer()->isSingleShot());
        const auto mapping = pane->document();
        QCOMPARE(PinMappingExport::csvText(*mapping), QStringLiteral("PA0;GPIO_IN;\nPA1;\nPA2;\n"));

        // The first look paints; an idle form causes no second paint.
        const int before = pane->repaintCount();
        pane->refresh();
        pane->refresh();
        QCOMPARE(pane->repaintCount(), before + (before == 0 ? 1 : 0));
        const int settled = pane->repaintCount();
        QVERIFY(pane->timer()->isActive());

        ActiveElement *mode = m_form.tables().element(QStringLiteral("P.R.MODE"));
        QVERIFY(mode->setValue(QStringLiteral("1"), 0));
        QTRY_VERIFY_WITH_TIMEOUT(pane->repaintCount() > settled, 3000);
        QCOMPARE(PinMappingExport::csvText(*mapping), QStringLiteral("PA0;Serial TX;\nPA1;\nPA2;\n"));
        // Painted on screen: the pin holds one function now.
        QTRY_COMPARE(mapping->pins.at(0).mappedCount, quint16(1));
    }

    void detailsDialog()
    {
        PinMapping *mapper = m_form.window->findChild<PinMapping *>();
        ActiveElement *mode = m_form.tables().element(QStringLiteral("P.R.MODE"));
        QVERIFY(mode->setValue(QStringLiteral("1"), 0));
        PortMappingDetailsDialog dialog(mapper->pane()->document());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Portmapping Details"));
        QStandardItemModel *model = dialog.model();
        QCOMPARE(model->columnCount(), 4);
        QCOMPARE(model->horizontalHeaderItem(3)->text(), QStringLiteral("Explanation"));
        // PA0, TX, its condition, GPIO_IN, its condition, PA1, PA2, RX, its condition.
        QCOMPARE(model->rowCount(), 9);
        QCOMPARE(model->item(1, 1)->text(), QStringLiteral("TX"));
        QVERIFY(model->item(1, 1)->font().bold());
        QVERIFY(model->item(2, 2)->font().bold());
        QVERIFY(!model->item(4, 2)->font().bold());
        QCOMPARE(model->item(2, 3)->text(), QStringLiteral("Set P.R.MODE to \"RUN\""));
        QCOMPARE(model->item(0, 0)->foreground().color(), QColor(Qt::white));

        dialog.connectedOnly()->setChecked(true);
        dialog.on_CheckboxClicked();
        QCOMPARE(model->rowCount(), 5);

        // A double click goes to the element.
        dialog.on_doubleClicked(model->index(2, 2));
        QCOMPARE(dialog.defineOfRow(2), QStringLiteral("P.R.MODE"));
    }

    void portMappingWindowAndScript()
    {
        auto mapping = m_form.window->document()->state().pinMapping;
        PortMappingDialog *dialog = PortMappingDialog::open(mapping, m_form.window);
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Port mapping"));
        QVERIFY(dialog->pane()->scene()->items().size() >= 3);
        dialog->close();

        // An empty mapping opens nothing and says so.
        QVERIFY(!PortMappingDialog::open(std::make_shared<PinMappingDocument>(), m_form.window));
        QVERIFY(m_form.sink->contains(QStringLiteral("names no pin mapping")));

        m_form.sink->clear();
        QVERIFY(m_form.window->execScriptLine(QStringLiteral("SHOWPINMAPPER"), 1));
        QVERIFY2(!m_form.sink->contains(QStringLiteral("not available")), qPrintable(m_form.sink->console.join('\n')));
        QVERIFY(m_form.window->execScriptLine(QStringLiteral("SELECTDATA(catalog.xml)"), 2));
        QVERIFY(!m_form.sink->contains(QStringLiteral("not available")));
        // Quiet windows don't wait for a choice.
        QVERIFY(m_form.sink->contains(QStringLiteral("counts as cancelled")));
    }

    void brokenMappingFileLeavesTheMapperEmpty_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("asFolder");
        QTest::addColumn<QString>("message");
        QTest::newRow("wrong root") << QByteArray("<nvxmlcfg/>") << false << "XML Error: </font>Warning";
        QTest::newRow("not XML") << QByteArray("pin;name\n1;PA0\n") << false << "XML Error";
        QTest::newRow("empty") << QByteArray() << false << "XML Error";
        QTest::newRow("a folder") << QByteArray() << true << "Cannot open file";
    }

    void brokenMappingFileLeavesTheMapperEmpty()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, asFolder);
        QFETCH(QString, message);
        FormWindow form;
        if (asFolder)
            QVERIFY(QDir(form.dir.path()).mkdir(QStringLiteral("pins.xml")));
        else
            QVERIFY(writeTextFile(form.dir.filePath(QStringLiteral("pins.xml")), content));
        QVERIFY(form.write(miniSvd(kFields), "<verticalcontainer><pinmapper define=\"MAPPER\"/></verticalcontainer>",
                           "<pinmapping file=\"pins.xml\"/>\n"));
        QVERIFY(form.open());
        const QString all = form.openMessages.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(message), qPrintable(all));
        QVERIFY(form.window->findChild<PinMapping *>());
        QVERIFY(form.window->document()->state().pinMapping->isEmpty());
        // Nothing to show in a window of its own.
        QVERIFY(!PortMappingDialog::open(form.window->document()->state().pinMapping, form.window));
    }

    void missingMappingFile()
    {
        FormWindow form;
        QVERIFY(form.write(miniSvd(kFields), "<verticalcontainer><pinmapper define=\"MAPPER\"/></verticalcontainer>",
                           "<pinmapping file=\"absent.xml\"/>\n<parametermap file=\"absent_map.xml\"/>\n"));
        QVERIFY(form.open());
        const QString all = form.openMessages.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QStringLiteral("Pinmapping file is missing.")), qPrintable(all));
        QVERIFY(all.contains(QStringLiteral("Parametermap file \"absent_map.xml\"is missing.")));
        QVERIFY(!form.window->document()->state().parameterMap);
    }

    // The bundled example end to end: a preset of its catalog fills the UART
    // tab, and the pin mapper shows the lines it routes.
    void examplePresetRoutesTheUart()
    {
        m_form.close();
        StartOptions options;
        options.quiet = true;
        MainWindow window(options);
        RecordingSink sink;
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        QVERIFY(window.open(example));
        window.startUp(false);
        QVERIFY2(!sink.contains(QStringLiteral("XML Error")) && !sink.contains(QStringLiteral("XML Warning")),
                 qPrintable(sink.console.join('\n')));
        const auto mapping = window.document()->state().pinMapping;
        const auto map = window.document()->state().parameterMap;
        QVERIFY(mapping && map);
        QCOMPARE(mapping->pins.size(), 68);
        QString csv = PinMappingExport::csvText(*mapping);
        QVERIFY(csv.contains(QStringLiteral("P0.06 (L1);UART TXD;\n")));
        QVERIFY(csv.contains(QStringLiteral("P0.05 (K2);\n")));

        Catalog catalog;
        QVERIFY(catalog.readFile(QStringLiteral(QUILLON_SOURCE_DIR "/examples/nrf52840/uart_presets.xml")));
        QCOMPARE(catalog.records.size(), 9);
        const CatalogRecord &hci = catalog.records.at(1);
        QCOMPARE(hci.value(QStringLiteral("Baud")), QStringLiteral("1000000"));
        CatalogRecordApplier applier(&window.document()->tables(), &window, QString());
        applier.apply(map->parameters, hci);
        DocumentTables &t = window.document()->tables();
        QCOMPARE(t.element(QStringLiteral("UARTE0.BAUDRATE.BAUDRATE"))->value(Selectors::Label), QStringLiteral("1 Mbaud"));
        QCOMPARE(t.element(QStringLiteral("UARTE0.CONFIG.HWFC"))->value(Selectors::Value), QStringLiteral("1"));
        QCOMPARE(window.findChild<QLabel *>(QStringLiteral("UART_PRESET"))->text(), hci.value(QStringLiteral("Name")));
        QVERIFY(window.findChild<QLabel *>(QStringLiteral("UART_PRESET_DOC"))->text().startsWith(QStringLiteral("<a href=")));
        // Flow control on: RTS and CTS are connected and drawn on their pins.
        QCOMPARE(t.element(QStringLiteral("UARTE0.PSEL_RTS.CONNECT"))->value(Selectors::Value), QStringLiteral("0"));
        csv = PinMappingExport::csvText(*mapping);
        QVERIFY2(csv.contains(QStringLiteral("P0.05 (K2);UART RTS;\n")), qPrintable(csv));
        QVERIFY(csv.contains(QStringLiteral("P0.07 (M2);UART CTS;\n")));

        // The Modbus preset: even parity, other pins.
        applier.apply(map->parameters, catalog.records.at(4));
        QCOMPARE(t.element(QStringLiteral("UARTE0.CONFIG.PARITY"))->value(Selectors::Label), QStringLiteral("Included (even)"));
        csv = PinMappingExport::csvText(*mapping);
        QVERIFY2(csv.contains(QStringLiteral("P0.04 (J1);UART TXD;\n")), qPrintable(csv));
        QVERIFY(csv.contains(QStringLiteral("P0.06 (L1);\n")));
    }

private:
    FormWindow m_form;
};

QTEST_MAIN(TestPinMapper)
#include "tst_pinmapper.moc"
