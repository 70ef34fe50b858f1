#include <QtTest>

#include "FakeElement.h"
#include "ModelDocument.h"
#include "RecordingSink.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "model/BitField.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "views/ChipGeometry.h"
#include "views/PinCondition.h"
#include "views/PinMappingDetails.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingExport.h"
#include "views/PinMappingReader.h"
#include "views/PinMappingState.h"
#include "views/QGraphicsChipItem.h"
#include "views/QPostMappingGraphicsView.h"

#include <QBuffer>
#include <QGraphicsScene>
#include <QTemporaryDir>

namespace {

bool readText(const QByteArray &text, PinMappingDocument &doc)
{
    QBuffer buffer;
    buffer.setData(text);
    buffer.open(QIODevice::ReadOnly);
    return PinMappingReader::read(&buffer, QStringLiteral("map.xml"), doc);
}

// A small chip: four pins, one on each side, and three functions.
const QByteArray kSmallMap = R"(<?xml version="1.0"?>
<pinmapping>
  <mapconditions>
    <mapcondentry cond="UART.TXPIN==6" function="UART_TX"/>
    <mapcondentry cond="" function="SWDIO"/>
    <mapcondentry cond="GPIO.DIR6 == 1 &amp;&amp; LED.ON" function="LED"/>
    <mapcondentry cond="UART.TXPIN==6" function="NO_SUCH_FUNCTION"/>
  </mapconditions>
  <name>Test chip</name>
  <geometry>
    <pin nr="1" pinname="P0.06" quadrant="0" index="0" color="0;0;128"/>
    <pin nr="2" pinname="P0.08" quadrant="1" index="0" color="255;255;0"/>
    <pin nr="3" pinname="SWDIO" quadrant="2" index="0"/>
    <pin nr="4" pinname="P1.00" quadrant="3" index="0"/>
    <ignored/>
  </geometry>
  <chipsize len="1000"/>
  <mapping>
    <mapentry pinname="P0.06" direction="o" function="UART_TX" dispname="UART TX" info="Console" link="UART.TXPIN" color="0;128;0"/>
    <mapentry pinname="SWDIO" direction="I" function="SWDIO"/>
    <mapentry pinname="P0.06" direction="O" function="LED" dispname="" link="LED.ON;GPIO.DIR6"/>
    <mapentry pinname="P9.99" function="GHOST"/>
  </mapping>
  <margins TopY="10" BottomY="20" LeftX="30" RightX="40"/>
  <pinsize len="60"/>
  <arrowsize len="12"/>
  <colors chip="10;20;30" background="200;210;220"/>
  <buttonpos details="5;6" export="7;8"/>
  <tooltips activated="0"/>
  <image file="board.png" moveable="1" pos="11;12"/>
  <unknownchild><deep/></unknownchild>
</pinmapping>
)";

} // namespace

class TestPinMapping : public QObject
{
    Q_OBJECT

private slots:
    void defaultsOfAnEmptyMapping();
    void readsEveryElementInAnyOrder();
    void badInput_data();
    void badInput();
    void valuesThatCantBeUsedKeepDefaults_data();
    void valuesThatCantBeUsedKeepDefaults();
    void missingFileCannotBeOpened();

    void conditions_data();
    void conditions();
    void conditionOnARecordAndUnknownNames();

    void spacingAndPinBoxesPerQuadrant();
    void functionBoxesGoBeyondThePin_data();
    void functionBoxesGoBeyondThePin();
    void textColourFollowsLightness();

    void placementsCountFunctionsPerPin();
    void csvText();
    void csvWrittenWhole();
    void detailsRows();
    void detailsConnectedOnlyAndExplanation();
    void toolTip();
    void paintingStoresHitBoxes();
    void wheelZoomIsBounded();
    void hugeNumbersStayBounded();

private:
    void fillForm(DocumentTables &tables, QWidget &owner, qint64 txPin, qint64 dir, qint64 ledOn);
};

