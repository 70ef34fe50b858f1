#include <QtTest>

#include "FormWindow.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/DocumentTables.h"
#include "elements/RecordingHook.h"
#include "elements/RecordingHook.h"
#include "elements/SetDef.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "views/RegisterView.h"
#include "views/Table.h"
#include "views/TableFile.h"

#include <QElapsedTimer>
#include <QLineEdit>

// The table element on a real form over the nRF52840 SVD file: its suffix
// commands, the decode tooltip, the table file, the C export, the whole
// value in a configuration, the script keywords and the user's editing.
class TestTable : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanupTestCase() { m_form.close(); }

    void suffixCommands_data();
    void suffixCommands();
    void valueKinds();
    void decodeToolTip_data();
    void decodeToolTip();
    void numberErrors();
    void tableFileRoundTrip();
    void tableFileBadInput_data();
    void tableFileBadInput();
    void loadAtAndInsert();
    void cExport();
    void configurationRoundTrip();
    void scriptKeywords();
    void moveRows();
    void copyPasteAndDelete();
    void editingReformats();
    void columnLimitsAndHugeRowCount();
    void exampleRegistersTab();

private:
    Table *table() const { return m_form.element<Table>(QStringLiteral("TABLE")); }
    void run(const QStringList &setDefs);
    QString file(const QString &name) const { return m_form.dir.filePath(name); }

    FormWindow m_form;
};

namespace {

const QByteArray kForm = R"(
<verticalcontainer>
 <registerview define="RV"/>
 <table define="TABLE" numrows="3">
  <column label="Register" type="regname" columnwidth="150"/>
  <column label="Address" type="address" format="0x%08X"/>
  <column label="Func" type="func" format="0x%02X"/>
  <column label="Value" type="value" format="0x%08X"/>
  <column label="Delay" type="delay" format="%d"/>
  <column label="Answer" type="answer"/>
  <column label="Comment" type="comment"/>
  <column type="delete" columnwidth="20"/>
 </table>
 <table define="NOVALUE" numrows="1">
  <column label="Register" type="regname"/>
  <column label="Comment" type="comment" default="note"/>
  <column label="Odd" type="something"/>
 </table>
 <table define="WIDE" numrows="70000">
  <column type="regname"/><column type="address"/><column type="func"/><column type="value"/>
  <column type="delay"/><column type="answer"/><column type="comment"/><column type="delete"/>
  <column type="math.x" source="RV"/><column type="comment" columnwidth="0"/><column type="value"/>
 </table>
</verticalcontainer>
)";

// An empty row of TABLE as its whole value writes it.
const QString kEmpty = QStringLiteral(",0x00000000,0x00,0x00000000,0,;");

} // namespace

void TestTable::initTestCase()
{
    const QByteArray svd = readTextFile(QuillonRun::sourceDir() + QStringLiteral("/tests/data/svd/Nordic_nrf52840.svd")).toUtf8();
    QVERIFY(!svd.isEmpty());
    QVERIFY(m_form.write(svd, kForm));
    QVERIFY(m_form.open());
    QVERIFY(table());
}

void TestTable::init()
{
    run({QStringLiteral("TABLE.deleteall=1"), QStringLiteral("TABLE.insertmode=0"), QStringLiteral("TABLE.func=")});
    m_form.sink->clear();
}

void TestTable::run(const QStringList &setDefs)
{
    for (const QString &text : setDefs)
        SetDef::run(text, &m_form.tables());
}

