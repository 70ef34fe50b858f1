#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/GridWidget.h"
#include "elements/TabWidget.h"
#include "elements/TreeWidget.h"
#include "elements/VerticalWidget.h"
#include "reader/DescriptionReader.h"
#include "shell/AppVersion.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QTemporaryDir>
#include <sys/stat.h>

// The streaming reader: how a read starts and ends, the root level, the
// dispatch of children, includes and the messages.
class TestDescriptionReader : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_dir = new QTemporaryDir;
        m_tables = new DocumentTables;
        m_sink = new RecordingSink;
    }

    void cleanup()
    {
        delete m_root;
        m_root = nullptr;
        delete m_reader;
        m_reader = nullptr;
        delete m_sink;
        delete m_tables;
        delete m_dir;
    }

    void brokenInputFails_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty file") << QByteArray();
        QTest::newRow("not XML") << QByteArray("just some words\n");
        QTest::newRow("binary") << QByteArray("\x7f" "ELF\x02\x01\x01\x00\x00\x00\xff\xfe", 12);
        QTest::newRow("truncated") << descriptionText("<verticalcontainer><verticalcontainer>").left(150);
        QTest::newRow("declaration only") << QByteArray("<?xml version=\"1.0\"?>\n");
        QTest::newRow("unclosed tag") << descriptionText("<verticalcontainer><text label=\"x\"></verticalcontainer>");
    }

    void brokenInputFails()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!read(text, ReaderOptions(), false));
        // The reason names the file and a position to go to.
        const QString error = m_reader->errorString();
        QVERIFY2(error.contains(QLatin1String("$xmlopen$")), qPrintable(error));
        QVERIFY(error.contains(QLatin1String("line ")));
        QVERIFY(m_root == nullptr);
    }

    void versionRules_data()
    {
        const QByteArray newer = QStringLiteral("%1.%2.%3").arg(AppVersion::major()).arg(AppVersion::minor() + 1).arg(0).toLatin1();
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("message");
        QTest::newRow("V1") << QByteArray("0.9.9") << false
                            << "Error: The selected configuration is supported by Quillon V1.x only.\nPlease refer to the Norvane homepage to download Quillon V1.x.";
        QTest::newRow("padded") << QByteArray("1.0") << true << QString();
        QTest::newRow("newer") << newer << false
                               << QStringLiteral("requires minimum Quillon %1\nCurrent version of Quillon is %2\n")
                                      .arg(QString::fromLatin1(newer), AppVersion::text());
    }

    void versionRules()
    {
        QFETCH(QByteArray, version);
        QFETCH(bool, accepted);
        QFETCH(QString, message);
        QCOMPARE(read(descriptionText("<verticalcontainer/>", version)), accepted);
        if (!message.isEmpty()) {
            QVERIFY2(m_sink->contains(message), qPrintable(m_sink->errors.join('|')));
            if (version != "0.9.9") {
                QVERIFY(m_sink->errors.join('|').startsWith(QLatin1String("Error: Wrong version of Quillon.\n")));
                QVERIFY(m_reader->errorString().startsWith(QLatin1String("Error: Wrong Version of Quillon.\n")));
            }
        }
    }

    void homePageIgnoresVersion()
    {
        const QByteArray text = "<?xml version=\"1.0\"?>\n<index version=\"99.0.0\">\n<verticalcontainer/>\n</index>\n";
        ReaderOptions options;
        options.homePage = m_dir->filePath(QStringLiteral("form.xml"));
        QVERIFY(read(text, options, false));
        QVERIFY(qobject_cast<VerticalWidget *>(m_root));
        QVERIFY(!m_sink->contains(QStringLiteral("Wrong version")));
    }

    void checksumChecked_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("sign");
        QTest::addColumn<bool>("manipulated");
        const QByteArray good = descriptionText("<verticalcontainer label=\"a b\"/>");
        QTest::newRow("signed") << good << true << false;
        QTest::newRow("placeholder") << good << false << true;
        QByteArray edited = signedDescription(good);
        edited.replace("a b", "a  b");
        QTest::newRow("blank changed after signing") << edited << false << true;
        QByteArray declaration = signedDescription(good);
        declaration.replace("encoding=\"UTF-8\"", "encoding=\"utf-8\"");
        QTest::newRow("declaration is outside the digest") << declaration << false << false;
        QByteArray crlf = signedDescription(good);
        crlf.replace("\n", "\r\n");
        QTest::newRow("CRLF line ends keep the digest") << crlf << false << false;
        QTest::newRow("no checksum element")
            << QByteArray("<?xml version=\"1.0\"?>\n<nvxmlcfg version=\"2.0\">\n<verticalcontainer/>\n</nvxmlcfg>\n")
            << false << true;
    }

    void checksumChecked()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, sign);
        QFETCH(bool, manipulated);
        // A digest that does not match is reported; the form is built anyway.
        QVERIFY(read(text, ReaderOptions(), sign));
        QVERIFY(m_root);
        QCOMPARE(m_sink->contains(QStringLiteral("has been manipulated\nDo not use it!")), manipulated);
    }

    void rootLevelNeedsContainer()
    {
        QVERIFY(!read(descriptionText("<foo/>\n<verticalcontainer/>")));
        QVERIFY(m_sink->errors.contains(QStringLiteral("Cannot read file %1\nNot starting with a container type!")
                                            .arg(m_dir->filePath(QStringLiteral("form.xml")))));
        m_sink->clear();
        QVERIFY(!read(descriptionText("<svd file=\"x.svd\"/>")));
        QVERIFY(m_sink->contains(QStringLiteral("Not starting with a container type!")));
    }

    void onlyFirstRootContainerRead()
    {
        QVERIFY(read(descriptionText("<verticalcontainer label=\"first\"/>\n<tabcontainer label=\"second\"/>\n<svd file=\"late.svd\"/>")));
        QVERIFY(qobject_cast<VerticalWidget *>(m_root));
        QCOMPARE(m_root->objectName(), QStringLiteral("VERT_ROOT"));
        QVERIFY(!m_tables->containers.contains(QStringLiteral("TAB_ROOT")));
        QVERIFY(m_reader->state().svdName.isEmpty());
    }

    void rootLevelSettings()
    {
        QVERIFY(read(descriptionText("<version label=\"Release\"> 3.1.4 </version>\n"
                         "<fwversion min=\"1.2\" max=\"1.9\"/>\n"
                         "<infosource forumurl=\"https://forum.example\" tooltip=\"Ask\"/>\n"
                         "<ioconfig port=\" com3 \" settings=\"115200,n,8,1\"/>\n"
                         "<iocheck mode=\"2\"/>\n"
                         "<loadsaveallowed value=\"0\"/>\n"
                         "<tabcontainer/>")));
        const DocumentState &s = m_reader->state();
        QCOMPARE(s.versionLabel, QStringLiteral("Release"));
        QCOMPARE(s.versionText, QStringLiteral("3.1.4"));
        QCOMPARE(s.fwVersionMin, QStringLiteral("1.2"));
        QCOMPARE(s.forumUrl, QStringLiteral("https://forum.example"));
        QCOMPARE(s.ioPort, QStringLiteral("COM3"));
        QCOMPARE(s.iocheckMode, quint16(2));
        QVERIFY(!s.loadSaveAllowed);
        QVERIFY(qobject_cast<TabWidget *>(m_root));
    }

    void missingFilesReported()
    {
        writeTextFile(m_dir->filePath(QStringLiteral("present.svd")), "<device/>");
        QVERIFY(read(descriptionText("<svd file=\"present.svd\"/><migration file=\"gone.mig\"/><disclaimer file=\"gone.txt\"/>"
                         "<verticalcontainer><svd file=\"absent.svd\"/></verticalcontainer>")));
        QCOMPARE(m_sink->console.filter(QStringLiteral("SVD file is missing.")).size(), 1);
        QVERIFY(m_sink->contains(QStringLiteral("Migration file is missing.")));
        QVERIFY(m_sink->contains(QStringLiteral("Disclaimer file is missing.")));
        // The name stands even when the file is missing: the SVD step reports it.
        QCOMPARE(m_reader->state().svdName, QStringLiteral("absent.svd"));
        QCOMPARE(m_reader->state().disclaimerName, QStringLiteral("disclaimer.txt"));
    }

    void fittedTabPagesSizeOnlyByTheShownPage()
    {
        // A short first page and a tall second one: with resize, the tab
        // container needs only the height of the page shown (what a scroll
        // area around the form goes by), from the start and after each
        // change of page.
        QByteArray tall;
        for (int i = 0; i < 30; ++i)
            tall += "<edit define=\"E" + QByteArray::number(i) + "\" svd=\"0\"/>";
        QVERIFY(read(descriptionText("<tabcontainer resize=\"1\"><verticalcontainer label=\"Short\"><edit define=\"S\" svd=\"0\"/></verticalcontainer>"
                                     "<verticalcontainer label=\"Tall\">" + tall + "</verticalcontainer></tabcontainer>")));
        auto *tab = qobject_cast<TabWidget *>(m_root);
        QVERIFY(tab);
        const int shortHeight = tab->minimumSizeHint().height();
        QVERIFY2(shortHeight < tab->widget(1)->minimumSizeHint().height(), qPrintable(QString::number(shortHeight)));
        tab->setCurrentIndex(1);
        QVERIFY(tab->minimumSizeHint().height() > shortHeight);
        tab->setCurrentIndex(0);
        QCOMPARE(tab->minimumSizeHint().height(), shortHeight);
    }

    void containerNamesAndGrid()
    {
        QVERIFY(read(descriptionText("<tabcontainer>"
                         "  <gridcontainer label=\"Grid\" columns=\"3\">"
                         "    <horizontalline/><horizontalline/><horizontalline/><horizontalline/>"
                         "  </gridcontainer>"
                         "  <verticalcontainer label=\"V\" stretch=\"1\"><horizontalline/></verticalcontainer>"
                         "  <treecontainer label=\"T\" columnwidths=\"100;x\"><branch label=\"b\" expand=\"1\"/></treecontainer>"
                         "</tabcontainer>")));
        auto *tab = qobject_cast<TabWidget *>(m_root);
        QVERIFY(tab);
        QCOMPARE(tab->count(), 3);
        QCOMPARE(tab->tabText(0), QStringLiteral("Grid"));
        // Names count the containers made so far.
        QCOMPARE(tab->widget(0)->objectName(), QStringLiteral("GRID_1"));
        QCOMPARE(tab->widget(1)->objectName(), QStringLiteral("VERT_2"));
        QCOMPARE(tab->widget(2)->objectName(), QStringLiteral("TREE_3"));
        QVERIFY(m_tables->containers.contains(QStringLiteral("BRANCH_4")));

        // Three columns: the fourth child starts the second row.
        auto *grid = qobject_cast<GridWidget *>(tab->widget(0));
        QGridLayout *layout = grid->gridLayout();
        int row = -1, column = -1, rs = 0, cs = 0;
        layout->getItemPosition(3, &row, &column, &rs, &cs);
        QCOMPARE(row, 1);
        QCOMPARE(column, 0);

        // A stretch above and below the children keeps them together.
        auto *v = qobject_cast<VerticalWidget *>(tab->widget(1));
        QBoxLayout *box = v->boxLayout();
        QCOMPARE(box->count(), 3);
        QVERIFY(box->itemAt(0)->spacerItem());
        QVERIFY(box->itemAt(1)->widget());
        QVERIFY(box->itemAt(2)->spacerItem());

        QVERIFY(m_sink->contains(QStringLiteral("\"columnwidths\" attribute invalid.")));
    }

    void unknownChildrenSkipped()
    {
        QVERIFY(read(descriptionText("<verticalcontainer>"
                         "  <mystery><verticalcontainer label=\"hidden\"/></mystery>"
                         "  <verticalcontainer label=\"seen\"/>"
                         "</verticalcontainer>")));
        QCOMPARE(m_tables->containers.size(), 2);
        QVERIFY(m_sink->console.isEmpty());
        QVERIFY(m_sink->errors.isEmpty());
    }

    void radiobuttonOutsideRadioStops()
    {
        QVERIFY(!read(descriptionText("<verticalcontainer><radiobutton label=\"x\"/><verticalcontainer/></verticalcontainer>")));
        QVERIFY(m_sink->contains(QStringLiteral("Found &lt;radiobutton&gt; element that's not within a &lt;radio&gt; element")));
        QVERIFY(m_reader->errorString().startsWith(QLatin1String("Found <radiobutton> element that's not within a <radio> element at line nr.: ")));
        // The stream stopped: the container after it was never made.
        QCOMPARE(m_tables->containers.size(), 1);
    }

    void startConditions()
    {
        const QByteArray text = descriptionText("<verticalcontainer>"
                                    "  <verticalcontainer label=\"a\" startcond=\"board==dk\"/>"
                                    "  <verticalcontainer label=\"b\" startcond=\"board!=x\"/>"
                                    "  <verticalcontainer label=\"c\" startcond=\"board==other\"/>"
                                    "</verticalcontainer>");
        QVERIFY(read(text));
        QCOMPARE(m_tables->containers.size(), 1);

        ReaderOptions options;
        options.defines = QStringLiteral("board=dk");
        QVERIFY(read(text, options));
        QStringList labels;
        for (QWidget *w : m_root->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            labels << w->property("my_label").toString();
        labels.removeAll(QString());
        QCOMPARE(labels, (QStringList{"a", "b"}));
    }

    void includeSubstitutesBeforeParsing()
    {
        writeFile(QStringLiteral("part.xml"),
                  descriptionText("<$kind$ label=\"$title$\"/>"));
        QVERIFY(read(descriptionText("<tabcontainer><include kind=\"verticalcontainer\" title=\"From include\"> part.xml </include></tabcontainer>")));
        auto *tab = qobject_cast<TabWidget *>(m_root);
        QCOMPARE(tab->count(), 1);
        QVERIFY(qobject_cast<VerticalWidget *>(tab->widget(0)));
        QCOMPARE(tab->tabText(0), QStringLiteral("From include"));
        QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join('|')));
    }

    void includeFoundOnIncludePath()
    {
        writeFile(QStringLiteral("lib/common.xml"), descriptionText("<gridcontainer label=\"common\"/>"));
        ReaderOptions options;
        options.includePaths = QStringLiteral("nowhere;lib");
        QVERIFY(read(descriptionText("<tabcontainer><include>common.xml</include></tabcontainer>"), options));
        QCOMPARE(qobject_cast<TabWidget *>(m_root)->count(), 1);
    }

    void includesThatFail_data()
    {
        QTest::addColumn<QString>("include");   // "pipe": a pipe in the test's folder
        QTest::addColumn<QString>("reason");    // in the error; %1: the included file
        QTest::newRow("missing") << "gone.xml" << "Cannot open file %1";
        // A device never ends; opening a pipe without a writer never returns.
        QTest::newRow("device") << "/dev/zero" << "Cannot open file %1:\nNot a regular file.";
        QTest::newRow("pipe") << "pipe" << "Cannot open file %1:\nNot a regular file.";
        QTest::newRow("cycle") << "a.xml" << "includes itself";
    }

    void includesThatFail()
    {
        QFETCH(QString, include);
        QFETCH(QString, reason);
        if (include == QLatin1String("pipe")) {
            include = m_dir->filePath(QStringLiteral("pipe.xml"));
            QVERIFY(::mkfifo(QFile::encodeName(include).constData(), 0600) == 0);
        }
        writeFile(QStringLiteral("a.xml"), descriptionText("<include>b.xml</include>"));
        writeFile(QStringLiteral("b.xml"), descriptionText("<include>a.xml</include>"));
        QVERIFY(!read(descriptionText("<tabcontainer><include>" + include.toUtf8() + "</include><verticalcontainer/></tabcontainer>")));
        const QString error = m_reader->errorString();
        const QString path = QFileInfo(include).isAbsolute() ? include : m_dir->filePath(include);
        QVERIFY2(reason.startsWith(QLatin1String("Cannot")) ? error.startsWith(reason.arg(path)) : error.contains(reason),
                 qPrintable(error));
    }

    void includeFanOutLimited()
    {
        // Seven levels of files that each include the next four times: 21,844
        // reads, more than the 10,000 allowed. Without the limit a few more
        // levels make a description that is never done.
        const int levels = 7;
        writeFile(QStringLiteral("level%1.xml").arg(levels), descriptionText("<text label=\"leaf\"/>"));
        for (int level = levels - 1; level >= 1; --level) {
            const QByteArray next = "<include>level" + QByteArray::number(level + 1) + ".xml</include>";
            writeFile(QStringLiteral("level%1.xml").arg(level), descriptionText(next + next + next + next));
        }
        QVERIFY(!read(descriptionText("<verticalcontainer><include>level1.xml</include><include>level1.xml</include>"
                          "<include>level1.xml</include><include>level1.xml</include></verticalcontainer>")));
        QVERIFY2(m_reader->errorString().startsWith(QLatin1String("Cannot read file ")), qPrintable(m_reader->errorString()));
        QVERIFY(m_reader->errorString().contains(QLatin1String("More than 10000 includes in one description.")));
    }

    void nestingDepthLimited_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("deep but allowed") << 256 << true;
        QTest::newRow("one level more") << 257 << false;
        // Overflowed the stack before the limit.
        QTest::newRow("100,000 levels") << 100000 << false;
    }

    void nestingDepthLimited()
    {
        QFETCH(int, depth);
        QFETCH(bool, accepted);
        QByteArray body;
        for (int i = 0; i < depth; ++i)
            body += "<verticalcontainer>";
        body += "<text label=\"innermost\"/>";
        for (int i = 0; i < depth; ++i)
            body += "</verticalcontainer>";
        QCOMPARE(read(descriptionText(body)), accepted);
        if (!accepted) {
            QVERIFY2(m_reader->errorString().startsWith(QLatin1String("Elements are nested more than 256 levels deep.")),
                     qPrintable(m_reader->errorString()));
        }
    }

    void messagesCarryPosition()
    {
        QVERIFY(read(descriptionText("<verticalcontainer>\n<verticalcontainer color=\"1;2\"/>\n</verticalcontainer>")));
        const QStringList lines = m_sink->console.filter(QStringLiteral("\"color\" attribute invalid."));
        QCOMPARE(lines.size(), 1);
        const QString path = m_dir->filePath(QStringLiteral("form.xml")).replace(':', QLatin1String("$$$COLON$$$"));
        QVERIFY2(lines.first().startsWith(QLatin1String("<b><font color=\"red\"> XML Error: </font>\"color\" attribute invalid. <a href=\"VERT_1\">VERT_1</a> (<b><a href=\"$xmlopen$")
                                          + path + QLatin1String("$-n5$-c")),
                 qPrintable(lines.first()));
        QVERIFY(lines.first().contains(QLatin1String("\">file</a> line 5, column ")));
    }

    void varRecords()
    {
        QVERIFY(read(descriptionText("<verticalcontainer>"
                         "  <var define=\"speed\" default=\"0x10\"/>"
                         "  <var define=\"ratio\" datatype=\"FLOAT\" default=\"2.5\"/>"
                         "  <var define=\"counter\" address=\"0x20000010\" size=\"2\" interval=\"100\" readonly=\"1\" readonaccess=\"\"/>"
                         "  <var define=\"block\" address=\"0x20000100\" size=\"16\" trigger=\"busy\"/>"
                         "  <var define=\"speed\"/>"
                         "  <var default=\"1\"/>"
                         "</verticalcontainer>")));
        DataClass *speed = m_tables->dataValue(QStringLiteral("speed"));
        QVERIFY(speed);
        QVERIFY(!speed->target());
        DataClass *ratio = m_tables->dataValue(QStringLiteral("ratio"));
        QCOMPARE(ratio->datatype, int(DataClass::Float));
        DataClass *counter = m_tables->dataValue(QStringLiteral("counter"));
        QVERIFY(counter->target());
        QCOMPARE(counter->target()->address, 0x20000010u);
        QCOMPARE(counter->target()->size, 2u);
        QCOMPARE(counter->target()->interval, 100u);
        QCOMPARE(counter->target()->readOnly, quint8(1));
        // A polled variable is valid only after its first read.
        QCOMPARE(counter->target()->valid, quint8(0));
        QVERIFY(counter->readOnAccess);
        DataClass *block = m_tables->dataValue(QStringLiteral("block"));
        QCOMPARE(block->buffer().size(), 16);
        QVERIFY(block->triggered);
        QCOMPARE(block->nextDefine, QStringLiteral("busy"));
        QVERIFY(m_sink->contains(QStringLiteral("Duplicate define Var")));
        QVERIFY(m_sink->contains(QStringLiteral("Var without define is not allowed: ")));
    }

private:
    bool read(const QByteArray &text, const ReaderOptions &options = ReaderOptions(), bool sign = true);
    QString writeFile(const QString &name, const QByteArray &text, bool sign = true);

    QTemporaryDir *m_dir = nullptr;
    DocumentTables *m_tables = nullptr;
    DescriptionReader *m_reader = nullptr;
    RecordingSink *m_sink = nullptr;
    QWidget *m_root = nullptr;
};

QString TestDescriptionReader::writeFile(const QString &name, const QByteArray &text, bool sign)
{
    const QString path = m_dir->filePath(name);
    writeTextFile(path, sign ? signedDescription(text) : text);
    return path;
}

bool TestDescriptionReader::read(const QByteArray &text, const ReaderOptions &options, bool sign)
{
    const QString path = writeFile(QStringLiteral("form.xml"), text, sign);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    delete m_reader;
    m_reader = new DescriptionReader(*m_tables, options);
    const bool ok = m_reader->read(&file, path);
    delete m_root;
    m_root = m_reader->takeRootWidget();
    return ok;
}

QTEST_MAIN(TestDescriptionReader)
#include "tst_descriptionreader.moc"