void TestPinMapping::fillForm(DocumentTables &tables, QWidget &owner, qint64 txPin, qint64 dir, qint64 ledOn)
{
    const QList<QPair<QString, qint64>> values = {{"UART.TXPIN", txPin}, {"GPIO.DIR6", dir}, {"LED.ON", ledOn}};
    for (const auto &v : values) {
        auto *e = dynamic_cast<FakeElement *>(tables.element(v.first));
        if (!e) {
            e = new FakeElement(v.first, &owner);
            e->maximum = 1000;
            tables.addElement(v.first, e);
        }
        e->number = v.second;
    }
}

void TestPinMapping::defaultsOfAnEmptyMapping()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText("<pinmapping/>", doc));
    QCOMPARE(doc.chipSize, 800u);
    QCOMPARE(doc.chipColor, QColor(Qt::white));
    QCOMPARE(doc.backgroundColor, QColor(Qt::white));
    QCOMPARE(doc.detailsButtonPos, QPointF(0, 300));
    QCOMPARE(doc.exportButtonPos, QPointF(0, 330));
    QVERIFY(doc.tooltipsActive);
    QCOMPARE(doc.pinSize, 0u);
    QCOMPARE(doc.marginTopY + doc.marginBottomY + doc.marginLeftX + doc.marginRightX, 0u);
    QVERIFY(doc.pins.isEmpty() && doc.entries.isEmpty() && doc.conditions.isEmpty() && doc.images.isEmpty());
    QVERIFY(sink.console.isEmpty());
}

void TestPinMapping::readsEveryElementInAnyOrder()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    QCOMPARE(doc.name, QStringLiteral("Test chip"));
    QCOMPARE(doc.chipSize, 1000u);
    QCOMPARE(doc.chipColor, QColor(10, 20, 30));
    QCOMPARE(doc.backgroundColor, QColor(200, 210, 220));
    QCOMPARE(doc.detailsButtonPos, QPointF(5, 6));
    QCOMPARE(doc.exportButtonPos, QPointF(7, 8));
    QVERIFY(!doc.tooltipsActive);
    QCOMPARE(doc.pinSize, 60u);
    QCOMPARE(doc.arrowSize, 12u);
    QCOMPARE(doc.marginTopY, 10u);
    QCOMPARE(doc.marginBottomY, 20u);
    QCOMPARE(doc.marginLeftX, 30u);
    QCOMPARE(doc.marginRightX, 40u);
    QCOMPARE(doc.images.size(), 1);
    QCOMPARE(doc.images.at(0).file, QStringLiteral("board.png"));
    QVERIFY(doc.images.at(0).moveable);
    QCOMPARE(doc.images.at(0).pos, QPointF(11, 12));

    QCOMPARE(doc.pins.size(), 4);
    QCOMPARE(doc.pins.at(1).nr, quint16(2));
    QCOMPARE(doc.pins.at(1).quadrant, quint16(1));
    QCOMPARE(doc.pins.at(0).color, QColor(0, 0, 128));
    QCOMPARE(doc.pinIndex(QStringLiteral("P1.00")), 3);
    QCOMPARE(doc.pinIndex(QStringLiteral("P2.00")), -1);

    QCOMPARE(doc.entries.size(), 4);
    QVERIFY(doc.entries.at(0).output);  // "o" is output too
    QVERIFY(!doc.entries.at(1).output);
    QVERIFY(doc.entries.at(2).output);
    QCOMPARE(doc.entries.at(0).color, QColor(0, 128, 0));
    QCOMPARE(doc.entries.at(1).color, QColor(128, 128, 128, 255));
    QCOMPARE(doc.entries.at(2).links(), QStringList({"LED.ON", "GPIO.DIR6"}));
    QCOMPARE(doc.functionIndex(QStringLiteral("LED")), 2);

    QCOMPARE(doc.conditions.size(), 4);
    QCOMPARE(doc.conditions.at(1).compiled.form(), PinCondition::Form::Always);
    QCOMPARE(doc.conditions.at(0).compiled.form(), PinCondition::Form::TextCompare);
    QCOMPARE(doc.conditions.at(2).compiled.form(), PinCondition::Form::Expression);

    // The unknown pin and the unknown function are named once each.
    QVERIFY(sink.contains(QStringLiteral("unknown pin P9.99")));
    QVERIFY(sink.contains(QStringLiteral("unknown function NO_SUCH_FUNCTION")));
    QCOMPARE(sink.errors.size(), 0);
}