void TestTable::suffixCommands_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("row");

    QTest::newRow("a register write")
        << QStringList{"TABLE.func=1", "TABLE.value=0x11", "TABLE.address=0x4000256C", "TABLE.registername=UARTE0.CONFIG"}
        << "UARTE0.CONFIG,0x4000256C,1,0x00000011,0,;" + kEmpty + kEmpty << 1;
    QTest::newRow("two writes, decimal value")
        << QStringList{"TABLE.value=5", "TABLE.registername=UARTE0.ENABLE", "TABLE.value=8", "TABLE.registername=UARTE0.ENABLE"}
        << "UARTE0.ENABLE,0x00000000,0x00,0x00000005,0,;UARTE0.ENABLE,0x00000000,0x00,0x00000008,0,;" + kEmpty << 2;
    QTest::newRow("rows beyond the declared count grow the grid")
        << QStringList{"TABLE.row=4", "TABLE.value=1", "TABLE.registername=A.B"}
        << kEmpty + kEmpty + kEmpty + ",,,,,;" + "A.B,,0x00,0x00000001,0,;" << 5;
    QTest::newRow("insert mode puts the row in front")
        << QStringList{"TABLE.value=1", "TABLE.registername=A.B", "TABLE.row=0", "TABLE.insertmode=1", "TABLE.value=2",
                       "TABLE.registername=C.D"}
        << "C.D,,0x00,0x00000002,0,;A.B,0x00000000,0x00,0x00000001,0,;" + kEmpty + kEmpty << 1;
    QTest::newRow("definevalue writes the cursor's cell")
        << QStringList{"TABLE.row=1", "TABLE.column=6", "TABLE.definevalue=hello", "TABLE.column=1", "TABLE.definevalue=255"}
        << kEmpty + ",0x000000FF,0x00,0x00000000,0,hello;" + kEmpty << 1;
    QTest::newRow("a value taken from another element by its suffix")
        << QStringList{"TABLE.value=RV.value", "TABLE.registername=X.Y"}
        << "X.Y,0x00000000,0x00,0x00000000,0,;" + kEmpty + kEmpty << 1;
    QTest::newRow("delete removes the selected row")
        << QStringList{"TABLE.value=1", "TABLE.registername=A.B", "TABLE.value=2", "TABLE.registername=C.D",
                       "TABLE.row=0", "TABLE.deleteall=0", "TABLE.value=3", "TABLE.registername=E.F", "TABLE.delete=1"}
        << kEmpty + kEmpty << 1;
}

void TestTable::suffixCommands()
{
    QFETCH(QStringList, commands);
    QFETCH(QString, expected);
    QFETCH(int, row);
    if (QString(QTest::currentDataTag()).startsWith(QLatin1String("delete"))) {
        // The view's row decides what delete removes.
        run(commands.mid(0, commands.size() - 1));
        table()->selectRow(0);
        run(commands.mid(commands.size() - 1));
    } else {
        run(commands);
    }
    QCOMPARE(table()->referenceValue(), expected);
    QCOMPARE(table()->currentRowIndex(), row);
    QVERIFY2(m_form.sink->errors.isEmpty(), qPrintable(m_form.sink->errors.join('\n')));
}

void TestTable::valueKinds()
{
    run({"TABLE.value=0x11", "TABLE.registername=UARTE0.CONFIG", "TABLE.row=0"});
    QCOMPARE(table()->value(0), QStringLiteral("0x00000011"));
    QCOMPARE(table()->value(1), QStringLiteral("UARTE0.CONFIG"));
    QCOMPARE(table()->value(4), QStringLiteral("Table"));
    QCOMPARE(table()->value(8), QStringLiteral("UARTE0"));
    QCOMPARE(table()->value(9), QStringLiteral("CONFIG"));
    // The register name cell is fixed, the value cell open for editing.
    QVERIFY(!table()->cell(0, Table::RegName)->isEnabled());
    QVERIFY(table()->cell(0, Table::Value)->isEnabled());
    QVERIFY(!table()->cell(0, Table::Answer)->isEnabled());
    QCOMPARE(table()->cell(0, Table::RegName)->toolTip(), QString());

    // A table with no value column writes no value, and kinds it lacks
    // stay -1.
    auto *other = m_form.element<Table>(QStringLiteral("NOVALUE"));
    QCOMPARE(other->columnOf(Table::Value), -1);
    QCOMPARE(other->column(2).kind, -1);
    SetDef::run(QStringLiteral("NOVALUE.value=3"), &m_form.tables());
    QCOMPARE(other->referenceValue(), QStringLiteral(",,,,,note;"));
}

