#include <QtTest>

#include "EditorForm.h"
#include "QuillonRun.h"
#include "elements/DocumentTables.h"
#include "elements/GridWidget.h"
#include "elements/Knob.h"
#include "elements/Led.h"
#include "elements/MathLabel.h"
#include "elements/TimerLabel.h"
#include "elements/ToggleButton.h"
#include "elements/VerticalWidget.h"
#include "shell/Document.h"
#include "tooling/ActionDelegate.h"
#include "tooling/AttributeRows.h"
#include "tooling/AttributeTable.h"
#include "tooling/ColorDelegate.h"
#include "tooling/ColumnsDelegate.h"
#include "tooling/ComboBoxDelegate2.h"
#include "tooling/CurvesDelegate.h"
#include "tooling/FileDelegate.h"
#include "tooling/FontDelegate.h"
#include "tooling/ItemsDelegate.h"
#include "views/MyQwtPlot.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QTabWidget>
#include <QLineEdit>
#include <QSpinBox>
#include <QStandardItemModel>
#include <QTableView>
#include <qwt_thermo.h>

namespace {

const QByteArray kForm =
    "<verticalcontainer label=\"Main\">\n"
    " <gridcontainer define=\"G\" columns=\"2\">\n"
    "  <spinbox define=\"S1\" range=\"0;15\"/>\n"
    "  <hexspinbox define=\"H1\" range=\"0;255\"/>\n"
    "  <doublespinbox define=\"D1\" range=\"0;2.5\"/>\n"
    "  <checkbox define=\"C1\" label=\"Check\"/>\n"
    " </gridcontainer>\n"
    " <combo define=\"CB\"><item label=\"a\" value=\"1\"/><item label=\"b\" value=\"2\"/></combo>\n"
    " <text define=\"TX\" label=\"Hello\"/>\n"
    " <math define=\"M1\" formula=\"S1 * 2\" unit=\"V\"/>\n"
    " <led define=\"L1\" data=\"S1\" bitmask=\"0x1\" oncolor=\"red\"/>\n"
    " <timer define=\"T1\" interval=\"100\" run=\"0\"/>\n"
    " <togglebutton define=\"TB\" label=\"Go\" oncolor=\"0;255;0\" offcolor=\"255;0;0\"/>\n"
    " <button define=\"B1\" label=\"Push\"/>\n"
    " <knob define=\"K1\" range=\"0;10\"/>\n"
    " <thermo define=\"TH\" data=\"S1\" min=\"0\" max=\"100\"/>\n"
    " <plot define=\"P1\" minY=\"0\" maxY=\"100\"><curve label=\"c1\" data=\"S1\" color=\"255;0;0\"/></plot>\n"
    " <table define=\"TA\"><column label=\"Reg\" type=\"regname\"/><column label=\"Val\" type=\"value\"/></table>\n"
    "</verticalcontainer>\n";

const QStringList kGeometry = {"X", "Y", "Width", "Height", "SizePolH", "SizePolV", "Color", "Font"};

QStringList keys(const QStringList &rows)
{
    QStringList result;
    for (const QString &row : rows)
        result << AttributeRows::keyOf(row);
    return result;
}

QString rowValue(QObject *target, const QString &key)
{
    for (const QString &row : AttributeRows::build(target)) {
        if (AttributeRows::keyOf(row) == key)
            return AttributeRows::valueOf(row);
    }
    return QStringLiteral("<no row>");
}

// Every dynamic property with its value: what a refused edit must leave
// exactly as it was.
QMap<QByteArray, QVariant> dynamicProperties(QObject *object)
{
    QMap<QByteArray, QVariant> result;
    for (const QByteArray &name : object->dynamicPropertyNames())
        result.insert(name, object->property(name.constData()));
    return result;
}

} // namespace