void TestPinMapping::badInput_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << QByteArray() << "Premature end of document";
    QTest::newRow("not xml") << QByteArray("\x01\x02 this is not XML") << "XML Error";
    QTest::newRow("wrong root") << QByteArray("<nvxmlcfg><geometry/></nvxmlcfg>") << "Warning";
    QTest::newRow("cut short") << QByteArray("<pinmapping><geometry><pin nr=\"1\" pinname=\"A\"/>") << "XML Error";
    QTest::newRow("mismatched") << QByteArray("<pinmapping><geometry></mapping></pinmapping>") << "XML Error";
}

void TestPinMapping::badInput()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(!readText(text, doc));
    QVERIFY2(sink.contains(message), qPrintable(sink.console.join('\n')));
    // The line points into the mapping file.
    QVERIFY(sink.contains(QStringLiteral("$xmlopen$map.xml$-n")));
    // Half a mapping is no mapping.
    QVERIFY(doc.pins.isEmpty());
    QVERIFY(doc.entries.isEmpty());
}

void TestPinMapping::valuesThatCantBeUsedKeepDefaults_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<quint32>("chipSize");
    QTest::addColumn<quint32>("pinSize");
    QTest::addColumn<QColor>("chipColor");
    QTest::addColumn<QPointF>("details");
    QTest::addColumn<bool>("warned");
    QTest::newRow("negative chip size") << QByteArray("<chipsize len=\"-5\"/>") << 800u << 0u << QColor(Qt::white)
                                        << QPointF(0, 300) << true;
    QTest::newRow("huge chip size") << QByteArray("<chipsize len=\"4000000000\"/>")
                                    << PinMappingDocument::kMaxChipSize << 0u << QColor(Qt::white) << QPointF(0, 300) << true;
    QTest::newRow("chip smaller than its frame") << QByteArray("<chipsize len=\"100\"/>")
                                                 << PinMappingDocument::kMinChipSize << 0u << QColor(Qt::white)
                                                 << QPointF(0, 300) << true;
    QTest::newRow("text as size") << QByteArray("<pinsize len=\"wide\"/>") << 800u << 0u << QColor(Qt::white)
                                  << QPointF(0, 300) << true;
    QTest::newRow("huge pin size") << QByteArray("<pinsize len=\"99999999\"/>") << 800u
                                   << PinMappingDocument::kMaxBoxSize << QColor(Qt::white) << QPointF(0, 300) << true;
    QTest::newRow("colour of two parts") << QByteArray("<colors chip=\"10;20\"/>") << 800u << 0u << QColor(Qt::white)
                                         << QPointF(0, 300) << true;
    QTest::newRow("colour out of range") << QByteArray("<colors chip=\"10;20;300\"/>") << 800u << 0u
                                         << QColor(Qt::white) << QPointF(0, 300) << true;
    QTest::newRow("button of three parts is ignored") << QByteArray("<buttonpos details=\"1;2;3\"/>") << 800u << 0u
                                                      << QColor(Qt::white) << QPointF(0, 300) << false;
    QTest::newRow("good values") << QByteArray("<chipsize len=\"900\"/><pinsize len=\"40\"/><colors chip=\"1;2;3\"/><buttonpos details=\"9;10\"/>")
                                 << 900u << 40u << QColor(1, 2, 3) << QPointF(9, 10) << false;
}

void TestPinMapping::valuesThatCantBeUsedKeepDefaults()
{
    QFETCH(QByteArray, element);
    QFETCH(quint32, chipSize);
    QFETCH(quint32, pinSize);
    QFETCH(QColor, chipColor);
    QFETCH(QPointF, details);
    QFETCH(bool, warned);
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText("<pinmapping>" + element + "</pinmapping>", doc));
    QCOMPARE(doc.chipSize, chipSize);
    QCOMPARE(doc.pinSize, pinSize);
    QCOMPARE(doc.chipColor, chipColor);
    QCOMPARE(doc.detailsButtonPos, details);
    QCOMPARE(sink.contains(QStringLiteral("XML Warning")), warned);
}

