#include <QtTest>

#include "QuillonRun.h"

#include "config/Checksum.h"
#include "elements/CheckBox.h"
#include "elements/ComboBox.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "reader/DescriptionReader.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "tooling/GuiXmlWriter.h"

#include <QTemporaryDir>

// The text the form editor's writer gives for small forms of every kind,
// edits in the editor winning over the text as read, the document frame
// with its fallbacks and signature, and saving where nothing can be saved.
class TestGuiXmlWriter : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Dialogs::setQuiet(true); }
    void elementText_data();
    void elementText();
    void frameFallbacksAndSignature();
    void frameFromTheDocument();
    void editsWinOverTheTextAsRead();
    void movesFollowTheForm();
    void failedSaveLeavesNothingHalfWritten_data();
    void failedSaveLeavesNothingHalfWritten();

private:
    // Opens a description with `head` at the root and `body` in a vertical
    // root container.
    bool open(Document &document, const QByteArray &body, const QByteArray &head = QByteArray());
    // The written text with each line trimmed.
    static QString lines(GuiXmlWriter &writer);
    QTemporaryDir m_dir;
    int m_files = 0;
};

bool TestGuiXmlWriter::open(Document &document, const QByteArray &body, const QByteArray &head)
{
    const QString path = m_dir.filePath(QStringLiteral("form%1.xml").arg(++m_files));
    if (!writeTextFile(path, signedDescription(descriptionText(head + "<verticalcontainer>\n" + body
                                                              + "\n</verticalcontainer>"))))
        return false;
    return document.read(path, ReaderOptions());
}

QString TestGuiXmlWriter::lines(GuiXmlWriter &writer)
{
    QStringList out;
    for (const QString &line : writer.text().split(QLatin1Char('\n')))
        out << line.trimmed();
    return out.join(QLatin1Char('\n'));
}

