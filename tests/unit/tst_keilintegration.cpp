#include <QtTest>

#include "integration/KeilIntegration.h"
#include "integration/KeilToolStore.h"
#include "shell/Preferences.h"

#include <QSettings>
#include <QTemporaryDir>

// One slot of the menu as a test writes it.
struct Row
{
    int index;
    QString text;
    QString flags;
    QString executable;
    QString arguments = QStringLiteral("args");
    QString folder;
};
Q_DECLARE_METATYPE(QList<Row>)

// The Keil tools menu on a scratch store: adding this program, cleaning
// entries of removed copies (with packing), and the questions asked.
class TestKeilIntegration : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_config;
    QTemporaryDir m_dir;
    QString m_present; // an executable that exists
    QString m_gone;    // one that does not
    int m_case = 0;

    QString freshStorePath()
    {
        const QString folder = m_dir.filePath(QStringLiteral("case%1/Keil/uVision5").arg(++m_case));
        QDir().mkpath(folder);
        return folder + QStringLiteral("/ToolM.ini");
    }

    static void fill(KeilToolStore &store, const QList<Row> &rows)
    {
        for (const Row &s : rows) {
            store.setValue("Mtx", s.index, s.text);
            store.setValue("Mfg", s.index, s.flags);
            store.setValue("Mex", s.index, s.executable);
            store.setValue("Mag", s.index, s.arguments);
            store.setValue("Mid", s.index, s.folder);
        }
        QVERIFY(store.sync());
    }

    // The menu texts of rows 0.. up to the end marker.
    static QStringList texts(const KeilToolStore &store)
    {
        QStringList list;
        for (int i = 0; i < KeilToolStore::kSlots; ++i) {
            bool number = false;
            if (store.flags(i, &number) == 0 && number)
                break;
            list << store.text("Mtx", i);
        }
        return list;
    }

    KeilIntegration makeKeil(KeilToolStore &store, QStringList *questions, QMessageBox::StandardButton answer)
    {
        KeilIntegration keil(store);
        keil.setProgramPath(QStringLiteral("/opt/quillon/quillon"));
        keil.setVersion(QStringLiteral("2.5.0"));
        keil.ask = [questions, answer](const QString &title, const QString &text) {
            questions->append(title + QLatin1Char('|') + text);
            return answer;
        };
        keil.askRemember = [questions, answer](const QString &title, const QString &text, const QString &check,
                                               bool *checked) {
            questions->append(title + QLatin1Char('|') + text + QLatin1Char('|') + check);
            *checked = true;
            return answer;
        };
        keil.report = [questions](const QString &text) { questions->append(QStringLiteral("report|") + text); };
        return keil;
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_config.path());
        m_present = QCoreApplication::applicationFilePath();
        m_gone = m_dir.filePath(QStringLiteral("removed/quillon"));
    }

    void entryForms()
    {
        const QString path = freshStorePath();
        KeilToolStore store(path);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::Yes);
        QCOMPARE(keil.menuText(), QStringLiteral("Quillon V2.5.0"));
        QCOMPARE(keil.entryExecutable(), QStringLiteral("/opt/quillon/quillon"));
        QCOMPARE(keil.entryArguments(), QStringLiteral("\"$PRTE\\Device\\$D\\config.qlnp\""));
        keil.addKeilEntry(3);

        // Read back through a second store on the same file: it was written.
        KeilToolStore reread(path);
        QCOMPARE(reread.text("Mtx", 3), QStringLiteral("Quillon V2.5.0"));
        QCOMPARE(reread.text("Mex", 3), QStringLiteral("/opt/quillon/quillon"));
        QCOMPARE(reread.text("Mag", 3), QStringLiteral("\"$PRTE\\Device\\$D\\config.qlnp\""));
        QCOMPARE(reread.flags(3), 0x900);
        QVERIFY(reread.value("Mid", 3).isValid());
        QVERIFY(reread.text("Mid", 3).isEmpty());
        bool number = false;
        QCOMPARE(reread.flags(4, &number), 0);
        QVERIFY(number);
        QVERIFY(reread.value("Mfg", 4).isValid());

        keil.setLauncherForm(true, QStringLiteral("com.nvx.quillon.feature"));
        QCOMPARE(keil.entryExecutable(), QStringLiteral("C:\\Norvane\\Lantern\\Norvane-Lantern.exe"));
        QCOMPARE(keil.entryArguments(),
                 QStringLiteral("\"-clearPersistedState -dember.launcher.starttool com.nvx.quillon.feature "
                                "$PRTE\\Device\\$D\\config.qlnp\""));
    }

    void staleRemoval_data()
    {
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("removed");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QStringList>("after");

        const QString singular = QStringLiteral(
            "There is a Quillon integrated into\nKeil \u00b5Vision5 that has been removed from disk.\n"
            "Remove from Keil Tool menu also?");
        const QString plural = QStringLiteral(
            "There are 2 Quillon integrated into\nKeil \u00b5Vision5 that have been removed from disk.\n"
            "Remove from Keil Tool menu also?");
        const QString n = QStringLiteral("2304");
        QTest::newRow("nothing stale, no question")
            << QList<Row>{{0, "Quillon V2.4.0", n, m_present}, {1, "Editor", n, m_gone}}
            << int(QMessageBox::Yes) << 0 << QString() << QStringList{"Quillon V2.4.0", "Editor"};
        QTest::newRow("one stale, singular, packed")
            << QList<Row>{{0, "Editor", n, m_present}, {1, "Quillon V2.3.0", n, m_gone}, {2, "Flash", n, m_gone}}
            << int(QMessageBox::Yes) << 1 << singular << QStringList{"Editor", "Flash"};
        QTest::newRow("two stale, plural, both families")
            << QList<Row>{{0, "NVXQuillon V1.0.0", n, m_gone}, {1, "Editor", n, m_present},
                           {2, "Quillon V2.3.0", n, m_gone}, {3, "Quillon V2.5.0", n, m_present}}
            << int(QMessageBox::Yes) << 2 << plural << QStringList{"Editor", "Quillon V2.5.0"};
        QTest::newRow("declined keeps everything")
            << QList<Row>{{0, "Quillon V2.3.0", n, m_gone}, {1, "Editor", n, m_present}}
            << int(QMessageBox::No) << 0 << singular << QStringList{"Quillon V2.3.0", "Editor"};
        QTest::newRow("family test is case-sensitive")
            << QList<Row>{{0, "quillon old", n, m_gone}, {1, "Editor", n, m_present}}
            << int(QMessageBox::Yes) << 0 << QString() << QStringList{"quillon old", "Editor"};
        QTest::newRow("holes are skipped and closed")
            << QList<Row>{{0, "Editor", n, m_present}, {2, "Quillon V2.0.0", n, m_gone}, {4, "Flash", n, m_present}}
            << int(QMessageBox::Yes) << 1 << singular << QStringList{"Editor", "Flash"};
        QTest::newRow("Mfg 0 ends the walk; later entries unseen")
            << QList<Row>{{0, "Editor", n, m_present}, {1, "Tool", "0", m_present}, {2, "Quillon V2.0.0", n, m_gone}}
            << int(QMessageBox::Yes) << 0 << QString() << QStringList{"Editor"};
        QTest::newRow("Mfg not a number does not end the walk")
            << QList<Row>{{0, "Editor", "lots", m_present}, {1, "Quillon V2.0.0", n, m_gone}}
            << int(QMessageBox::Yes) << 1 << singular << QStringList{"Editor"};
    }

    void staleRemoval()
    {
        QFETCH(QList<Row>, rows);
        QFETCH(int, answer);
        QFETCH(int, removed);
        QFETCH(QString, question);
        QFETCH(QStringList, after);
        const QString path = freshStorePath();
        KeilToolStore store(path);
        fill(store, rows);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::StandardButton(answer));
        QCOMPARE(keil.removeStaleKeilEntries(), removed);
        if (question.isEmpty())
            QVERIFY(questions.isEmpty());
        else
            QCOMPARE(questions, QStringList{QStringLiteral("Keil \u00b5Vision 5 Integration|") + question});
        KeilToolStore reread(path);
        QCOMPARE(texts(reread), after);
        if (removed > 0) {
            // Packed from 0 with every value kept, the end marked right behind.
            for (int i = 0; i < after.size(); ++i)
                QCOMPARE(reread.text("Mag", i), QStringLiteral("args"));
            QCOMPARE(reread.value("Mfg", after.size()).toString(), QStringLiteral("0"));
            QVERIFY(!reread.value("Mtx", after.size()).isValid());
        }
    }

    void integrateFromMenu_data()
    {
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("added");
        QTest::addColumn<int>("addedAt");
        QTest::addColumn<int>("questionCount");

        const QString n = QStringLiteral("2304");
        const QString self = QStringLiteral("/opt/quillon/quillon");
        QTest::newRow("empty menu") << QList<Row>{} << int(QMessageBox::No) << true << 0 << 0;
        QTest::newRow("other tools only, first free slot")
            << QList<Row>{{0, "Editor", n, m_present}, {1, "Flash", n, m_present}} << int(QMessageBox::No) << true << 2 << 0;
        QTest::newRow("already there") << QList<Row>{{0, "Editor", n, m_present}, {1, "Quillon V2.5.0", n, self}}
                                       << int(QMessageBox::Yes) << false << -1 << 0;
        QTest::newRow("other copy, yes") << QList<Row>{{0, "Quillon V2.4.0", n, "/usr/lib/quillon/quillon"}}
                                         << int(QMessageBox::Yes) << true << 1 << 1;
        QTest::newRow("other copy, no") << QList<Row>{{0, "Quillon V2.4.0", n, "/usr/lib/quillon/quillon"}}
                                        << int(QMessageBox::No) << false << -1 << 1;
    }

    void integrateFromMenu()
    {
        QFETCH(QList<Row>, rows);
        QFETCH(int, answer);
        QFETCH(bool, added);
        QFETCH(int, addedAt);
        QFETCH(int, questionCount);
        const QString path = freshStorePath();
        KeilToolStore store(path);
        fill(store, rows);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::StandardButton(answer));
        QCOMPARE(keil.integrateKeil(), added);
        QCOMPARE(questions.size(), questionCount);
        if (questionCount)
            QCOMPARE(questions.first(),
                     QStringLiteral("Keil \u00b5Vision 5 Integration|Other Quillon(s) were integrated into Keil "
                                    "\u00b5Vision5.\n\nPaths:\n-/usr/lib/quillon/quillon\n\n"
                                    "Should the running Quillon be also integrated?"));
        KeilToolStore reread(path);
        if (added) {
            QCOMPARE(reread.text("Mex", addedAt), QStringLiteral("/opt/quillon/quillon"));
            QCOMPARE(reread.text("Mtx", addedAt), QStringLiteral("Quillon V2.5.0"));
        }
        int mine = 0;
        for (int i = 0; i < KeilToolStore::kSlots; ++i)
            mine += reread.text("Mex", i) == QLatin1String("/opt/quillon/quillon");
        QCOMPARE(mine, (added || QString(QTest::currentDataTag()) == QLatin1String("already there")) ? 1 : 0);
    }

    void fullMenuIsReported()
    {
        const QString path = freshStorePath();
        KeilToolStore store(path);
        QList<Row> rows;
        // 25 entries, more than the menu has: only 20 are looked at.
        for (int i = 0; i < 25; ++i)
            rows.append({i, QStringLiteral("Tool %1").arg(i), QStringLiteral("2304"), m_present});
        fill(store, rows);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::Yes);
        QVERIFY(!keil.integrateKeil());
        QCOMPARE(questions.size(), 1);
        QVERIFY(questions.first().startsWith(QLatin1String("report|")));
        QVERIFY(!keil.integrateAtStart(false));
        KeilToolStore reread(path);
        for (int i = 0; i < 25; ++i)
            QCOMPARE(reread.text("Mtx", i), QStringLiteral("Tool %1").arg(i));
    }

    void duplicateKeysDoNotBreakTheStore()
    {
        const QString path = freshStorePath();
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[ToolM]\nMtx0=Editor\nMfg0=2304\nMex0=/bin/sh\nMtx0=Editor again\nMex1=\nMtx1=Quillon V1\n"
                "Mfg1=2304\nMex1=/nowhere/quillon\n");
        f.close();
        KeilToolStore store(path);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::Yes);
        QCOMPARE(keil.removeStaleKeilEntries(), 1);
        KeilToolStore reread(path);
        QCOMPARE(texts(reread).size(), 1);
        QVERIFY(reread.text("Mtx", 0).startsWith(QLatin1String("Editor")));
        QCOMPARE(reread.text("Mex", 0), QStringLiteral("/bin/sh"));
    }

    void atStart_data()
    {
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<bool>("quiet");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("added");
        QTest::addColumn<int>("questionCount");
        QTest::addColumn<bool>("remembered");

        const QString n = QStringLiteral("2304");
        const QString self = QStringLiteral("/opt/quillon/quillon");
        const QString selfArgs = QStringLiteral("\"$PRTE\\Device\\$D\\config.qlnp\"");
        QTest::newRow("no others: added without asking")
            << QList<Row>{{0, "Editor", n, m_present}} << false << int(QMessageBox::No) << true << 0 << false;
        QTest::newRow("no others, quiet: added too")
            << QList<Row>{} << true << int(QMessageBox::No) << true << 0 << false;
        QTest::newRow("others, yes") << QList<Row>{{0, "Quillon V2.4.0", n, m_present}} << false
                                     << int(QMessageBox::Yes) << true << 1 << false;
        QTest::newRow("others, no, remembered") << QList<Row>{{0, "Quillon V2.4.0", n, m_present}} << false
                                                << int(QMessageBox::No) << false << 1 << true;
        QTest::newRow("others, quiet: nothing asked, nothing added")
            << QList<Row>{{0, "NVXQuillon V1.0", n, m_present}} << true << int(QMessageBox::Yes) << false << 0 << false;
        QTest::newRow("already there, in other case")
            << QList<Row>{{0, "Renamed by hand", n, self.toUpper(), selfArgs.toLower()}} << false
            << int(QMessageBox::Yes) << false << 0 << false;
    }

    void atStart()
    {
        QFETCH(QList<Row>, rows);
        QFETCH(bool, quiet);
        QFETCH(int, answer);
        QFETCH(bool, added);
        QFETCH(int, questionCount);
        QFETCH(bool, remembered);
        const QString path = freshStorePath();
        KeilToolStore store(path);
        fill(store, rows);
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::StandardButton(answer));
        bool declined = false;
        keil.rememberDeclined = [&declined] { declined = true; };
        QCOMPARE(keil.integrateAtStart(quiet), added);
        QCOMPARE(questions.size(), questionCount);
        if (questionCount) {
            QVERIFY(questions.first().endsWith(
                QStringLiteral("Should the running Quillon be also integrated?\n\nHint: Quillon can be removed in "
                               "Keil by menu \"Tools -> Customize Tools Menu...\"|Remember my decision")));
        }
        QCOMPARE(declined, remembered);
        KeilToolStore reread(path);
        if (QString(QTest::currentDataTag()).startsWith(QLatin1String("already"))) {
            // The entry's text is brought to this version, nothing else.
            QCOMPARE(reread.text("Mtx", 0), QStringLiteral("Quillon V2.5.0"));
            QVERIFY(reread.text("Mex", 1).isEmpty());
        }
        int mine = 0;
        for (int i = 0; i < KeilToolStore::kSlots; ++i)
            mine += reread.text("Mex", i) == QLatin1String("/opt/quillon/quillon");
        QCOMPARE(mine, added ? 1 : 0);
    }

    void withoutKeilNothingIsWritten()
    {
        const QString folder = m_dir.filePath(QStringLiteral("noKeil/Keil/uVision5"));
        const QString path = folder + QStringLiteral("/ToolM.ini");
        KeilToolStore store(path);
        QVERIFY(!store.exists());
        QStringList questions;
        KeilIntegration keil = makeKeil(store, &questions, QMessageBox::Yes);
        QVERIFY(!keil.integrateAtStart(false));
        QVERIFY(!keil.integrateKeil());
        QCOMPARE(keil.removeStaleKeilEntries(), 0);
        QVERIFY(questions.isEmpty());
        QVERIFY(!QFileInfo::exists(folder));
    }

    void startStepIsWanted_data()
    {
        QTest::addColumn<bool>("flag");
        QTest::addColumn<bool>("ini");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("wanted");
        QTest::newRow("-k alone") << true << false << QVariant() << true;
        QTest::newRow("-k beats EnableKeil 0") << true << true << QVariant(0) << true;
        QTest::newRow("ini, no preference") << false << true << QVariant() << true;
        QTest::newRow("ini, EnableKeil 0") << false << true << QVariant(0) << false;
        QTest::newRow("ini, EnableKeil 1") << false << true << QVariant(1) << true;
        QTest::newRow("neither") << false << false << QVariant() << false;
    }

    void startStepIsWanted()
    {
        QFETCH(bool, flag);
        QFETCH(bool, ini);
        QFETCH(QVariant, stored);
        QFETCH(bool, wanted);
        {
            QSettings prefs(QCoreApplication::organizationName(), Preferences::applicationKey());
            if (stored.isValid())
                prefs.setValue(QStringLiteral("EnableKeil"), stored);
            else
                prefs.remove(QStringLiteral("EnableKeil"));
        }
        QCOMPARE(KeilIntegration::wantedAtStart(flag, ini), wanted);
    }

    void declineIsRememberedInPreferences()
    {
        QSettings prefs(QCoreApplication::organizationName(), Preferences::applicationKey());
        prefs.remove(QStringLiteral("EnableKeil"));
        prefs.sync();
        KeilToolStore store(freshStorePath());
        KeilIntegration keil(store);
        keil.rememberDeclined();
        QVERIFY(!KeilIntegration::wantedAtStart(false, true));
    }

    void launcherStartNeedsTheDebugMonitor_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<bool>("launcher");
        QTest::newRow("configured, monitor") << "yes" << "/opt/vs/msvsmon.exe" << true;
        QTest::newRow("configured, shell") << "yes" << "/usr/bin/bash" << false;
        QTest::newRow("not configured") << "" << "/opt/vs/msvsmon.exe" << false;
    }

    void launcherStartNeedsTheDebugMonitor()
    {
        QFETCH(QString, setting);
        QFETCH(QString, parent);
        QFETCH(bool, launcher);
        QCOMPARE(KeilIntegration::launcherStart(setting, parent), launcher);
        // This test's own parent is a real process with a readable image.
        QVERIFY(!KeilIntegration::parentProcessPath().isEmpty());
    }
};


QTEST_GUILESS_MAIN(TestKeilIntegration)
#include "tst_keilintegration.moc"