void TestPinMapping::missingFileCannotBeOpened()
{
    RecordingSink sink;
    QTemporaryDir dir;
    PinMappingDocument doc;
    doc.descriptionFolder = dir.path();
    const QString path = dir.filePath(QStringLiteral("absent.xml"));
    QVERIFY(!PinMappingReader::readFile(path, doc));
    QCOMPARE(sink.errors.size(), 1);
    QVERIFY(sink.errors.first().startsWith(QStringLiteral("Cannot open file %1:\n").arg(path)));
    // The owner's settings survive the failed read.
    QCOMPARE(doc.descriptionFolder, dir.path());
}

void TestPinMapping::conditions_data()
{
    QTest::addColumn<QString>("cond");
    QTest::addColumn<qint64>("txPin");
    QTest::addColumn<bool>("holds");
    QTest::newRow("empty") << "" << qint64(0) << true;
    QTest::newRow("blanks only") << "   " << qint64(0) << true;
    QTest::newRow("text equal") << "UART.TXPIN==6" << qint64(6) << true;
    QTest::newRow("text equal, blanks") << " UART.TXPIN == 6 " << qint64(6) << true;
    QTest::newRow("text unequal") << "UART.TXPIN==6" << qint64(7) << false;
    QTest::newRow("quoted text") << "UART.TXPIN==\"6\"" << qint64(6) << true;
    QTest::newRow("not equal") << "UART.TXPIN!=6" << qint64(7) << true;
    QTest::newRow("not equal, same") << "UART.TXPIN!=6" << qint64(6) << false;
    QTest::newRow("hex against decimal") << "UART.TXPIN==0x6" << qint64(6) << true;
    QTest::newRow("expression") << "UART.TXPIN>5 && UART.TXPIN<8" << qint64(7) << true;
    QTest::newRow("expression false") << "UART.TXPIN>5 && UART.TXPIN<8" << qint64(9) << false;
    QTest::newRow("arithmetic") << "UART.TXPIN*2==12" << qint64(6) << true;
    QTest::newRow("bare name") << "UART.TXPIN" << qint64(0) << false;
    QTest::newRow("bare name set") << "UART.TXPIN" << qint64(3) << true;
    QTest::newRow("unknown element") << "NOPE==1" << qint64(6) << false;
    QTest::newRow("unknown in expression") << "UART.TXPIN==6 && NOPE" << qint64(6) << false;
    QTest::newRow("quoted against unknown") << "NOPE==\"x\"" << qint64(6) << false;
}

void TestPinMapping::conditions()
{
    QFETCH(QString, cond);
    QFETCH(qint64, txPin);
    QFETCH(bool, holds);
    RecordingSink sink;
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, txPin, 0, 0);
    const PinCondition condition(cond);
    QCOMPARE(condition.holds(&tables), holds);
    // Asked many times a second: never a message.
    QVERIFY2(sink.console.isEmpty() && sink.errors.isEmpty(), qPrintable(sink.console.join('\n')));
}

void TestPinMapping::conditionOnARecordAndUnknownNames()
{
    RecordingSink sink;
    DocumentTables tables;
    DataClass *record = tables.addDataValue(new DataClass(QStringLiteral("BOARD.MODE")));
    record->setValue(3);
    QVERIFY(PinCondition(QStringLiteral("BOARD.MODE==3")).holds(&tables));
    QVERIFY(!PinCondition(QStringLiteral("BOARD.MODE==4")).holds(&tables));
    QVERIFY(PinCondition(QStringLiteral("BOARD.MODE>2")).holds(&tables));
    // The form that names the element is decided when it is asked: the
    // mapping file is read before the form exists.
    const PinCondition later(QStringLiteral("LATE.ONE==2"));
    QVERIFY(!later.holds(&tables));
    QWidget owner;
    auto *late = new FakeElement(QStringLiteral("LATE.ONE"), &owner);
    late->maximum = 10;
    late->number = 2;
    tables.addElement(QStringLiteral("LATE.ONE"), late);
    QVERIFY(later.holds(&tables));
}