void TestGuiXmlWriter::elementText_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("expected");

    // Containers.
    QTest::newRow("horizontalcontainer")
        << QByteArray("<horizontalcontainer label=\"Row\" size=\"200;30\"><text define=\"T\" label=\"x\"/></horizontalcontainer>")
        << QStringLiteral("<horizontalcontainer size=\"200;30\" label=\"Row\">\n<text define=\"T\" label=\"x\"/>\n</horizontalcontainer>");
    QTest::newRow("gridcontainer")
        << QByteArray("<gridcontainer columns=\"3\" pos=\"1;2\"><text define=\"T\" label=\"x\"/></gridcontainer>")
        << QStringLiteral("<gridcontainer columns=\"3\" pos=\"1;2\">\n<text define=\"T\" label=\"x\"/>\n</gridcontainer>");
    QTest::newRow("tabcontainer")
        << QByteArray("<tabcontainer resize=\"1\"><verticalcontainer label=\"P1\" desc=\"first\"/>"
                      "<verticalcontainer label=\"P2\"/></tabcontainer>")
        << QStringLiteral("<tabcontainer resize=\"1\">\n<verticalcontainer label=\"P1\" desc=\"first\"/>\n"
                          "<verticalcontainer label=\"P2\"/>\n</tabcontainer>");
    QTest::newRow("absolutecontainer")
        << QByteArray("<absolutecontainer size=\"300;200\"><led define=\"L\" data=\"A\" pos=\"10;20\"/></absolutecontainer>")
        << QStringLiteral("<absolutecontainer size=\"300;200\">\n<led define=\"L\" data=\"A\" pos=\"10;20\"/>\n</absolutecontainer>");
    QTest::newRow("groupcontainer")
        << QByteArray("<groupcontainer label=\"G\" color=\"1;2;3\" stretch=\"2\"/>")
        << QStringLiteral("<groupcontainer color=\"1;2;3\" label=\"G\" stretch=\"2\"/>");
    QTest::newRow("treecontainer")
        << QByteArray("<treecontainer headerlabels=\"a;b\"><branch label=\"B\" expand=\"1\"><text define=\"T\" label=\"x\"/>"
                      "</branch></treecontainer>")
        << QStringLiteral("<treecontainer headerlabels=\"a;b\">\n<branch label=\"B\" expand=\"1\">\n"
                          "<text define=\"T\" label=\"x\"/>\n</branch>\n</treecontainer>");

    // Value elements.
    QTest::newRow("radio with lockon")
        << QByteArray("<radio define=\"R\" default=\"1\"><radiobutton label=\"a\" value=\"0\" lockon=\"X\"/>"
                      "<radiobutton label=\"b\" value=\"1\"><action event=\"selected\" cmd=\"setDef\" data=\"Y\"/>"
                      "</radiobutton></radio>")
        << QStringLiteral("<radio define=\"R\" default=\"1\">\n<radiobutton label=\"a\" value=\"0\" lockon=\"X\"/>\n"
                          "<radiobutton label=\"b\" value=\"1\">\n<action event=\"selected\" cmd=\"setDef\" data=\"Y\"/>\n"
                          "</radiobutton>\n</radio>");
    QTest::newRow("combo items with and without a value")
        << QByteArray("<combo define=\"C\" default=\"2\"><item label=\"one\" value=\"1\" lockon=\"X;Y\"/>"
                      "<item label=\"two\" value=\"2\"><action event=\"selected\" cmd=\"setDef\" data=\"Z\"/></item>"
                      "<item label=\"plain\"/></combo>")
        << QStringLiteral("<combo define=\"C\" default=\"2\">\n<item label=\"one\" value=\"1\" lockon=\"X;Y\"/>\n"
                          "<item label=\"two\" value=\"2\">\n<action event=\"selected\" cmd=\"setDef\" data=\"Z\"/>\n"
                          "</item>\n<item label=\"plain\"/>\n</combo>");
    QTest::newRow("checkbox")
        << QByteArray("<checkbox define=\"CB\" label=\"On\" default=\"1\" lockon=\"Q\" tooltip=\"tip\"/>")
        << QStringLiteral("<checkbox define=\"CB\" label=\"On\" default=\"1\" lockon=\"Q\" tooltip=\"tip\"/>");
    QTest::newRow("spinbox")
        << QByteArray("<spinbox define=\"S\" range=\"0x0;0xFF\" suffix=\" ms\" step=\"2\" default=\"4\"/>")
        << QStringLiteral("<spinbox define=\"S\" range=\"0x0;0xFF\" suffix=\" ms\" step=\"2\" default=\"4\"/>");
    QTest::newRow("hexspinbox")
        << QByteArray("<hexspinbox define=\"H\" range=\"0;4095\" prefix=\"0x\"/>")
        << QStringLiteral("<hexspinbox define=\"H\" range=\"0;4095\" prefix=\"0x\"/>");
    QTest::newRow("doublespinbox")
        << QByteArray("<doublespinbox define=\"D\" range=\"-1.5;2.5\" default=\"0.5\"/>")
        << QStringLiteral("<doublespinbox define=\"D\" range=\"-1.5;2.5\" default=\"0.5\"/>");
    QTest::newRow("slider")
        << QByteArray("<slider define=\"SL\" range=\"0;10\" orientation=\"vertical\"/>")
        << QStringLiteral("<slider define=\"SL\" range=\"0;10\" orientation=\"vertical\"/>");
    QTest::newRow("edit") << QByteArray("<edit define=\"E\" default=\"abc\" readonly=\"1\"/>")
                          << QStringLiteral("<edit define=\"E\" default=\"abc\" readonly=\"1\"/>");
    QTest::newRow("editbox") << QByteArray("<editbox define=\"EB\" size=\"100;50\"/>")
                             << QStringLiteral("<editbox define=\"EB\" size=\"100;50\"/>");
    QTest::newRow("knob") << QByteArray("<knob define=\"K\" range=\"0;100\"/>")
                          << QStringLiteral("<knob define=\"K\" range=\"0;100\"/>");
    QTest::newRow("togglebutton")
        << QByteArray("<togglebutton define=\"TB\" label=\"T\" oncolor=\"0;255;0\" offcolor=\"255;0;0\"/>")
        << QStringLiteral("<togglebutton define=\"TB\" label=\"T\" oncolor=\"0;255;0\" offcolor=\"255;0;0\"/>");

    // Displays.
    QTest::newRow("math and hidden math")
        << QByteArray("<math define=\"M\" unit=\"V\" formula=\"A + 1\"/><math define=\"MH\" formula=\"2\" visible=\"false\"/>")
        << QStringLiteral("<math define=\"M\" formula=\"A + 1\" unit=\"V\"/>\n"
                          "<math define=\"MH\" formula=\"2\" visible=\"false\"/>");
    QTest::newRow("timer hidden")
        << QByteArray("<timer define=\"TI\" interval=\"250\" singleShot=\"1\" run=\"0\" visible=\"false\"/>")
        << QStringLiteral("<timer define=\"TI\" run=\"0\" singleShot=\"1\" interval=\"250\" visible=\"false\"/>");
    QTest::newRow("text") << QByteArray("<text define=\"TX\" label=\"Hello &amp; bye\" font=\"Sans,12\"/>")
                          << QStringLiteral("<text define=\"TX\" label=\"Hello &amp; bye\" font=\"Sans,12\"/>");
    QTest::newRow("led") << QByteArray("<led data=\"A\" bitmask=\"0x4\" oncolor=\"0;255;0\"/>")
                         << QStringLiteral("<led data=\"A\" bitmask=\"0x4\" oncolor=\"0;255;0\"/>");
    QTest::newRow("button")
        << QByteArray("<button define=\"B\" label=\"Go\"><action event=\"clicked\" cmd=\"setDef\" data=\"A=1\"/></button>")
        << QStringLiteral("<button define=\"B\" label=\"Go\">\n<action event=\"clicked\" cmd=\"setDef\" data=\"A=1\"/>\n</button>");
    QTest::newRow("dial") << QByteArray("<dial define=\"DI\" data=\"A\" min=\"0\" max=\"50\"/>")
                          << QStringLiteral("<dial define=\"DI\" data=\"A\" min=\"0\" max=\"50\"/>");
    QTest::newRow("thermo") << QByteArray("<thermo define=\"TH\" data=\"A\" alarmlevel=\"40\" alarmcolor=\"255;0;0\"/>")
                            << QStringLiteral("<thermo define=\"TH\" data=\"A\" alarmcolor=\"255;0;0\" alarmlevel=\"40\"/>");
    QTest::newRow("image") << QByteArray("<image define=\"IM\" file=\"none.png\"/>")
                           << QStringLiteral("<image define=\"IM\" file=\"none.png\"/>");
    QTest::newRow("plot curves")
        << QByteArray("<plot define=\"P\" maxX=\"500\" grid=\"1\"><curve label=\"a\" data=\"A\" color=\"255;0;0\"/>"
                      "<curve label=\"b\" data=\"B\"/></plot>")
        << QStringLiteral("<plot define=\"P\" maxX=\"500\" grid=\"1\">\n<curve label=\"a\" data=\"A\" color=\"255;0;0\"/>\n"
                          "<curve label=\"b\" data=\"B\"/>\n</plot>");
    QTest::newRow("table columns")
        << QByteArray("<table define=\"TA\" numrows=\"4\"><column label=\"Reg\" type=\"regname\" columnwidth=\"80\"/>"
                      "<column label=\"Val\" type=\"value\"/></table>")
        << QStringLiteral("<table define=\"TA\" numrows=\"4\">\n<column label=\"Reg\" type=\"regname\" columnwidth=\"80\"/>\n"
                          "<column label=\"Val\" type=\"value\"/>\n</table>");
    QTest::newRow("registerview") << QByteArray("<registerview define=\"RV\" readwritebuddy=\"TA\"/>")
                                  << QStringLiteral("<registerview define=\"RV\" readwritebuddy=\"TA\"/>");
    QTest::newRow("var") << QByteArray("<var define=\"V\" default=\"3\" address=\"0x20000000\" size=\"4\"/>")
                         << QStringLiteral("<var define=\"V\" default=\"3\" address=\"0x20000000\" size=\"4\"/>");
    QTest::newRow("communication task") << QByteArray("<communication data=\"01 02\" interval=\"100\" OnChanged=\"1\"/>")
                                        << QStringLiteral("<communication data=\"01 02\" interval=\"100\" OnChanged=\"1\"/>");
    QTest::newRow("svdtree") << QByteArray("<svdtree define=\"ST\" showValues=\"1\"/>")
                             << QStringLiteral("<svdtree define=\"ST\" showValues=\"1\"/>");
    QTest::newRow("stretch and line") << QByteArray("<stretch/><horizontalline/>")
                                      << QStringLiteral("<stretch/>\n<horizontalline/>");
    QTest::newRow("header group becomes attributes")
        << QByteArray("<header file=\"out.h\"><checkbox define=\"HC\"/></header>")
        << QStringLiteral("<checkbox define=\"HC\" header=\"out.h\"/>");
    QTest::newRow("false start condition is absent")
        << QByteArray("<text define=\"GONE\" label=\"g\" startcond=\"NOSUCH\"/><text define=\"KEPT\" label=\"k\"/>")
        << QStringLiteral("<verticalcontainer>\n<text define=\"KEPT\" label=\"k\"/>\n</verticalcontainer>");
}

