#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "shell/Console.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "FakeHid.h"
#include "device/StickLink.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QTabWidget>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QTemporaryDir>

static StartOptions quietOptions()
{
    StartOptions o;
    o.quiet = true;
    return o;
}

// The document lifecycle as the window runs it: home page, open, the
// modified question and the close modes, drops, saving a configuration.
class TestMainWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QVERIFY(writeTextFile(m_dir.filePath(QStringLiteral("mini.svd")), miniSvd("<field><name>F</name><lsb>0</lsb><msb>3</msb></field>")));
    }

    void homePageMissing()
    {
        MainWindow window(quietOptions());
        QCOMPARE(window.windowTitle(), QStringLiteral("Quillon [*]"));
        QVERIFY(!window.isWindowModified());
        // The test binary has no scripts/index.xml beside it.
        QVERIFY2(window.console()->plainText().contains(QLatin1String("No index.xml found in")),
                 qPrintable(window.console()->plainText()));
    }

    void openSetsTitleAndReservedDefines()
    {
        const QString path = writeDescription(QStringLiteral("open.xml"), "<tabcontainer><verticalcontainer label=\"Page\"/></tabcontainer>");
        MainWindow window(quietOptions());
        QVERIFY(window.open(path));
        QCOMPARE(window.windowTitle(), QStringLiteral("Quillon ") + QDir::toNativeSeparators(path) + QStringLiteral("[*]"));
        for (const char *name : {"dummy_define", "$ADDRESS$", "$VALUE$", "$FUNC$"})
            QVERIFY2(window.dataValue(QLatin1String(name)), name);
        QVERIFY(!window.console()->plainText().contains(QLatin1String("manipulated")));
        QVERIFY(!window.console()->plainText().contains(QLatin1String("Not found in svd file")));
        // The working folder follows the document.
        QCOMPARE(QDir::currentPath(), m_dir.path());
    }

    void goingToAnElement_data()
    {
        QTest::addColumn<QString>("define");
        QTest::addColumn<QStringList>("pages");
        QTest::addColumn<bool>("inTree");
        QTest::newRow("first page") << "A" << QStringList{"First"} << false;
        QTest::newRow("another page") << "B" << QStringList{"Second"} << false;
        QTest::newRow("nested tabs") << "C" << QStringList{"Third", "Inner 2"} << false;
        QTest::newRow("folded tree row") << "D" << QStringList{"Third", "Inner 1"} << true;
        QTest::newRow("radio group") << "E" << QStringList{"Second"} << false;
    }

    void goingToAnElement()
    {
        QFETCH(QString, define);
        QFETCH(QStringList, pages);
        QFETCH(bool, inTree);
        const QString path = writeDescription(QStringLiteral("pages.xml"), R"(
<tabcontainer>
 <verticalcontainer label="First"><spinbox define="A" svd="0"/></verticalcontainer>
 <verticalcontainer label="Second"><spinbox define="B" svd="0"/>
  <radio define="E" svd="0"><radiobutton label="x" value="0"/><radiobutton label="y" value="3"/></radio>
 </verticalcontainer>
 <verticalcontainer label="Third">
  <tabcontainer>
   <verticalcontainer label="Inner 1">
    <treecontainer><branch label="Top"><branch label="Deeper"><spinbox define="D" svd="0"/></branch></branch></treecontainer>
   </verticalcontainer>
   <verticalcontainer label="Inner 2"><spinbox define="C" svd="0"/></verticalcontainer>
  </tabcontainer>
 </verticalcontainer>
</tabcontainer>)");
        MainWindow window(quietOptions());
        QVERIFY(window.open(path));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        ActiveElement *element = window.document()->tables().element(define);
        QVERIFY(element);
        // Page one is the current one, and the radio group's second button
        // is the checked one.
        QVERIFY(window.execScriptLine(QStringLiteral("SetRbItem(E, 1)"), 1));
        for (QWidget *w = window.document()->tables().element(QStringLiteral("B"))->widget(); w; w = w->parentWidget()) {
            if (auto *tabs = qobject_cast<QTabWidget *>(w))
                tabs->setCurrentIndex(0);
        }
        window.on_anchorClicked(define);
        // The focus is on the element; a radio group gives it to its checked
        // button.
        QWidget *focus = QApplication::focusWidget();
        QVERIFY(focus);
        QVERIFY2(focus->isVisible(), qPrintable(define));
        QStringList shown;
        for (QWidget *w = focus; w; w = w->parentWidget()) {
            if (auto *tabs = qobject_cast<QTabWidget *>(w))
                shown.prepend(tabs->tabText(tabs->currentIndex()));
        }
        QCOMPARE(shown, pages);
        if (inTree) {
            auto *tree = element->widget()->parentWidget()->parentWidget();
            QVERIFY(qobject_cast<QTreeWidget *>(tree));
            for (QTreeWidgetItemIterator it(static_cast<QTreeWidget *>(tree)); *it; ++it)
                QVERIFY2((*it)->childCount() == 0 || (*it)->isExpanded(), qPrintable((*it)->text(0)));
        }
        if (define == QLatin1String("E"))
            QCOMPARE(qobject_cast<QAbstractButton *>(focus)->text(), QStringLiteral("y"));
        else
            QVERIFY(focus == element->widget() || element->widget()->isAncestorOf(focus));
    }

    void openFailureReturnsToHome()
    {
        const QString broken = m_dir.filePath(QStringLiteral("broken.xml"));
        writeTextFile(broken, "<nvxmlcfg version=\"2.0\"><tabcontainer>");
        MainWindow window(quietOptions());
        QVERIFY(!window.open(broken));
        const QString text = window.console()->plainText();
        QVERIFY2(text.contains(QLatin1String("Cannot read file ") + broken), qPrintable(text));
        // The retry dialog counts as cancelled in quiet mode, and says so.
        QVERIFY(text.contains(QLatin1String("\"Could not read broken.xml!\" counts as cancelled.")));
        QVERIFY(!window.document()->root());
    }

    void closeModes_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("modified");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<bool>("loadSave");   // false: a form that has nothing to save
        QTest::newRow("ask, unmodified") << 0 << false << true << true;
        // Quiet mode answers the question with Cancel: work is never lost.
        QTest::newRow("ask, modified") << 0 << true << false << true;
        QTest::newRow("nothing asked without load and save") << 0 << true << true << false;
        QTest::newRow("close at once") << 2 << true << true << true;
        QTest::newRow("refuse") << 3 << false << false << true;
    }

    void closeModes()
    {
        QFETCH(int, mode);
        QFETCH(bool, modified);
        QFETCH(bool, accepted);
        QFETCH(bool, loadSave);
        MainWindow window(quietOptions());
        if (!loadSave)
            QVERIFY(window.open(writeDescription(QStringLiteral("nosave.xml"), "<tabcontainer/>", "<loadsaveallowed value=\"0\"/>\n")));
        window.setWindowModified(modified);
        window.setCloseMode(mode);
        QCloseEvent event;
        QCoreApplication::sendEvent(&window, &event);
        QCOMPARE(event.isAccepted(), accepted);
        // The mode holds for one close only.
        window.setWindowModified(false);
        QCloseEvent again;
        QCoreApplication::sendEvent(&window, &again);
        QVERIFY(again.isAccepted());
    }

    void dropOpensDescriptions()
    {
        const QString path = writeDescription(QStringLiteral("dropped.xml"), "<verticalcontainer/>");
        MainWindow window(quietOptions());
        QVERIFY(window.acceptDrops());
        auto drop = [&window](const QString &file) { window.openDropped(file); };
        drop(m_dir.filePath(QStringLiteral("notes.txt")));
        QVERIFY(window.windowTitle() == QStringLiteral("Quillon [*]"));
        drop(path);
        QVERIFY2(window.windowTitle().contains(QLatin1String("dropped.xml")), qPrintable(window.windowTitle() + window.console()->plainText()));
    }

    void saveWritesSignedConfiguration()
    {
        const QString path = writeDescription(QStringLiteral("saved.xml"), "<tabcontainer/>");
        const QString target = m_dir.filePath(QStringLiteral("saved.qlnp"));
        MainWindow window(quietOptions());
        QVERIFY(window.open(path));
        window.setWindowModified(true);
        QVERIFY(window.saveConfiguration(target));
        QVERIFY(!window.isWindowModified());
        QCOMPARE(window.configurationPath(), target);
        const QByteArray bytes = readTextFile(target).toUtf8();
        QVERIFY(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<qlnpxml version=\""));
        QVERIFY(bytes.contains("<XmlFile>" + path.toUtf8() + "</XmlFile>"));
        QVERIFY(bytes.contains("<XmlVersion>2.0.0</XmlVersion>"));
        QCOMPARE(signedDescription(bytes), bytes);
        QVERIFY(window.console()->plainText().contains(QLatin1String("Saved project: ") + target));

        // A folder that can't be written leaves nothing behind and says so.
        QVERIFY(!window.saveConfiguration(QStringLiteral("/nonexistent-folder/x.qlnp")));
        QVERIFY(window.console()->plainText().contains(QLatin1String("Cannot open file /nonexistent-folder/x.qlnp")));
    }

    void formulaNamesCheckedAtStartUp()
    {
        const QString path = writeDescription(QStringLiteral("formulas.xml"),
                                              "<verticalcontainer>"
                                              "<spinbox define=\"S\" svd=\"0\" range=\"0;9\"/>"
                                              "<math define=\"TWICE\" formula=\"S * 2\"/>"
                                              "<math formula=\"TWICE + MISSING_X + S\"/>"
                                              "<math formula=\"MISSING_X - 1\"/>"
                                              "</verticalcontainer>");
        MainWindow window(quietOptions());
        RecordingSink sink;
        QVERIFY(window.open(path));
        window.startUp(false);
        // Once per name, however many formulas read it; math labels' own
        // defines count.
        QCOMPARE(sink.errors.filter(QStringLiteral("Element used in formula")), QStringList{QStringLiteral("Element used in formula not defined: \"MISSING_X\"")});
    }

    void firmwareCheckedAtLoad_data()
    {
        QTest::addColumn<bool>("setting");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("console");
        const QByteArray valid = QByteArray::fromHex("010001050000");
        QTest::newRow("valid: silent") << true << valid << QString();
        QTest::newRow("too low") << true << QByteArray::fromHex("010001010000")
                                 << "Tav Firmware Version 1.1.0<font color=\"red\"><br><br>Version is too low for the "
                                    "currently loaded XML (needs V.1.2.0..V.1.9.0).</font><br>";
        QTest::newRow("no reply") << true << QByteArray()
                                    << "<font color=\"orange\">Could not retrieve firmware version.</font><br>";
        QTest::newRow("setting off") << false << valid << QString();
    }

    void firmwareCheckedAtLoad()
    {
        QFETCH(bool, setting);
        QFETCH(QByteArray, reply);
        QFETCH(QString, console);
        FakeHid::State hid;
        hid.tavPresent = true;
        hid.replies = {reply, reply};
        hid.readFails = reply.isEmpty();
        StickLink::setHidFactory([&hid] { return new FakeHid(&hid); });
        // The description talks to the stick, so the load asks for its version.
        const QString path = writeDescription(QStringLiteral("stick.xml"),
                                              "<verticalcontainer><button label=\"Go\">"
                                              "<action event=\"clicked\" cmd=\"sendUSB\" data=\"01\"/>"
                                              "</button></verticalcontainer>",
                                              "<fwversion min=\"1.2.0\" max=\"1.9.0\"/>\n");
        MainWindow window(quietOptions());
        window.iniSettings().checkFwVersionOnLoad = setting;
        RecordingSink sink;
        QVERIFY(window.open(path));
        window.startUp(false);
        StickLink::setHidFactory(nullptr);
        const bool asked = hid.written.contains(QByteArray::fromHex("000110"));
        QCOMPARE(asked, setting);
        QCOMPARE(sink.console.filter(QStringLiteral("firmware"), Qt::CaseInsensitive).join(QString()), console);
    }

private:
    QString writeDescription(const QString &name, const QByteArray &body, const QByteArray &rootExtra = QByteArray());
    QTemporaryDir m_dir;
};

QString TestMainWindow::writeDescription(const QString &name, const QByteArray &body, const QByteArray &rootExtra)
{
    const QString path = m_dir.filePath(name);
    ::writeDescription(path, "<svd file=\"mini.svd\"/>\n" + rootExtra, body);
    return path;
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