void TestPinMapping::spacingAndPinBoxesPerQuadrant()
{
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    const ChipGeometry g(doc);
    QCOMPARE(g.bounds(), QRectF(0, 0, 1000, 1000));
    QCOMPARE(g.body(), QRectF(200, 200, 600, 600));
    // (600 - (30 + 40)) * 4 / (4 + 4) and (600 - (10 + 20)) * 4 / 8.
    QCOMPARE(g.horizontalSpacing(), 265.0);
    QCOMPARE(g.verticalSpacing(), 285.0);

    const qreal length = 60 + 18;  // fixed pin size wins over the text
    QCOMPARE(g.boxLength(5), length);
    // Left: y from the top, box left of the body.
    QCOMPARE(g.anchor(doc.pins.at(0)), 200.0 + 10 + 285);
    QCOMPARE(g.pinBox(doc.pins.at(0), 5), QRectF(200 - length, 495 + 3 - 14, length, 14));
    // Bottom: x from the left, box below the body, upright.
    QCOMPARE(g.anchor(doc.pins.at(1)), 200.0 + 30 + 265);
    QCOMPARE(g.pinBox(doc.pins.at(1), 5), QRectF(495 - 16 + 4, 800, 16, length));
    // Right: y from the bottom.
    QCOMPARE(g.anchor(doc.pins.at(2)), 800.0 - 20 - 285);
    QCOMPARE(g.pinBox(doc.pins.at(2), 5), QRectF(800, 495 + 3 - 14, length, 14));
    // Top: x from the right.
    QCOMPARE(g.anchor(doc.pins.at(3)), 800.0 - 40 - 265);
    QCOMPARE(g.pinBox(doc.pins.at(3), 5), QRectF(495 - 16 + 4, 200 - length, 16, length));

    QVERIFY(!ChipGeometry::isRotated(doc.pins.at(0)));
    QVERIFY(ChipGeometry::isRotated(doc.pins.at(1)));
    QVERIFY(ChipGeometry::isRotated(doc.pins.at(3)));

    // Without a pin size the text decides; a pin off the four sides has no box.
    doc.pinSize = 0;
    const ChipGeometry free(doc);
    QCOMPARE(free.boxLength(42), 60.0);
    Pin stray = doc.pins.at(0);
    stray.quadrant = 7;
    QVERIFY(free.pinBox(stray, 42).isNull());
    QVERIFY(!ChipGeometry::isDrawn(stray));
    QCOMPARE(ChipGeometry::pinLabel(doc.pins.at(0)), QStringLiteral("1: P0.06"));
}

void TestPinMapping::functionBoxesGoBeyondThePin_data()
{
    QTest::addColumn<int>("quadrant");
    QTest::addColumn<QRectF>("first");
    QTest::addColumn<QRectF>("second");
    // Pin box at (100, 100, 50, 14) or upright (100, 100, 16, 50); arrow 12,
    // function boxes of 30 and then 40.
    QTest::newRow("left") << 0 << QRectF(100 - 12 - 30, 100, 30, 14) << QRectF(100 - 12 - 30 - 12 - 40, 100, 40, 14);
    QTest::newRow("bottom") << 1 << QRectF(100, 150 + 12, 16, 30) << QRectF(100, 150 + 12 + 30 + 12, 16, 40);
    QTest::newRow("right") << 2 << QRectF(150 + 12, 100, 30, 14) << QRectF(150 + 12 + 30 + 12, 100, 40, 14);
    QTest::newRow("top") << 3 << QRectF(100, 100 - 12 - 30, 16, 30) << QRectF(100, 100 - 12 - 30 - 12 - 40, 16, 40);
}

void TestPinMapping::functionBoxesGoBeyondThePin()
{
    QFETCH(int, quadrant);
    QFETCH(QRectF, first);
    QFETCH(QRectF, second);
    PinMappingDocument doc;
    doc.arrowSize = 12;
    const ChipGeometry g(doc);
    Pin pin;
    pin.quadrant = quint16(quadrant);
    const QRectF box = ChipGeometry::isRotated(pin) ? QRectF(100, 100, 16, 50) : QRectF(100, 100, 50, 14);
    qreal used = 0;
    QCOMPARE(g.functionBox(pin, box, used, 30), first);
    used += g.advance(30);
    QCOMPARE(g.functionBox(pin, box, used, 40), second);
}