void TestGuiXmlWriter::elementText()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, expected);
    Document document(nullptr);
    QVERIFY2(open(document, body), qPrintable(document.errorText()));
    GuiXmlWriter writer(document);
    const QString text = lines(writer);
    QVERIFY2(text.contains(expected), qPrintable(text));
}

void TestGuiXmlWriter::frameFallbacksAndSignature()
{
    Document document(nullptr);
    QVERIFY(open(document, "<text define=\"T\" label=\"x\"/>"));
    const QString path = m_dir.filePath(QStringLiteral("framed.xml"));
    GuiXmlWriter writer(document);
    QVERIFY2(writer.write(path), qPrintable(writer.errorText()));
    const QByteArray bytes = readTextFile(path).toUtf8();
    QVERIFY(bytes.contains("<version label=\"0.0.0\">"));
    QVERIFY(bytes.contains("<fwversion min=\"2.2.1\" max=\"*.*.*\"/>"));
    QVERIFY(!bytes.contains("<svd ") && !bytes.contains("<loadsaveallowed") && !bytes.contains("<ioconfig"));
    // Signed: the digest stands in the checksum element, not the zeros.
    const int open = bytes.indexOf("<checksum>") + 10;
    const QByteArray stated = bytes.mid(open, bytes.indexOf("</checksum>") - open);
    QCOMPARE(stated.size(), 64);
    QVERIFY(stated != QByteArray(64, '0'));
    QCOMPARE(QString::fromLatin1(stated), Checksum::computeChecksum(bytes));
}

