#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "reader/DescriptionReader.h"
#include "shell/Console.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"
#include "views/DiffDialog.h"
#include "views/UnresolvedDialog.h"

#include <QCryptographicHash>
#include <QTableWidget>
#include <QTemporaryDir>

// Configuration files on real forms: a save and a load give back the same
// values and the same bytes, values of names that moved follow the
// description's migration file, and what is left over is shown; a saved
// file can be compared with the form.
class TestConfigurationFiles : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QVERIFY(m_dir.isValid());
        QVERIFY(writeTextFile(path(QStringLiteral("mini.svd")), miniSvd("<field><name>F</name><lsb>0</lsb><msb>3</msb></field>"
                                                                           "<field><name>G</name><lsb>4</lsb><msb>7</msb></field>")));
        QVERIFY(writeTextFile(path(QStringLiteral("migrate.txt")), "NVXQuillon_Version 2.0\n"
                                                                  "P.OLD.F   P_R\n"
                                                                  "OLDP_R P_R\n"
                                                                  "GONE\n"));
        const QByteArray form = "<verticalcontainer label=\"Form\">\n"
                                " <header file=\"mini.h\">\n"
                                "  <spinbox define=\"P.R.F\" range=\"0;15\" default=\"1\"/>\n"
                                "  <spinbox define=\"P.R.G\" range=\"0;15\" default=\"2\"/>\n"
                                " </header>\n"
                                " <spinbox define=\"KEEP\" svd=\"0\" range=\"0;99\" default=\"7\"/>\n"
                                "</verticalcontainer>\n";
        m_mini = path(QStringLiteral("mini.xml"));
        QVERIFY(writeDescription(m_mini, "<svd file=\"mini.svd\"/>\n<migration file=\"migrate.txt\"/>\n", form));
    }

    void init()
    {
        StartOptions options;
        options.quiet = true;
        m_window = new MainWindow(options);
    }

    void cleanup()
    {
        delete m_window;
        m_window = nullptr;
    }

    void roundTripOnTheExample()
    {
        const QString example = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        QVERIFY(m_window->open(example));
        m_window->startUp(false);
        // One change per element class of the example.
        const QList<QPair<QString, QString>> changes{
            {QStringLiteral("CLOCK.LFCLKSRC.SRC"), QStringLiteral("2")},          // list, by index
            {QStringLiteral("CLOCK.LFCLKSRC.BYPASS"), QStringLiteral("1")},      // check box
            {QStringLiteral("TIMER0.PRESCALER.PRESCALER"), QStringLiteral("7")}, // spin box
            {QStringLiteral("TIMER0.CC0.CC"), QStringLiteral("4660")},           // hex spin box
            {QStringLiteral("RTC0_TICK_HZ"), QStringLiteral("512")},
            {QStringLiteral("UARTE0.CONFIG.HWFC"), QStringLiteral("1")},
        };
        QStringList defaults, changed;
        for (const auto &c : changes)
            defaults << value(c.first);
        for (const auto &c : changes) {
            QVERIFY(set(c.first, c.second));
            changed << value(c.first);
        }
        QVERIFY(defaults != changed);
        const QString first = path(QStringLiteral("first.qlnp"));
        QVERIFY(m_window->saveConfiguration(first));

        m_window->resetGUI();
        QStringList afterReset;
        for (const auto &c : changes)
            afterReset << value(c.first);
        QCOMPARE(afterReset, defaults);

        QVERIFY(m_window->load(first));
        QStringList loaded;
        for (const auto &c : changes)
            loaded << value(c.first);
        QCOMPARE(loaded, changed);
        QCOMPARE(value(QStringLiteral("RTC0.PRESCALER.PRESCALER")), QStringLiteral("63"));
        QVERIFY(!m_window->isWindowModified());
        // Nothing of the file was left over.
        QVERIFY(m_window->unresolvedDialog()->leftText().isEmpty());
        QVERIFY(m_window->unresolvedDialog()->rightText().isEmpty());

        // Saved again, the file is the same, byte for byte, digest included.
        const QString second = path(QStringLiteral("second.qlnp"));
        QVERIFY(m_window->saveConfiguration(second));
        const QByteArray bytes = readTextFile(first).toUtf8();
        QCOMPARE(readTextFile(second).toUtf8(), bytes);
        const QByteArray digest = QCryptographicHash::hash(bytes.mid(bytes.indexOf("</checksum>")), QCryptographicHash::Sha256).toHex();
        QVERIFY(bytes.contains("<checksum>" + digest + "</checksum>"));
    }

    void failedReadForgetsTheFormerDescription()
    {
        // The migration file and SVD name of a form must not outlive it: a
        // configuration saved or migrated after a failed open would use them.
        Document document(nullptr);
        QVERIFY(document.read(m_mini, ReaderOptions()));
        QCOMPARE(document.state().migrationFile, QStringLiteral("migrate.txt"));
        const QString broken = path(QStringLiteral("broken.xml"));
        QVERIFY(writeTextFile(broken, "<nvxmlcfg version=\"2.0.0\"><verticalcontainer><spinbox"));
        QVERIFY(!document.read(broken, ReaderOptions()));
        QVERIFY(document.state().migrationFile.isEmpty());
        QVERIFY(document.state().svdName.isEmpty());
        QVERIFY(document.root() == nullptr);
    }

    void migrationMovesAndDrops()
    {
        writeConfiguration(QStringLiteral("moved.qlnp"), m_mini,
                           "        <SpinBox><define>P.OLD.F</define><value>5</value><dispValue>5</dispValue></SpinBox>\n"
                           "        <SpinBox><define>GONE</define><value>1</value><dispValue>1</dispValue></SpinBox>\n"
                           "        <SpinBox><define>UNKNOWN</define><value>3</value><dispValue>3</dispValue></SpinBox>\n"
                           "        <SpinBox><define>P.R.G</define><value>9</value><dispValue>9</dispValue></SpinBox>\n");
        QVERIFY(m_window->load(path(QStringLiteral("moved.qlnp"))));
        // P.OLD.F moved to the register P_R: its value lands in the bits of F.
        QCOMPARE(value(QStringLiteral("P.R.F")), QStringLiteral("5"));
        // The moved value is the whole register's: G's bits of it are 0.
        QCOMPARE(value(QStringLiteral("P.R.G")), QStringLiteral("0"));
        QCOMPARE(value(QStringLiteral("KEEP")), QStringLiteral("7"));
        UnresolvedDialog *dialog = m_window->unresolvedDialog();
        QCOMPARE(dialog->leftText(), QStringLiteral("#define UNKNOWN 3"));
        QCOMPARE(dialog->rightText().trimmed(), QStringLiteral("KEEP"));
        // Quiet runs keep the lists in the console instead of showing them.
        QVERIFY(!dialog->isVisible());
        const QString console = m_window->console()->plainText();
        QVERIFY(console.contains(QLatin1String("Found in QLNP but not in XML (potential loss of data):\n#define UNKNOWN 3")));
        QVERIFY(console.contains(QLatin1String("Found in XML but not in QLNP (not critical):\nKEEP")));
        QVERIFY(!console.contains(QLatin1String("GONE")));
    }

    void ownConfigurationLeavesNothingOver()
    {
        QVERIFY(m_window->open(m_mini));
        m_window->startUp(false);
        QVERIFY(set(QStringLiteral("KEEP"), QStringLiteral("11")));
        QVERIFY(m_window->saveConfiguration(path(QStringLiteral("own.qlnp"))));
        m_window->console()->clearConsole();
        QVERIFY(m_window->load(path(QStringLiteral("own.qlnp"))));
        QCOMPARE(value(QStringLiteral("KEEP")), QStringLiteral("11"));
        QVERIFY(!m_window->console()->plainText().contains(QLatin1String("Found in")));

        // A migration file that went missing closes the document after the load.
        QFile::rename(path(QStringLiteral("migrate.txt")), path(QStringLiteral("migrate.off")));
        const bool loaded = m_window->load(path(QStringLiteral("own.qlnp")));
        QFile::rename(path(QStringLiteral("migrate.off")), path(QStringLiteral("migrate.txt")));
        QVERIFY(!loaded);
        QVERIFY(m_window->console()->plainText().contains(QLatin1String("Cannot open file ") + path(QStringLiteral("migrate.txt"))));
        QVERIFY(!m_window->document()->tables().element(QStringLiteral("KEEP")));
    }

    void configurationBelongsToItsForm()
    {
        writeConfiguration(QStringLiteral("own.qlnp"), m_mini,
                           "        <SpinBox><define>KEEP</define><value>12</value><dispValue>12</dispValue></SpinBox>\n");
        const QString own = path(QStringLiteral("own.qlnp"));
        const QByteArray bytes = readTextFile(own).toUtf8();
        RecordingSink sink;
        // Opening the description it names announces the configuration.
        QVERIFY(m_window->load(own));
        QCOMPARE(value(QStringLiteral("KEEP")), QStringLiteral("12"));
        QCOMPARE(sink.console.filter(QStringLiteral("configuration: ")),
                 QStringList{QStringLiteral("<font color=\"blue\"><b>Loaded configuration: </font></b>%1. No headerfiles "
                                            "written. <b>To update configuration please save this file!</b><br>")
                                 .arg(own)});
        QCOMPARE(m_window->configurationPath(), own);

        // Another description has no configuration yet: Save asks for a name
        // (cancelled in quiet mode) instead of writing into the first form's file.
        const QString other = path(QStringLiteral("other.xml"));
        QVERIFY(writeDescription(other, "<svd file=\"mini.svd\"/>\n",
                                 "<verticalcontainer><header file=\"other.h\">"
                                 "<spinbox define=\"P.R.F\" range=\"0;15\"/></header></verticalcontainer>"));
        sink.clear();
        QVERIFY(m_window->open(other));
        m_window->startUp(false);
        QVERIFY(m_window->configurationPath().isEmpty());
        QVERIFY(sink.console.join(QString()).contains(QStringLiteral("New configuration: </font></b>") + other));
        QVERIFY(!m_window->save());
        QCOMPARE(readTextFile(own).toUtf8(), bytes);
    }

    void oldDefinesFollowTheMigration()
    {
        const QString old = path(QStringLiteral("old.h"));
        QVERIFY(writeTextFile(old, "/* exported long ago */\n"
                                   "#define Config_File_Version 3\n"
                                   "#define Config_File mini.xml\n"
                                   "#define NVXQuillon_Version 1.0\n"
                                   "#define OLDP_R 0x35\n"
                                   "#define GONE 1\n"
                                   "#define NOWHERE_REG 4\n"));
        QVERIFY(m_window->load(old));
        QCOMPARE(value(QStringLiteral("P.R.F")), QStringLiteral("5"));
        QCOMPARE(value(QStringLiteral("P.R.G")), QStringLiteral("3"));
        QVERIFY(QFileInfo::exists(old + QStringLiteral(".bak")));
        QCOMPARE(m_window->unresolvedDialog()->leftText(), QStringLiteral("#define NOWHERE_REG 4"));
        // KEEP has no register of the SVD file; it is not expected from a
        // text of registers.
        QVERIFY(m_window->unresolvedDialog()->rightText().trimmed().isEmpty());
    }

    void differencesAgainstASavedFile()
    {
        QVERIFY(m_window->open(m_mini));
        m_window->startUp(false);
        const QString saved = path(QStringLiteral("compare.qlnp"));
        QVERIFY(m_window->saveConfiguration(saved));

        DiffDialog *dialog = m_window->diffDialog();
        m_window->showDifferences(saved);
        QCOMPARE(dialog->rowCount(), 0);

        QVERIFY(set(QStringLiteral("P.R.G"), QStringLiteral("12")));
        m_window->showDifferences(saved);
        QCOMPARE(dialog->rowCount(), 1);
        QCOMPARE(dialog->cell(0, 0), QStringLiteral("P.R.G"));
        QCOMPARE(dialog->cell(0, 1), QStringLiteral("12"));
        QCOMPARE(dialog->cell(0, 2), QStringLiteral("2"));
        QVERIFY(dialog->windowTitle().endsWith(QLatin1String(" compare.qlnp")));
        // The form is left as it is.
        QCOMPARE(value(QStringLiteral("P.R.G")), QStringLiteral("12"));

        QSignalSpy requested(dialog, &DiffDialog::elementRequested);
        dialog->on_doubleClicked(dialog->findChild<QTableWidget *>()->model()->index(0, 2));
        QCOMPARE(requested.value(0).value(0).toString(), QStringLiteral("P.R.G"));
    }

    void badConfigurations_data()
    {
        const QByteArray keep = "        <SpinBox><define>KEEP</define><value>11</value><dispValue>11</dispValue></SpinBox>\n";
        QTest::addColumn<QByteArray>("records");
        // What the file becomes after it was written with its digest.
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<bool>("loads");
        QTest::addColumn<QString>("keep");
        QTest::addColumn<QString>("error");

        QTest::newRow("intact") << keep << QByteArray() << QByteArray() << true << "11" << "";
        QTest::newRow("edited by hand: told, loaded")
            << keep << QByteArray("<value>11</value>") << QByteArray("<value>12</value>") << true << "12"
            << "File %1 has been manipulated\nDo not use it!";
        QTest::newRow("wrong root") << keep << QByteArray("qlnpxml") << QByteArray("otherxml") << false << "7"
                                    << "Cannot read file %1:\nWarning: Wrong QLNP Version";
        QTest::newRow("truncated") << keep << QByteArray("</SpinBox>\n    </ActiveElements>\n</qlnpxml>\n") << QByteArray("</Spin")
                                   << false << "7" << "Cannot read file %1:\n";
        QTest::newRow("description gone") << keep << QByteArray("mini.xml</XmlFile>") << QByteArray("gone.xml</XmlFile>")
                                          << false << "7" << "Could not find \"%2/gone.xml\".\nPlease check script folder settings.";
        QTest::newRow("unknown class skipped")
            << QByteArray("        <Widget><define>KEEP</define><value>3</value></Widget>\n") << QByteArray() << QByteArray()
            << true << "7" << "";
        QTest::newRow("junk value") << QByteArray("        <SpinBox><define>KEEP</define><value>banana</value></SpinBox>\n")
                                    << QByteArray() << QByteArray() << true << "7"
                                    << "Trying to load \"KEEP\" with invalid value \"banana\"";
        QTest::newRow("out of range") << QByteArray("        <SpinBox><define>KEEP</define><value>100</value></SpinBox>\n")
                                      << QByteArray() << QByteArray() << true << "7"
                                      << "Trying to load \"KEEP\" with invalid value \"100\"";
    }

    void badConfigurations()
    {
        QFETCH(QByteArray, records);
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(bool, loads);
        QFETCH(QString, keep);
        QFETCH(QString, error);

        QVERIFY(m_window->open(m_mini));
        m_window->startUp(false);
        const QString name = QStringLiteral("bad.qlnp");
        writeConfiguration(name, m_mini, records);
        QByteArray bytes = readTextFile(path(name)).toUtf8();
        if (!from.isEmpty()) {
            QVERIFY(bytes.contains(from));
            bytes.replace(from, to);
            QVERIFY(writeTextFile(path(name), bytes));
        }
        RecordingSink sink;
        QCOMPARE(m_window->load(path(name)), loads);
        // Errors of a failed load come with the home page's own complaint in
        // the test folder; only the configuration's are looked at.
        const QStringList errors = sink.errors.filter(QStringLiteral("index.xml")).isEmpty()
            ? sink.errors
            : sink.errors.mid(0, sink.errors.size() - 1);
        if (error.isEmpty()) {
            QVERIFY2(errors.isEmpty(), qPrintable(errors.join('\n')));
        } else {
            const QString expected = QString(error).replace(QStringLiteral("%1"), path(name)).replace(QStringLiteral("%2"), m_dir.path());
            bool found = false;
            for (const QString &e : errors)
                found = found || e.startsWith(expected);
            QVERIFY2(found, qPrintable(errors.join('\n')));
        }
        if (loads) {
            QCOMPARE(value(QStringLiteral("KEEP")), keep);
        } else {
            // A configuration that can't be read closes the form; the file
            // itself is left as it was.
            QVERIFY(!m_window->document()->tables().element(QStringLiteral("KEEP")));
            QCOMPARE(readTextFile(path(name)).toUtf8(), bytes);
        }
    }