void TestPinMapping::textColourFollowsLightness()
{
    QCOMPARE(ChipGeometry::textColorFor(QColor(0, 0, 128)), QColor(Qt::white));
    QCOMPARE(ChipGeometry::textColorFor(QColor(255, 255, 0)), QColor(Qt::black));
    QCOMPARE(ChipGeometry::textColorFor(QColor(128, 128, 128)), QColor(Qt::black));
    QCOMPARE(ChipGeometry::textColorFor(QColor(126, 126, 126)), QColor(Qt::white));
}

void TestPinMapping::placementsCountFunctionsPerPin()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 6, 1, 1);
    PinMappingState state = PinMappingState::evaluate(doc, &tables);
    // UART_TX and LED on P0.06 (one beyond the other), SWDIO always; the
    // unknown function is skipped though its condition holds.
    QCOMPARE(state.placements().size(), 3);
    QCOMPARE(state.placements().at(0).pin, 0);
    QCOMPARE(state.placements().at(0).order, 0);
    QCOMPARE(state.placements().at(2).pin, 0);
    QCOMPARE(state.placements().at(2).order, 1);
    QCOMPARE(state.countPerPin(), QVector<int>({2, 0, 1, 0}));
    QCOMPARE(state.holding(), QVector<bool>({true, true, true, true}));

    fillForm(tables, owner, 7, 1, 0);
    state = PinMappingState::evaluate(doc, &tables);
    QCOMPARE(state.countPerPin(), QVector<int>({0, 0, 1, 0}));
    QCOMPARE(state.holding(), QVector<bool>({false, true, false, false}));
}

void TestPinMapping::csvText()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 6, 1, 1);
    // dispname where there is one, else the function.
    QCOMPARE(PinMappingExport::csvText(doc, &tables),
             QStringLiteral("P0.06;UART TX;LED;\nP0.08;\nSWDIO;SWDIO;\nP1.00;\n"));
    fillForm(tables, owner, 5, 0, 1);
    QCOMPARE(PinMappingExport::csvText(doc, &tables), QStringLiteral("P0.06;\nP0.08;\nSWDIO;SWDIO;\nP1.00;\n"));
}

void TestPinMapping::csvWrittenWhole()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("pins.csv"));
    QVERIFY(PinMappingExport::writeFile(path, QStringLiteral("A;\nB;x;\n")));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("A;\nB;x;\n"));
    QString error;
    QVERIFY(!PinMappingExport::writeFile(dir.filePath(QStringLiteral("no/such/folder/pins.csv")), QStringLiteral("A;\n"), &error));
    QVERIFY(!error.isEmpty());
}

void TestPinMapping::detailsRows()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 6, 0, 1);
    const QList<PinMappingDetails::Row> rows = PinMappingDetails::rows(doc, false, &tables);
    using Row = PinMappingDetails::Row;
    QStringList shape;
    for (const Row &row : rows) {
        const QString kind = row.kind == Row::PinRow ? "pin" : row.kind == Row::FunctionRow ? "function" : "cond";
        shape << QStringLiteral("%1|%2|%3|%4|%5").arg(kind, row.pin, row.function, row.condition).arg(row.bold ? "B" : "-");
    }
    const QStringList expected = {
        "pin|P0.06|||-",
        "function||UART_TX||B",
        "cond|||UART.TXPIN==6|B",
        "function||LED||-",
        "cond|||GPIO.DIR6 == 1 &&\n LED.ON|-",
        "pin|P0.08|||-",
        "pin|SWDIO|||-",
        "function||SWDIO||B",
        "cond||||B",
        "pin|P1.00|||-",
    };
    QCOMPARE(shape, expected);
    QCOMPARE(rows.at(0).background, QColor(0, 0, 128));
    QCOMPARE(rows.at(1).background, QColor(0, 128, 0));
    // A double click on a function goes to its link, on a condition to the
    // first element it names.
    QCOMPARE(rows.at(1).define, QStringLiteral("UART.TXPIN"));
    QCOMPARE(rows.at(4).define, QStringLiteral("GPIO.DIR6"));

    QCOMPARE(PinMappingDetails::conditionText(QStringLiteral("A==1&B==2|C")), QStringLiteral("A==1&\nB==2|\nC"));
}