void TestGuiXmlWriter::frameFromTheDocument()
{
    Document document(nullptr);
    QVERIFY(open(document, "<text define=\"T\" label=\"x\"/>",
                 "<version label=\"Board\">2.1</version><fwversion min=\"1.0.0\" max=\"3.0.0\"/>"
                 "<svd file=\"chip.svd\"/><ioconfig port=\"com3\" settings=\"115200\"/>"
                 "<loadsaveallowed value=\"0\"/><infosource forumurl=\"http://x\"/><terminal port=\"COM4\" settings=\"9600\"/>"
                 "<tooltipconfig value=\"3\"/>"));
    // The properties dialog edits the state; the header follows it.
    document.state().migrationFile = QStringLiteral("moves.txt");
    GuiXmlWriter writer(document);
    const QString text = lines(writer);
    QVERIFY2(text.contains(QStringLiteral("<version label=\"Board\">2.1<fwversion min=\"1.0.0\" max=\"3.0.0\"/>\n"
                                          "<svd file=\"chip.svd\"/>\n<migration file=\"moves.txt\"/>\n"
                                          "<ioconfig port=\"COM3\" settings=\"115200\"/>\n<loadsaveallowed value=\"0\"/>\n"
                                          "<infosource forumurl=\"http://x\"/>\n<terminal port=\"COM4\" settings=\"9600\"/>\n"
                                          "<tooltipconfig value=\"3\"/>\n<verticalcontainer>")),
             qPrintable(text));
}