void TestTable::decodeToolTip_data()
{
    QTest::addColumn<QString>("reg");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("tip");
    QTest::newRow("enumerated fields, highest first")
        << "UARTE0.CONFIG" << "0x11" << "STOP[4]: Two (0b1)\nPARITY[3..1]: Excluded (0b000)\nHWFC[0]: Enabled (0b1)\n";
    QTest::newRow("multi-bit value found")
        << "UARTE0.CONFIG" << "0x0E" << "STOP[4]: One (0b0)\nPARITY[3..1]: Included (0b111)\nHWFC[0]: Disabled (0b0)\n";
    QTest::newRow("value without an entry") << "UARTE0.ENABLE" << "3" << "ENABLE: 3\n";
    QTest::newRow("entry of a 4-bit field") << "UARTE0.ENABLE" << "8" << "ENABLE[3..0]: Enabled (0b1000)\n";
    QTest::newRow("unknown register") << "UARTE0.NOPE" << "1" << "Can't evaluate without valid register.";
    QTest::newRow("unknown module") << "NOPE.CONFIG" << "1" << "Can't evaluate without valid register.";
}

void TestTable::decodeToolTip()
{
    QFETCH(QString, reg);
    QFETCH(QString, value);
    QFETCH(QString, tip);
    run({"TABLE.value=" + value, "TABLE.registername=" + reg});
    QCOMPARE(table()->cell(0, Table::Value)->toolTip(), tip);
    // The cell's own edit goes the same way.
    table()->setTableValue(0, Table::Value, value);
    QCOMPARE(table()->cell(0, Table::Value)->toolTip(), tip);
}

void TestTable::numberErrors()
{
    run({"TABLE.value=bogus"});
    QCOMPARE(table()->referenceValue(), kEmpty + kEmpty + kEmpty);
    QCOMPARE(table()->currentRowIndex(), 0);
    QVERIFY(m_form.sink->contains(QStringLiteral("bogus")));
    m_form.sink->clear();
    run({"TABLE.value=1", "TABLE.address=0xZZ"});
    QVERIFY(m_form.sink->contains(QStringLiteral("0xZZ")));
    QCOMPARE(table()->cellText(0, Table::Address), QStringLiteral("0x00000000"));
}

void TestTable::tableFileRoundTrip()
{
    run({"TABLE.func=1", "TABLE.value=0x11", "TABLE.address=0x4000256C", "TABLE.registername=UARTE0.CONFIG",
         "TABLE.func=", "TABLE.value=8", "TABLE.registername=UARTE0.ENABLE", "TABLE.row=1", "TABLE.column=6",
         "TABLE.definevalue=go"});
    const QString saved = table()->referenceValue();
    const QString path = file(QStringLiteral("seq.qlnp"));
    QVERIFY(table()->saveFile(path));
    const QString text = readTextFile(path);
    QVERIFY(text.startsWith(QLatin1String("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<qlnpxml version=\"1.0\">\n")));
    QVERIFY(text.contains(QLatin1String("    <XmlFile>form.xml</XmlFile>\n")));
    QVERIFY(text.contains(QLatin1String("    <XmlVersion>2.0.0</XmlVersion>\n")));
    QVERIFY(text.contains(QStringLiteral("        <Table>\n            <define>TABLE</define>\n            <value>%1</value>\n")
                              .arg(saved)));

    run({"TABLE.deleteall=1"});
    QVERIFY(table()->loadFile(path, false));
    QCOMPARE(table()->referenceValue(), saved);
    QVERIFY(m_form.sink->errors.isEmpty());
    // The tooltips come back with the rows.
    QCOMPARE(table()->cell(1, Table::Value)->toolTip(), QStringLiteral("ENABLE[3..0]: Enabled (0b1000)\n"));
    QVERIFY(!table()->cell(0, Table::RegName)->toolTip().isEmpty());
    QVERIFY(!table()->cell(0, Table::RegName)->isEnabled());
    QCOMPARE(QDir::currentPath(), m_form.dir.path());
}