void TestPinMapping::detailsConnectedOnlyAndExplanation()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    ModelDocument model;
    FakeElement *tx = model.claim(QStringLiteral("UART.PSEL.PIN"), QStringLiteral("u.h"), true, QStringLiteral("chip.svd"));
    model.tables.addElement(tx->objectName(), tx);
    FakeElement *mode = model.claim(QStringLiteral("UART.CONFIG.MODE"), QStringLiteral("u.h"), true, QStringLiteral("chip.svd"));
    model.tables.addElement(mode->objectName(), mode);
    FakeElement *plain = model.element(QStringLiteral("PLAIN"));
    model.tables.addElement(plain->objectName(), plain);
    BitField *field = model.reg(QStringLiteral("UART"), QStringLiteral("CONFIG"))->findField(QStringLiteral("MODE"));
    QVERIFY(field);
    field->enumeratedValues.append({QStringLiteral("Async"), QString(), 2});

    QCOMPARE(PinMappingDetails::explanation(QStringLiteral("UART.PSEL.PIN==6 && UART.CONFIG.MODE==2"), &model.tables, &model.model),
             QStringLiteral("Set UART.PSEL.PIN to 6,\nSet UART.CONFIG.MODE to \"Async\""));
    QCOMPARE(PinMappingDetails::explanation(QStringLiteral("UART.CONFIG.MODE==3"), &model.tables, &model.model),
             QStringLiteral("Set UART.CONFIG.MODE to 3"));
    // Not bound to the SVD, or not "==": nothing to explain.
    QCOMPARE(PinMappingDetails::explanation(QStringLiteral("PLAIN==1"), &model.tables, &model.model), QString());
    QCOMPARE(PinMappingDetails::explanation(QStringLiteral("UART.PSEL.PIN>3"), &model.tables, &model.model), QString());

    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 7, 0, 0);
    QList<PinMappingDetails::Row> rows = PinMappingDetails::rows(doc, true, &tables);
    // Only SWDIO is connected now.
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(0).pin, QStringLiteral("SWDIO"));
}

void TestPinMapping::toolTip()
{
    RecordingSink sink;
    PinMappingDocument doc;
    QVERIFY(readText(kSmallMap, doc));
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 6, 0, 0);
    const QString plain = QGraphicsChipItem::toolTipText(doc, 0, false, &tables);
    QVERIFY(plain.startsWith(QStringLiteral("P0.06\n - UART TX")));
    QVERIFY(plain.contains(QStringLiteral("UART.TXPIN==6")));
    QVERIFY(plain.contains(QStringLiteral("Console")));
    QVERIFY(plain.contains(QStringLiteral("\n - LED")));
    const QString html = QGraphicsChipItem::toolTipText(doc, 0, true, &tables);
    QVERIFY(html.contains(QStringLiteral("<br> - UART TX")));
    QVERIFY(html.contains(QStringLiteral(":<a href=\"UART.TXPIN\">UART.TXPIN</a>")));
    QVERIFY(html.contains(QStringLiteral(":<a href=\"LED.ON\">LED.ON</a>:<a href=\"GPIO.DIR6\">GPIO.DIR6</a>")));
    // The holding condition stands out.
    QVERIFY(html.contains(QStringLiteral("<b>UART.TXPIN==6</b>")));
    QCOMPARE(QGraphicsChipItem::toolTipText(doc, 99, true, &tables), QString());
}