private:
    QString value(const QString &define, int kind = 0) const
    {
        ActiveElement *e = m_window->document()->tables().element(define);
        return e ? e->value(kind) : QStringLiteral("<missing %1>").arg(define);
    }
    bool set(const QString &define, const QString &v)
    {
        return m_window->execScriptLine(QStringLiteral("SET(%1, %2)").arg(define, v), 1);
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    // A configuration whose digest is right, from its records.
    void writeConfiguration(const QString &name, const QString &description, const QByteArray &records);

    QTemporaryDir m_dir;
    QString m_mini;
    MainWindow *m_window = nullptr;
};

void TestConfigurationFiles::writeConfiguration(const QString &name, const QString &description, const QByteArray &records)
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<qlnpxml version=\"2.5.0\">\n    <checksum>"
        + QByteArray(64, '0') + "</checksum>\n    <XmlFile>" + description.toUtf8()
        + "</XmlFile>\n    <XmlVersion>2.0.0</XmlVersion>\n    <ActiveElements>\n" + records
        + "    </ActiveElements>\n</qlnpxml>\n";
    // The digest runs from the end tag of the checksum to the end.
    const QByteArray digest = QCryptographicHash::hash(text.mid(text.indexOf("</checksum>")), QCryptographicHash::Sha256).toHex();
    text.replace(QByteArray(64, '0'), digest);
    QVERIFY(writeTextFile(path(name), text));
}

QTEST_MAIN(TestConfigurationFiles)
#include "tst_configurationfiles.moc"