void TestTable::tableFileBadInput_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("expected");
    const QByteArray head = "<?xml version=\"1.0\"?>\n<qlnpxml version=\"1.0\"><XmlFile>form.xml</XmlFile>"
                            "<XmlVersion>2.0.0</XmlVersion><ActiveElements>";
    const QByteArray tail = "</ActiveElements></qlnpxml>\n";
    auto record = [](const QByteArray &value) {
        return "<Table><define>TABLE</define><value>" + value + "</value></Table>";
    };
    QTest::newRow("wrong root") << QByteArray("<?xml version=\"1.0\"?>\n<nvxmlcfg>" + record("A.B,1,2,3,4,5;") + "</nvxmlcfg>")
                                << "Warning: Wrong QLNP Version" << QString();
    QTest::newRow("truncated") << QByteArray(head + record("A.B,1,2,3,4,5;")).left(head.size() + 40)
                               << "Cannot read file" << QString();
    QTest::newRow("5 and 7 fields are skipped")
        << QByteArray(head + record("A.B,1,2,3,4;C.D,1,2,3,4,5,6;E.F,0x1,2,0x3,4,ok;") + tail) << QString()
        << "E.F,0x1,2,0x3,4,ok;";
    QTest::newRow("empty name skipped") << QByteArray(head + record(",1,2,3,4,5;") + tail) << QString() << QString();
    QTest::newRow("another description")
        << QByteArray("<?xml version=\"1.0\"?>\n<qlnpxml><XmlFile>other.xml</XmlFile><ActiveElements>" + record("A.B,1,2,3,4,5;") + tail)
        << "This table's qlnp was saved from another XML\nOriginal xml filename: other.xml\nCurrent xml filename: form.xml"
        << "A.B,1,2,3,4,5;";
    QTest::newRow("another version")
        << QByteArray("<?xml version=\"1.0\"?>\n<qlnpxml><XmlVersion>1.5.0</XmlVersion><ActiveElements>" + record("A.B,1,2,3,4,5;") + tail)
        << "Tables qlnp version: 1.5.0\nCurrent xml version: 2.0.0" << "A.B,1,2,3,4,5;";
    QTest::newRow("a define that names nothing")
        << QByteArray(head + "<Table><define>GONE</define><value>A.B,1,2,3,4,5;</value></Table>" + tail) << "No GONE found"
        << QString();
    QTest::newRow("first record not a table") << QByteArray(head + "<ComboBox><define>TABLE</define></ComboBox>" + record("A.B,1,2,3,4,5;") + tail)
                                              << QString() << QString();
}

void TestTable::tableFileBadInput()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QFETCH(QString, expected);
    const QString path = file(QStringLiteral("bad.qlnp"));
    QVERIFY(writeTextFile(path, content));
    table()->loadFile(path, false);
    if (message.isEmpty())
        QVERIFY2(m_form.sink->errors.isEmpty(), qPrintable(m_form.sink->errors.join('\n')));
    else
        QVERIFY2(m_form.sink->contains(message), qPrintable(m_form.sink->errors.join('\n')));
    QString reference = table()->referenceValue();
    // Only the rows the file brought: empty rows of the grid are left out.
    reference.remove(kEmpty);
    QCOMPARE(reference, expected);

    // A missing file is reported with the system's reason.
    m_form.sink->clear();
    QVERIFY(!table()->loadFile(file(QStringLiteral("missing.qlnp")), true));
    QVERIFY(m_form.sink->contains(QStringLiteral("Cannot open file ") + file(QStringLiteral("missing.qlnp")) + ":\n"));
}

void TestTable::loadAtAndInsert()
{
    const QString path = file(QStringLiteral("two.qlnp"));
    QVERIFY(TableFile::save(path, QStringLiteral("TABLE"), QStringLiteral("A.B,1,2,3,4,x;C.D,5,6,7,8,y;")));
    run({"TABLE.value=9", "TABLE.registername=E.F"});
    // Overwriting at the cursor (row 1), then inserting in front of row 0.
    QVERIFY(table()->loadFile(path, true));
    QCOMPARE(table()->referenceValue(), QStringLiteral("E.F,0x00000000,0x00,0x00000009,0,;A.B,1,2,3,4,x;C.D,5,6,7,8,y;"));
    run({"TABLE.row=0", "TABLE.insertmode=1"});
    QVERIFY(table()->loadFile(path, true));
    QCOMPARE(table()->referenceValue(),
             QStringLiteral("A.B,1,2,3,4,x;C.D,5,6,7,8,y;E.F,0x00000000,0x00,0x00000009,0,;A.B,1,2,3,4,x;C.D,5,6,7,8,y;"));
}