// The attribute table of the form editor: the rows of each kind, the apply
// step per key family (good values and junk), renaming and closing editors.
class TestAttributeTable : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_form = new EditorForm;
        QVERIFY2(m_form->load(QByteArray(), kForm), qPrintable(m_form->error()));
        m_view = new QTableView;
        m_table = new AttributeTable(m_form->document(), m_view);
    }

    void cleanup()
    {
        delete m_table;
        delete m_view;
        delete m_form;
    }

    void rows_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QStringList>("head");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("actions");

        QTest::newRow("spinbox") << "S1" << QStringList{"Define", "Prefix", "Suffix", "Range", "Step"} << "Range"
                                 << "0..15" << true;
        QTest::newRow("hexspinbox") << "H1" << QStringList{"Define", "Prefix", "Suffix", "Range", "Step"} << "Range"
                                    << "0..255" << true;
        QTest::newRow("doublespinbox") << "D1" << QStringList{"Define", "Prefix", "Suffix", "Range", "Step"}
                                       << "Range" << "0..2.5" << true;
        QTest::newRow("checkbox") << "C1" << QStringList{"Define", "Label"} << "Label" << "Check" << true;
        QTest::newRow("combo") << "CB" << QStringList{"Define", "Items"} << "Items" << "<Doubleclick for details>"
                               << true;
        QTest::newRow("knob") << "K1" << QStringList{"Define", "Range", "Step"} << "Range" << "0..10" << true;
        QTest::newRow("text") << "TX" << QStringList{"define", "Label"} << "Label" << "Hello" << false;
        QTest::newRow("math") << "M1" << QStringList{"Define", "Label", "Format", "Expression", "Unit"} << "Unit"
                              << "V" << true;
        QTest::newRow("led") << "L1" << QStringList{"define", "data", "bitmask", "OnColor", "OffColor"} << "OnColor"
                             << "red" << false;
        QTest::newRow("timer") << "T1" << QStringList{"Define", "run", "singleShot", "interval"} << "interval"
                               << "100" << true;
        QTest::newRow("toggle") << "TB" << QStringList{"Define", "Label", "OnColor", "OffColor"} << "OffColor"
                                << "255;0;0" << true;
        QTest::newRow("button") << "B1" << QStringList{"define", "Label"} << "Label" << "Push" << true;
        QTest::newRow("grid") << "G" << QStringList{"define", "NrColumns"} << "NrColumns" << "2" << false;
        QTest::newRow("thermo") << "TH" << QStringList{"define", "Range", "data"} << "Range" << "0..100" << false;
        QTest::newRow("plot") << "P1" << QStringList{"define", "Curves"} << "maxY" << "100" << false;
        QTest::newRow("table") << "TA" << QStringList{"Define", "Columns"} << "Columns"
                               << "<Doubleclick for details>" << true;
    }

    void rows()
    {
        QFETCH(QString, define);
        QFETCH(QStringList, head);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(bool, actions);

        QObject *target = lookup(define);
        QVERIFY2(target, qPrintable(define));
        m_table->fill(target);
        QStandardItemModel *model = m_table->model();
        QCOMPARE(model->columnCount(), 2);
        QCOMPARE(model->horizontalHeaderItem(0)->text(), QStringLiteral("Attribute"));
        QCOMPARE(model->horizontalHeaderItem(1)->text(), QStringLiteral("Value"));

        QStringList shown;
        for (int row = 0; row < model->rowCount(); ++row) {
            shown << model->item(row, 0)->text();
            QVERIFY(!model->item(row, 0)->isEditable());
        }
        QCOMPARE(shown.mid(0, head.size()), head);
        QCOMPARE(model->item(0, 1)->text(), target->objectName());
        QCOMPARE(shown.mid(shown.size() - kGeometry.size()), kGeometry);
        QCOMPARE(shown.contains(QStringLiteral("action")), actions);
        if (actions)
            QCOMPARE(shown.at(shown.size() - kGeometry.size() - 1), QStringLiteral("action"));
        QCOMPARE(shown.removeDuplicates(), 0);
        QCOMPARE(m_table->valueOf(key), value);

        // Rows read the widget as it stands.
        auto *widget = qobject_cast<QWidget *>(target);
        QCOMPARE(m_table->valueOf(QStringLiteral("Width")), QString::number(widget->width()));
        QCOMPARE(m_table->valueOf(QStringLiteral("Font")), widget->font().toString());

        // Editors are bound by key.
        auto delegateOf = [this](const char *k) { return m_view->itemDelegateForRow(m_table->rowOf(QLatin1String(k))); };
        QVERIFY(qobject_cast<FontDelegate *>(delegateOf("Font")));
        QVERIFY(qobject_cast<ColorDelegate *>(delegateOf("Color")));
        QVERIFY(qobject_cast<ComboBoxDelegate2 *>(delegateOf("SizePolH")));
        QVERIFY(qobject_cast<ComboBoxDelegate2 *>(delegateOf("SizePolV")));
        if (actions)
            QVERIFY(qobject_cast<ActionDelegate *>(delegateOf("action")));
        if (define == QLatin1String("CB"))
            QVERIFY(qobject_cast<ItemsDelegate *>(delegateOf("Items")));
        if (define == QLatin1String("P1"))
            QVERIFY(qobject_cast<CurvesDelegate *>(delegateOf("Curves")));
        if (define == QLatin1String("TA"))
            QVERIFY(qobject_cast<ColumnsDelegate *>(delegateOf("Columns")));
        QVERIFY(!m_view->itemDelegateForRow(0));
    }

    void policyWords()
    {
        const QStringList words = AttributeRows::policyWords();
        QCOMPARE(words, (QStringList{"fixed", "expanding", "minimum", "maximum", "preferred", "minimumexpanding",
                                     "ignored"}));
        const QMap<int, QString> byValue = {{0, "fixed"}, {1, "minimum"}, {3, "minimumexpanding"}, {4, "maximum"},
                                            {5, "preferred"}, {7, "expanding"}, {13, "ignored"}};
        for (auto it = byValue.begin(); it != byValue.end(); ++it) {
            QCOMPARE(AttributeRows::policyWord(QSizePolicy::Policy(it.key())), it.value());
            QSizePolicy::Policy back;
            QVERIFY(AttributeRows::policyOfWord(it.value(), &back));
            QCOMPARE(int(back), it.key());
        }
        QSizePolicy::Policy none;
        QVERIFY(!AttributeRows::policyOfWord(QStringLiteral("huge"), &none));
    }

    void applies_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("propertyValue");

        QTest::newRow("range") << "S1" << "Range" << "2..9" << "2..9" << "" << "";
        QTest::newRow("range blanks") << "S1" << "Range" << " 3 .. 07" << "3..7" << "" << "";
        QTest::newRow("double range") << "D1" << "Range" << "0.5..2.25" << "0.5..2.25" << "" << "";
        QTest::newRow("knob range") << "K1" << "Range" << "1..5" << "1..5" << "" << "";
        QTest::newRow("thermo range") << "TH" << "Range" << "5..50" << "5..50" << "min" << "5";
        QTest::newRow("step") << "S1" << "Step" << "3" << "3" << "" << "";
        QTest::newRow("knob step") << "K1" << "Step" << "0.5" << "0.5" << "" << "";
        QTest::newRow("prefix") << "S1" << "Prefix" << "x=" << "x=" << "prefix" << "x=";
        QTest::newRow("suffix") << "H1" << "Suffix" << " Hz" << " Hz" << "suffix" << " Hz";
        QTest::newRow("width") << "S1" << "Width" << "120" << "120" << "Size" << "120;-1";
        QTest::newRow("height") << "S1" << "Height" << "30" << "30" << "Size" << "-1;30";
        QTest::newRow("x") << "TX" << "X" << "15" << "15" << "" << "";
        QTest::newRow("policy") << "TX" << "SizePolH" << "expanding" << "expanding" << "" << "";
        QTest::newRow("color") << "TX" << "Color" << "10;20;30" << "10;20;30" << "Color" << "10;20;30";
        QTest::newRow("button color") << "B1" << "Color" << "1;2;3" << "1;2;3" << "Color" << "1;2;3";
        QTest::newRow("label") << "TX" << "Label" << "Bye" << "Bye" << "" << "";
        QTest::newRow("check label") << "C1" << "Label" << "Flag" << "Flag" << "" << "";
        QTest::newRow("interval") << "T1" << "interval" << "250" << "250" << "interval" << "250";
        QTest::newRow("single shot") << "T1" << "singleShot" << "1" << "1" << "singleShot" << "1";
        QTest::newRow("led on") << "L1" << "OnColor" << "0;128;0" << "0;128;0" << "OnColor" << "0;128;0";
        QTest::newRow("led mask") << "L1" << "bitmask" << "0x4" << "0x4" << "bitmask" << "0x4";
        QTest::newRow("toggle off") << "TB" << "OffColor" << "1;2;3" << "1;2;3" << "OffColor" << "1;2;3";
        QTest::newRow("columns") << "G" << "NrColumns" << "3" << "3" << "" << "";
        QTest::newRow("unit") << "M1" << "Unit" << "mV" << "mV" << "suffix" << "mV";
        QTest::newRow("expression") << "M1" << "Expression" << "S1 + 1" << "S1 + 1" << "expression" << "S1 + 1";
        QTest::newRow("default") << "C1" << "default" << "1" << "1" << "my_default" << "1";
        QTest::newRow("readonly") << "CB" << "Readonly" << "true" << "true" << "my_readonly" << "true";
        QTest::newRow("header") << "S1" << "header" << "regs.h" << "regs.h" << "header" << "regs.h";
        QTest::newRow("plot maxY") << "P1" << "maxY" << "250" << "250" << "maxY" << "250";
        QTest::newRow("plot grid") << "P1" << "grid" << "3" << "3" << "grid" << "3";
        QTest::newRow("thermo level") << "TH" << "alarmlevel" << "40" << "40" << "alarmlevel" << "40";
    }

    void applies()
    {
        QFETCH(QString, define);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, shown);
        QFETCH(QString, property);
        QFETCH(QString, propertyValue);

        QObject *target = lookup(define);
        QVERIFY(target);
        m_table->fill(target);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("setAttribute(%1, %2)").arg(key, value)));
        QVERIFY(m_table->setAttribute(key, value));
        if (m_table->rowOf(key) >= 0)
            QCOMPARE(m_table->valueOf(key), shown);
        // The row rebuilt from the widget shows the same: the widget took it.
        QCOMPARE(rowValue(target, key), shown);
        if (!property.isEmpty())
            QCOMPARE(target->property(property.toLatin1().constData()).toString(), propertyValue);
    }

    void appliedEffects()
    {
        auto *spin = qobject_cast<QSpinBox *>(m_form->find(QStringLiteral("S1")));
        m_table->fill(spin);
        QVERIFY(m_table->setAttribute(QStringLiteral("Range"), QStringLiteral("4..12")));
        QCOMPARE(spin->minimum(), 4);
        QCOMPARE(spin->maximum(), 12);
        QVERIFY(m_table->setAttribute(QStringLiteral("SizePolV"), QStringLiteral("ignored")));
        QCOMPARE(spin->sizePolicy().verticalPolicy(), QSizePolicy::Ignored);
        QCOMPARE(spin->property("Sizepolicy").toString(),
                 AttributeRows::policyWord(spin->sizePolicy().horizontalPolicy()) + QStringLiteral(";ignored"));
        QVERIFY(m_table->setAttribute(QStringLiteral("Width"), QStringLiteral("77")));
        QCOMPARE(spin->minimumWidth(), 77);
        QCOMPARE(spin->maximumWidth(), 77);

        auto *text = qobject_cast<QWidget *>(m_form->find(QStringLiteral("TX")));
        m_table->fill(text);
        QVERIFY(m_table->setAttribute(QStringLiteral("Color"), QStringLiteral("10;20;30")));
        QCOMPARE(text->palette().color(text->backgroundRole()), QColor(10, 20, 30));
        QVERIFY(text->autoFillBackground());
        QVERIFY(m_table->setAttribute(QStringLiteral("Y"), QStringLiteral("44")));
        QCOMPARE(text->y(), 44);
        QCOMPARE(text->property("Pos").toString(), QStringLiteral("%1;44").arg(text->x()));
        QFont font(QStringLiteral("Serif"), 17);
        QVERIFY(m_table->setAttribute(QStringLiteral("Font"), font.toString()));
        QCOMPARE(text->font().pointSize(), 17);
        QCOMPARE(text->property("my_font").toString(), text->font().toString());

        auto *button = qobject_cast<QWidget *>(m_form->find(QStringLiteral("B1")));
        m_table->fill(button);
        QVERIFY(m_table->setAttribute(QStringLiteral("Color"), QStringLiteral("1;2;3")));
        QCOMPARE(button->palette().color(QPalette::Button), QColor(1, 2, 3));

        auto *toggle = qobject_cast<ToggleButton *>(m_form->find(QStringLiteral("TB")));
        m_table->fill(toggle);
        QVERIFY(m_table->setAttribute(QStringLiteral("OnColor"), QStringLiteral("9;8;7")));
        QVERIFY(toggle->styleSheet().contains(QStringLiteral("QPushButton:checked{background-color: rgb(9,8,7)")));
        QVERIFY(toggle->styleSheet().contains(QStringLiteral("QPushButton{background-color: rgb(255,0,0);}")));

        auto *timer = qobject_cast<TimerLabel *>(m_form->find(QStringLiteral("T1")));
        m_table->fill(timer);
        QVERIFY(m_table->setAttribute(QStringLiteral("interval"), QStringLiteral("300")));
        QCOMPARE(timer->interval(), 300);
        QVERIFY(m_table->setAttribute(QStringLiteral("run"), QStringLiteral("1")));
        QVERIFY(timer->isActive());
        QVERIFY(m_table->setAttribute(QStringLiteral("run"), QStringLiteral("0")));
        QVERIFY(!timer->isActive());

        auto *math = qobject_cast<MathLabel *>(m_form->find(QStringLiteral("M1")));
        m_table->fill(math);
        QVERIFY(m_table->setAttribute(QStringLiteral("Expression"), QStringLiteral("K1 + H1")));
        QVERIFY(math->names.contains(QStringLiteral("K1")));
        QVERIFY(!math->names.contains(QStringLiteral("S1")));
        DocumentTables &tables = m_form->document().tables();
        QVERIFY(tables.mathDependents.value(QStringLiteral("K1")).contains(math));
        QVERIFY(!tables.mathDependents.value(QStringLiteral("S1")).contains(math));

        auto *thermo = qobject_cast<QwtThermo *>(m_form->find(QStringLiteral("TH")));
        m_table->fill(thermo);
        QVERIFY(m_table->setAttribute(QStringLiteral("data"), QStringLiteral("K1")));
        QVERIFY(tables.thermoDependents.value(QStringLiteral("K1")).contains(thermo));
        QVERIFY(!tables.thermoDependents.value(QStringLiteral("S1")).contains(thermo));

        auto *grid = qobject_cast<GridWidget *>(lookup(QStringLiteral("G")));
        m_table->fill(grid);
        QVERIFY(m_table->setAttribute(QStringLiteral("NrColumns"), QStringLiteral("1")));
        QCOMPARE(grid->columns(), 1);
        // Four children, one per line now, in their former order.
        const QStringList order = {"S1", "H1", "D1", "C1"};
        for (int i = 0; i < order.size(); ++i) {
            QLayoutItem *item = grid->gridLayout()->itemAtPosition(i, 0);
            QVERIFY(item && item->widget());
            QCOMPARE(item->widget()->objectName(), order.at(i));
        }
        QVERIFY(!grid->gridLayout()->itemAtPosition(0, 1));

        auto *plot = qobject_cast<MyQwtPlot *>(m_form->find(QStringLiteral("P1")));
        m_table->fill(plot);
        QVERIFY(m_table->setAttribute(QStringLiteral("oszi"), QStringLiteral("1")));
        QVERIFY(plot->oszi());
        QVERIFY(plot->series(0));
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");

        QTest::newRow("range words") << "S1" << "Range" << "a;b";
        QTest::newRow("range one value") << "S1" << "Range" << "5";
        QTest::newRow("range reversed") << "S1" << "Range" << "9..2";
        QTest::newRow("range fraction on integers") << "S1" << "Range" << "0.5..3";
        QTest::newRow("range on text") << "TX" << "Range" << "1..2";
        QTest::newRow("colour word") << "TX" << "Color" << "red";
        QTest::newRow("colour pair") << "TX" << "Color" << "1;2";
        QTest::newRow("colour too bright") << "TX" << "Color" << "1;2;300";
        QTest::newRow("negative width") << "S1" << "Width" << "-5";
        QTest::newRow("height word") << "S1" << "Height" << "tall";
        QTest::newRow("policy word") << "S1" << "SizePolH" << "huge";
        QTest::newRow("zero step") << "S1" << "Step" << "0";
        QTest::newRow("negative interval") << "T1" << "interval" << "-1";
        QTest::newRow("no columns") << "G" << "NrColumns" << "0";
        QTest::newRow("toggle colour word") << "TB" << "OnColor" << "red";
        QTest::newRow("led colour junk") << "L1" << "OnColor" << "1;2";
        QTest::newRow("readonly word") << "C1" << "Readonly" << "maybe";
        QTest::newRow("empty font") << "TX" << "Font" << "";
        QTest::newRow("prefix on knob") << "K1" << "Prefix" << "x";
        QTest::newRow("unknown key") << "S1" << "Colour" << "1;2;3";
        QTest::newRow("plot bound word") << "P1" << "minY" << "low";
    }

    void refuses()
    {
        QFETCH(QString, define);
        QFETCH(QString, key);
        QFETCH(QString, value);

        QObject *target = lookup(define);
        QVERIFY(target);
        auto *widget = qobject_cast<QWidget *>(target);
        m_table->fill(target);
        const QStringList before = AttributeRows::build(target);
        const auto properties = dynamicProperties(target);
        const QString cellBefore = m_table->valueOf(key);
        const QSize minimum = widget->minimumSize();
        const QString sheet = widget->styleSheet();

        QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("setAttribute(%1, %2)").arg(key, value)));
        QVERIFY(!m_table->setAttribute(key, value));
        QCOMPARE(AttributeRows::build(target), before);
        QCOMPARE(dynamicProperties(target), properties);
        QCOMPARE(widget->minimumSize(), minimum);
        QCOMPARE(widget->styleSheet(), sheet);
        // The cell goes back to what the widget has.
        QCOMPARE(m_table->valueOf(key), cellBefore);
    }

    void renames()
    {
        DocumentTables &tables = m_form->document().tables();
        QObject *spin = m_form->find(QStringLiteral("S1"));
        m_table->fill(spin);
        QVERIFY(m_table->setAttribute(QStringLiteral("Define"), QStringLiteral("SPEED")));
        QCOMPARE(spin->objectName(), QStringLiteral("SPEED"));
        QVERIFY(tables.elements.contains(QStringLiteral("SPEED")));
        QVERIFY(!tables.elements.contains(QStringLiteral("S1")));
        QCOMPARE(m_table->valueOf(QStringLiteral("Define")), QStringLiteral("SPEED"));

        // Taken names are refused, and the cell shows the name kept.
        for (const char *taken : {"H1", "T1", "TB"}) {
            QVERIFY(!m_table->setAttribute(QStringLiteral("Define"), QLatin1String(taken)));
            QCOMPARE(spin->objectName(), QStringLiteral("SPEED"));
            QCOMPARE(m_table->valueOf(QStringLiteral("Define")), QStringLiteral("SPEED"));
        }
        QVERIFY(tables.element(QStringLiteral("H1")));
        QVERIFY(!m_table->setAttribute(QStringLiteral("Define"), QStringLiteral("  ")));

        // Displays and containers move in their own tables.
        QObject *led = lookup(QStringLiteral("L1"));
        m_table->fill(led);
        QVERIFY(m_table->setAttribute(QStringLiteral("define"), QStringLiteral("LAMP")));
        QCOMPARE(tables.leds.value(QStringLiteral("LAMP")), led);
        QCOMPARE(tables.leds.keys(led), QStringList{"LAMP"});

        QObject *grid = lookup(QStringLiteral("G"));
        m_table->fill(grid);
        QVERIFY(m_table->setAttribute(QStringLiteral("define"), QStringLiteral("GRID")));
        QCOMPARE(grid->objectName(), QStringLiteral("GRID"));
        QVERIFY(tables.containers.contains(QStringLiteral("GRID")));
        QVERIFY(!tables.containers.contains(QStringLiteral("G")));
        QVERIFY(!m_table->setAttribute(QStringLiteral("define"), QStringLiteral("SPEED")));
        QCOMPARE(grid->objectName(), QStringLiteral("GRID"));
    }

    void svdToolTip()
    {
        EditorForm form;
        const QByteArray svd = miniSvd("<field><name>F</name><description>Clock divider</description>"
                                       "<lsb>0</lsb><msb>3</msb></field>");
        QVERIFY(writeTextFile(form.filePath(QStringLiteral("d.svd")), svd));
        QVERIFY2(form.load("<svd file=\"d.svd\"/>\n",
                           "<verticalcontainer><spinbox define=\"P.R.F\"/><spinbox define=\"OTHER\" svd=\"0\"/>"
                           "</verticalcontainer>"),
                 qPrintable(form.error()));
        QVERIFY(form.document().readSvd(form.folder(), nullptr));
        QTableView view;
        AttributeTable table(form.document(), &view);
        auto *other = qobject_cast<QWidget *>(form.find(QStringLiteral("OTHER")));
        QVERIFY(other);
        table.fill(other);
        QVERIFY(table.setAttribute(QStringLiteral("svd"), QStringLiteral("P.R.F")));
        QCOMPARE(other->toolTip(), QStringLiteral("Clock divider"));
        QCOMPARE(other->property("my_svd").toString(), QStringLiteral("P.R.F"));
        QCOMPARE(other->property("svd").toString(), QStringLiteral("P.R.F"));
        // A path the model does not know keeps the tool tip.
        QVERIFY(table.setAttribute(QStringLiteral("svd"), QStringLiteral("P.R.NOPE")));
        QCOMPARE(other->toolTip(), QStringLiteral("Clock divider"));
        QCOMPARE(other->property("my_svd").toString(), QStringLiteral("P.R.NOPE"));
    }

    void containerLabels()
    {
        EditorForm form;
        QVERIFY2(form.load(QByteArray(),
                           "<tabcontainer><verticalcontainer label=\"First\"><edit define=\"E1\"/></verticalcontainer>"
                           "<groupcontainer label=\"Box\"><checkbox define=\"C2\" label=\"x\"/></groupcontainer>"
                           "</tabcontainer>"),
                 qPrintable(form.error()));
        QTableView view;
        AttributeTable table(form.document(), &view);
        // The root container is the tab container itself, or holds it.
        auto *tabs = qobject_cast<QTabWidget *>(form.document().root());
        if (!tabs)
            tabs = form.document().root()->findChild<QTabWidget *>();
        QVERIFY(tabs);
        QCOMPARE(tabs->count(), 2);
        auto *page = form.document().root()->findChild<VerticalWidget *>();
        QVERIFY(page);
        table.fill(page);
        QCOMPARE(table.valueOf(QStringLiteral("Label")), QStringLiteral("First"));
        QVERIFY(!table.model()->findItems(QStringLiteral("action")).size());
        QVERIFY(table.setAttribute(QStringLiteral("Label"), QStringLiteral("Renamed")));
        QCOMPARE(page->property("my_label").toString(), QStringLiteral("Renamed"));
        QCOMPARE(tabs->tabText(0), QStringLiteral("Renamed"));

        auto *group = form.document().root()->findChild<QGroupBox *>();
        QVERIFY(group);
        table.fill(group);
        QVERIFY(table.setAttribute(QStringLiteral("Label"), QStringLiteral("Frame")));
        QCOMPARE(group->title(), QStringLiteral("Frame"));
        QCOMPARE(group->property("my_label").toString(), QStringLiteral("Frame"));

        auto *edit = qobject_cast<QLineEdit *>(form.find(QStringLiteral("E1")));
        QVERIFY(edit);
        table.fill(edit);
        QVERIFY(table.setAttribute(QStringLiteral("Readonly"), QStringLiteral("1")));
        QVERIFY(edit->isReadOnly());
        QVERIFY(table.setAttribute(QStringLiteral("Readonly"), QStringLiteral("false")));
        QVERIFY(!edit->isReadOnly());
        QCOMPARE(edit->property("my_readonly").toString(), QStringLiteral("false"));
    }

    void closeEditorNormalises()
    {
        QObject *spin = m_form->find(QStringLiteral("S1"));
        m_table->fill(spin);
        const int row = m_table->rowOf(QStringLiteral("Range"));
        m_view->setCurrentIndex(m_table->model()->index(row, 1));
        m_table->model()->item(row, 1)->setText(QStringLiteral("03 ..  011"));
        QLineEdit editor;
        editor.setText(QStringLiteral("03 ..  011"));
        m_table->closeEditor(&editor, QAbstractItemDelegate::SubmitModelCache);
        QCOMPARE(editor.text(), QStringLiteral("3..11"));
        QCOMPARE(qobject_cast<QSpinBox *>(spin)->maximum(), 11);

        // Junk: the editor and the cell show the range the widget kept.
        m_table->model()->item(row, 1)->setText(QStringLiteral("a;b"));
        editor.setText(QStringLiteral("a;b"));
        m_table->closeEditor(&editor, QAbstractItemDelegate::SubmitModelCache);
        QCOMPARE(editor.text(), QStringLiteral("3..11"));
        QCOMPARE(m_table->valueOf(QStringLiteral("Range")), QStringLiteral("3..11"));
    }

    void emptyTarget()
    {
        m_table->fill(m_form->find(QStringLiteral("S1")));
        QVERIFY(m_table->model()->rowCount() > 0);
        m_table->fill(nullptr);
        QCOMPARE(m_table->model()->rowCount(), 0);
        QVERIFY(!m_table->setAttribute(QStringLiteral("X"), QStringLiteral("1")));
    }

private:
    // Containers and LEDs are named by the reader, not by their define:
    // the tests find the one grid and the one LED by class.
    QObject *lookup(const QString &define) const
    {
        if (define == QLatin1String("G"))
            return m_form->document().root()->findChild<GridWidget *>();
        if (define == QLatin1String("L1"))
            return m_form->document().root()->findChild<Led *>();
        return m_form->find(define);
    }

    EditorForm *m_form = nullptr;
    QTableView *m_view = nullptr;
    AttributeTable *m_table = nullptr;
};

QTEST_MAIN(TestAttributeTable)
#include "tst_attributetable.moc"