void TestPinMapping::paintingStoresHitBoxes()
{
    RecordingSink sink;
    auto doc = std::make_shared<PinMappingDocument>();
    QVERIFY(readText(kSmallMap, *doc));
    DocumentTables tables;
    QWidget owner;
    fillForm(tables, owner, 6, 1, 1);
    QGraphicsScene scene;
    auto *chip = new QGraphicsChipItem(doc);
    chip->setTables(&tables);
    scene.addItem(chip);
    QImage image(1200, 1200, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene.render(&painter, QRectF(), QRectF(-100, -100, 1200, 1200));
    painter.end();

    const ChipGeometry g(*doc);
    for (int i = 0; i < doc->pins.size(); ++i) {
        QVERIFY(!doc->pins.at(i).rect.isEmpty());
        QCOMPARE(chip->pinAt(doc->pins.at(i).rect.center()), i);
    }
    QCOMPARE(doc->pins.at(0).mappedCount, quint16(2));
    QCOMPARE(doc->pins.at(2).mappedCount, quint16(1));
    QCOMPARE(chip->pinAt(g.body().center()), -1);
    // The function boxes beyond the left pin widen what the item covers.
    QVERIFY(chip->boundingRect().left() < doc->pins.at(0).rect.left());
    // The chip body is painted in its colour.
    QCOMPARE(image.pixelColor(QPoint(300, 300) + QPoint(100, 100)), QColor(10, 20, 30));
}

void TestPinMapping::wheelZoomIsBounded()
{
    QGraphicsScene scene;
    QPostMappingGraphicsView view(&scene);
    view.zoomBy(1);
    QCOMPARE(view.currentScale(), QPostMappingGraphicsView::kZoomStep);
    view.zoomBy(-1);
    QCOMPARE(view.currentScale(), 1.0);
    view.zoomBy(1000);
    QCOMPARE(view.currentScale(), QPostMappingGraphicsView::kMaxScale);
    view.zoomBy(-100000);
    QCOMPARE(view.currentScale(), QPostMappingGraphicsView::kMinScale);
}

void TestPinMapping::hugeNumbersStayBounded()
{
    RecordingSink sink;
    QByteArray text = "<pinmapping><chipsize len=\"999999999\"/><pinsize len=\"4000000000\"/><arrowsize len=\"70000\"/>"
                      "<geometry><pin nr=\"1\" pinname=\"FAR\" quadrant=\"0\" index=\"65535\"/>"
                      "<pin nr=\"2\" pinname=\"NEAR\" quadrant=\"2\" index=\"0\"/></geometry><mapping>";
    QByteArray conds = "<mapconditions>";
    for (int i = 0; i < 500; ++i) {
        text += QStringLiteral("<mapentry pinname=\"%1\" function=\"F%2\"/>").arg(i % 2 ? "FAR" : "NEAR").arg(i).toUtf8();
        conds += QStringLiteral("<mapcondentry cond=\"\" function=\"F%1\"/>").arg(i).toUtf8();
    }
    text += "</mapping>" + conds + "</mapconditions></pinmapping>";
    auto doc = std::make_shared<PinMappingDocument>();
    QVERIFY(readText(text, *doc));
    QCOMPARE(doc->chipSize, PinMappingDocument::kMaxChipSize);
    QCOMPARE(doc->pinSize, PinMappingDocument::kMaxBoxSize);
    QCOMPARE(doc->arrowSize, PinMappingDocument::kMaxBoxSize);

    QGraphicsScene scene;
    auto *chip = new QGraphicsChipItem(doc);
    scene.addItem(chip);
    QImage image(200, 200, QImage::Format_ARGB32);
    QPainter painter(&image);
    scene.render(&painter);
    painter.end();
    const qreal size = PinMappingDocument::kMaxChipSize;
    const QRectF limit(-size, -size, 3 * size, 3 * size);
    QVERIFY(limit.contains(chip->boundingRect()));
    // The pin far beyond its side is not drawn and can't be hit; its
    // functions still count.
    QVERIFY(doc->pins.at(0).rect.isNull());
    QCOMPARE(doc->pins.at(0).mappedCount, quint16(250));
    QCOMPARE(doc->pins.at(1).mappedCount, quint16(250));
    QVERIFY(!doc->pins.at(1).rect.isNull());
}

QTEST_MAIN(TestPinMapping)
#include "tst_pinmapping.moc"