void TestTable::cExport()
{
    // Names that come from a register view bring the register's description.
    run({"RV.module=UARTE0", "RV.register=CONFIG", "TABLE.func=1", "TABLE.value=0x11", "TABLE.address=0x4000256C",
         "TABLE.registername=RV.registername", "RV.register=ENABLE", "TABLE.func=0", "TABLE.value=8",
         "TABLE.address=0x40002500", "TABLE.registername=RV.registername"});
    QCOMPARE(table()->cellText(0, Table::RegName), QStringLiteral("UARTE0.CONFIG"));
    table()->setTableValue(0, Table::Delay, QStringLiteral("10"));
    table()->setTableValue(1, Table::Comment, QStringLiteral("on"));
    const QString configTip = table()->cell(0, Table::RegName)->toolTip();
    QVERIFY(!configTip.isEmpty());
    const QString path = file(QStringLiteral("seq.c"));
    QVERIFY(table()->exportFile(path));
    const QString expected = QStringLiteral("void RegViewCode()\n{\n"
                                            "\t/*\n\t%1\n\t\tSTOP[4]: Two (0b1)\n\t\tPARITY[3..1]: Excluded (0b000)\n\t\tHWFC[0]: Enabled (0b1)\n\t\t*/\n"
                                            "  SetRegister(0x400025ec, 0x00000011);\n"
                                            "  Delay(10);\n"
                                            "\t/*\n\t%2\n\t\tENABLE[3..0]: Enabled (0b1000)\n\t\t*/\n"
                                            "  SetRegister(0x40002500, 0x00000008); /* on */\n"
                                            "}\n")
                                 .arg(QString(configTip).replace('\n', QStringLiteral("\n\t")),
                                      table()->cell(1, Table::RegName)->toolTip().replace('\n', QStringLiteral("\n\t")));
    QCOMPARE(readTextFile(path), expected);
}

void TestTable::configurationRoundTrip()
{
    run({"TABLE.value=0x11", "TABLE.address=0x4000256C", "TABLE.registername=UARTE0.CONFIG"});
    const QString saved = table()->referenceValue();
    const QString path = file(QStringLiteral("all.qlnp"));
    QVERIFY(m_form.window->saveConfiguration(path));
    QVERIFY(readTextFile(path).contains(QStringLiteral("<define>TABLE</define>\n            <value>%1</value>").arg(saved)));
    run({"TABLE.deleteall=1"});
    QVERIFY(m_form.window->load(path));
    QCOMPARE(table()->referenceValue().left(saved.size()), saved);
    QCOMPARE(table()->cell(0, Table::Value)->toolTip(),
             QStringLiteral("STOP[4]: Two (0b1)\nPARITY[3..1]: Excluded (0b000)\nHWFC[0]: Enabled (0b1)\n"));
    // The register view keeps nothing in the file.
    QVERIFY(readTextFile(path).contains(QLatin1String("<define>RV</define>\n            <value></value>")));
}