void TestGuiXmlWriter::editsWinOverTheTextAsRead()
{
    Document document(nullptr);
    QVERIFY(open(document, "<checkbox define=\"A\" label=\"a\" pos=\"1;1\"><action event=\"checked\" cmd=\"setDef\" data=\"X=1\"/></checkbox>"
                           "<combo define=\"C\"><item label=\"one\" value=\"1\"/></combo>"
                           "<text define=\"GONE\" label=\"g\"/><var define=\"V1\"/>"));
    auto *box = dynamic_cast<CheckBox *>(document.tables().element(QStringLiteral("A")));
    QVERIFY(box);
    box->setProperty("Pos", QStringLiteral("5;6"));
    box->setProperty("my_default", QStringLiteral("1"));
    box->setText(QStringLiteral("renamed"));
    QVariantMap data;
    data.insert(QStringLiteral("0"), QStringList{QStringLiteral("unchecked_setDef"), QString(), QStringLiteral("X=0")});
    box->setProperty("data", data);
    auto *combo = dynamic_cast<ComboBox *>(document.tables().element(QStringLiteral("C")));
    QVERIFY(combo);
    combo->setProperty("itemText",
                       QStringList{QStringLiteral("1#$#one"), QStringLiteral("7#$#seven"), QStringLiteral("plain"),
                                   // From the items dialog: an override value, a hidden value.
                                   QStringLiteral("2#$#over#$#5#$#"), QStringLiteral("3#$#gone#$##$#3")});
    QVariantMap locks;
    locks.insert(QStringLiteral("7"), QStringList{QStringLiteral("L1"), QStringLiteral("L2")});
    combo->setProperty("locks", locks);
    // Removed and added in the editor.
    delete document.root()->findChild<QWidget *>(QStringLiteral("GONE"));
    Container *root = asContainer(document.root());
    QVERIFY(root);
    root->addCheckBox(QStringLiteral("new"), -1, QStringLiteral("NEWBOX"));
    auto *added = new DataClass(QStringLiteral("V2"));
    added->setProperty("my_default", QStringLiteral("9"));
    document.tables().addDataValue(added);

    GuiXmlWriter writer(document);
    const QString text = lines(writer);
    QVERIFY2(text.contains(QStringLiteral("<checkbox define=\"A\" label=\"renamed\" pos=\"5;6\" default=\"1\">\n"
                                          "<action event=\"unchecked\" cmd=\"setDef\" data=\"X=0\"/>\n</checkbox>")),
             qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("<combo define=\"C\">\n<item label=\"one\" value=\"1\"/>\n"
                                          "<item label=\"seven\" value=\"7\" lockon=\"L1;L2\"/>\n"
                                          "<item label=\"plain\"/>\n<item label=\"over\" override=\"5\"/>\n"
                                          "<item label=\"gone\" hide=\"3\"/>\n</combo>")),
             qPrintable(text));
    QVERIFY(!text.contains(QLatin1String("GONE")));
    QVERIFY2(text.contains(QStringLiteral("<var define=\"V1\"/>")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("<checkbox define=\"NEWBOX\" label=\"new\"/>\n<var define=\"V2\" default=\"9\"/>\n"
                                          "</verticalcontainer>")),
             qPrintable(text));
}

void TestGuiXmlWriter::movesFollowTheForm()
{
    // Elements take the order they stand in now; a record without a place
    // in the form keeps its own.
    Document document(nullptr);
    QVERIFY(open(document, "<spinbox define=\"A\" svd=\"0\"/><var define=\"R\"/><spinbox define=\"B\" svd=\"0\"/>"
                           "<horizontalcontainer label=\"H\"><spinbox define=\"C\" svd=\"0\"/></horizontalcontainer>"));
    Container *root = asContainer(document.root());
    QWidget *c = document.root()->findChild<QWidget *>(QStringLiteral("C"));
    QWidget *b = document.root()->findChild<QWidget *>(QStringLiteral("B"));
    QVERIFY(root && b && c);
    // C out of its box to the front of the root, B behind the box.
    asContainer(c->parentWidget())->releaseChild(c);
    root->addWidget(c, QString(), 0);
    root->releaseChild(b);
    root->addWidget(b, QString(), -1);

    GuiXmlWriter writer(document);
    const QString text = lines(writer);
    QStringList order;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        for (const char *name : {"\"A\"", "\"B\"", "\"C\"", "\"R\"", "\"H\""}) {
            if (line.contains(QLatin1String(name)))
                order << QString::fromLatin1(name).mid(1, 1);
        }
    }
    QCOMPARE(order, QStringList({"C", "R", "A", "H", "B"}));
}

void TestGuiXmlWriter::failedSaveLeavesNothingHalfWritten_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("parent is a file") << QStringLiteral("plain.txt/out.xml");
    QTest::newRow("missing folder") << QStringLiteral("no/such/folder/out.xml");
    QTest::newRow("target is a folder") << QStringLiteral("afolder");
    QTest::newRow("no name") << QString();
}

void TestGuiXmlWriter::failedSaveLeavesNothingHalfWritten()
{
    QFETCH(QString, target);
    QVERIFY(writeTextFile(m_dir.filePath(QStringLiteral("plain.txt")), "former"));
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("afolder")));
    Document document(nullptr);
    QVERIFY(open(document, "<text define=\"T\" label=\"x\"/>"));
    const QStringList before = QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    GuiXmlWriter writer(document);
    QVERIFY(!writer.write(target.isEmpty() ? target : m_dir.filePath(target)));
    QVERIFY(!writer.errorText().isEmpty());
    // Nothing new beside the form, and what stood there stands.
    QCOMPARE(QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
    QCOMPARE(readTextFile(m_dir.filePath(QStringLiteral("plain.txt"))), QStringLiteral("former"));
    QVERIFY(QFileInfo(m_dir.filePath(QStringLiteral("afolder"))).isDir());
}

QTEST_MAIN(TestGuiXmlWriter)
#include "tst_guixmlwriter.moc"