void TestTable::scriptKeywords()
{
    MainWindow *w = m_form.window;
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableValue(TABLE, 1, 3, 0x11)"), 1));
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableValue(TABLE, 1, 0, UARTE0.CONFIG)"), 2));
    QCOMPARE(table()->cellText(1, Table::Value), QStringLiteral("0x11"));
    QVERIFY(!table()->cell(1, Table::RegName)->isEnabled());
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableLine(TABLE, 2)"), 3));
    QCOMPARE(table()->currentRowIndex(), 2);
    QCOMPARE(table()->currentIndex().row(), 2);

    m_form.sink->clear();
    QVERIFY(w->execScriptLine(QStringLiteral("AssertTableValue(TABLE, 1, 0, uarte0.config)"), 4));
    QVERIFY(w->execScriptLine(QStringLiteral("AssertTableValue(TABLE, 1, 3, 17)"), 5));
    QVERIFY(w->execScriptLine(QStringLiteral("AssertTableValue(TABLE, 1, 3, 18)"), 6));
    QVERIFY(m_form.sink->contains(
        QStringLiteral("AssertTableValue(TABLE, 1, 0, UARTE0.CONFIG)<b> ==  uarte0.config) <font color=\"green\">OK</b></font><br>")));
    QVERIFY(m_form.sink->contains(
        QStringLiteral("AssertTableValue(TABLE, 1, 3, 0x11)<b> ==  17) <font color=\"green\">OK</b></font><br>")));
    QVERIFY(m_form.sink->contains(
        QStringLiteral("AssertTableValue(TABLE, 1, 3, 0x11)<b> ==  18) <font color=\"red\">FAILED</b></font><br>")));

    const QString path = file(QStringLiteral("script.qlnp"));
    QVERIFY(w->execScriptLine(QStringLiteral("SaveTable(TABLE, %1)").arg(path), 7));
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableValue(TABLE, 1, 3, 0x22)"), 8));
    QVERIFY(w->execScriptLine(QStringLiteral("LoadTable(TABLE, %1)").arg(path), 9));
    QCOMPARE(table()->cellText(1, Table::Value), QStringLiteral("0x11"));
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableLine(TABLE, 2)"), 10));
    QVERIFY(w->execScriptLine(QStringLiteral("LoadAtTable(TABLE, %1)").arg(path), 11));
    QCOMPARE(table()->cellText(3, Table::Value), QStringLiteral("0x11"));

    // An unknown table is reported and skipped; none of the keywords is
    // missing from this build.
    m_form.sink->clear();
    QVERIFY(w->execScriptLine(QStringLiteral("SetTableValue(NOTABLE, 1, 3, 1)"), 12));
    QVERIFY(m_form.sink->contains(QStringLiteral("NOTABLE")));
    for (const char *line : {"LoadTable(TABLE, nothere.qlnp)", "SetRegViewValue(RV, 5)", "AssertTableValue(TABLE, 0, 0, x)"}) {
        m_form.sink->clear();
        w->execScriptLine(QLatin1String(line), 13);
        QVERIFY2(!m_form.sink->contains(QStringLiteral("not available in this build")), line);
    }
}

void TestTable::moveRows()
{
    run({"TABLE.value=1", "TABLE.registername=A.A", "TABLE.value=2", "TABLE.registername=B.B", "TABLE.value=3",
         "TABLE.registername=C.C"});
    table()->moveRows({2}, 0);
    QCOMPARE(table()->cellText(0, Table::RegName), QStringLiteral("C.C"));
    QCOMPARE(table()->cellText(1, Table::RegName), QStringLiteral("A.A"));
    QCOMPARE(table()->cellText(2, Table::RegName), QStringLiteral("B.B"));
    table()->moveRows({0}, -1);
    QCOMPARE(table()->cellText(2, Table::RegName), QStringLiteral("C.C"));
    QCOMPARE(table()->tableModel()->rowCount(), 3);
    // The moved cells keep their tooltips (they are the same items).
    QCOMPARE(table()->cell(2, Table::Value)->toolTip(), QStringLiteral("Can't evaluate without valid register."));
}

void TestTable::copyPasteAndDelete()
{
    m_form.window->show();
    run({"TABLE.value=0x11", "TABLE.registername=UARTE0.CONFIG"});
    table()->setCurrentIndex(table()->tableModel()->index(0, 3));
    QTest::keySequence(table(), QKeySequence::Copy);
    table()->setCurrentIndex(table()->tableModel()->index(2, 3));
    QTest::keySequence(table(), QKeySequence::Paste);
    QCOMPARE(table()->cellText(2, Table::RegName), QStringLiteral("UARTE0.CONFIG"));
    QCOMPARE(table()->cell(2, Table::Value)->toolTip(), table()->cell(0, Table::Value)->toolTip());
    QTest::keyClick(table(), Qt::Key_Delete);
    QCOMPARE(table()->tableModel()->rowCount(), 2);
    m_form.window->hide();
}

void TestTable::editingReformats()
{
    m_form.window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_form.window));
    QStringList recorded;
    RecordingHook::setWriter([&recorded](const QString &line) { recorded << line; });
    run({"TABLE.value=0x11", "TABLE.registername=UARTE0.CONFIG"});
    const QModelIndex index = table()->tableModel()->index(0, 3);
    table()->setCurrentIndex(index);
    table()->edit(index);
    QLineEdit *editor = nullptr;
    for (QLineEdit *e : table()->findChildren<QLineEdit *>()) {
        if (e->isVisible() && e->geometry().intersects(table()->visualRect(index)))
            editor = e;
    }
    QVERIFY(editor);
    editor->setText(QStringLiteral("0x0E"));
    QTest::keyClick(editor, Qt::Key_Return);
    // The delegate closes its editor once the key press is through.
    QTRY_COMPARE(table()->cellText(0, Table::Value), QStringLiteral("0x0000000E"));
    RecordingHook::setWriter(nullptr);
    QCOMPARE(table()->cell(0, Table::Value)->toolTip(),
             QStringLiteral("STOP[4]: One (0b0)\nPARITY[3..1]: Included (0b111)\nHWFC[0]: Disabled (0b0)\n"));
    QCOMPARE(recorded.value(0), QStringLiteral("SetTableValue(TABLE, 0, 3, 14)"));
    // The next cell is open for editing.
    QCOMPARE(table()->currentIndex().column(), 4);
    m_form.window->hide();
}

void TestTable::columnLimitsAndHugeRowCount()
{
    auto *wide = m_form.element<Table>(QStringLiteral("WIDE"));
    // The 11th column is ignored; 70000 rows wrap to 16 bits.
    QCOMPARE(wide->columnCount(), 10);
    QCOMPARE(wide->tableModel()->columnCount(), 10);
    QCOMPARE(int(wide->numRows()), 70000 & 0xFFFF);
    QCOMPARE(wide->tableModel()->rowCount(), 70000 & 0xFFFF);
    // A column of width 0 is disabled whatever its kind.
    QVERIFY(!wide->tableModel()->item(0, 9)->isEnabled());
    QVERIFY(wide->tableModel()->item(0, 6)->isEnabled());
    QCOMPARE(wide->columnOf(Table::Math), 8);
}

void TestTable::exampleRegistersTab()
{
    // The bundled example: a register picked from the list, edited in the
    // view, added as a row, and the sequence sent (no board here: it walks
    // the rows without an answer).
    FormWindow example;
    example.path = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
    QVERIFY(example.open());
    DocumentTables &t = example.tables();
    auto *view = dynamic_cast<RegisterView *>(t.element(QStringLiteral("SEQ.VIEW")));
    auto *seq = dynamic_cast<Table *>(t.element(QStringLiteral("SEQ.TABLE")));
    QVERIFY(view && seq);
    // Picking a register in the list shows it.
    QCOMPARE(view->value(9), QString());
    QVERIFY(example.window->execScriptLine(QStringLiteral("SetItem(SEQ.REGS, 2)"), 1));
    QCOMPARE(view->value(9), QStringLiteral("UARTE0.BAUDRATE"));
    SetDef::run(QStringLiteral("SEQ.VIEW.register=UARTE0.CONFIG"), &t);
    QCOMPARE(view->value(9), QStringLiteral("UARTE0.CONFIG"));
    QVERIFY(example.window->execScriptLine(QStringLiteral("SetRegViewValue(SEQ.VIEW, 0x11, SEQ.TABLE)"), 2));
    QCOMPARE(view->word(), quint64(0x11));
    QVERIFY(example.window->execScriptLine(QStringLiteral("Clicked(SEQ.ADD)"), 3));
    QCOMPARE(seq->cellText(0, Table::RegName), QStringLiteral("UARTE0.CONFIG"));
    QCOMPARE(seq->cellText(0, Table::Address), QStringLiteral("0x4000256C"));
    QCOMPARE(seq->cellText(0, Table::Value), QStringLiteral("0x00000011"));
    QVERIFY(seq->cell(0, Table::Value)->toolTip().contains(QLatin1String("HWFC[0]: Enabled (0b1)")));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(example.window->execScriptLine(QStringLiteral("Clicked(SEQ.SEND)"), 4));
    QVERIFY(clock.elapsed() < 5000);
    QCOMPARE(seq->currentRowIndex(), 0);
}

QTEST_MAIN(TestTable)
#include "tst_table.moc"
