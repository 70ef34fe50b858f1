#include <QtTest>

#include "shell/IniSettings.h"
#include "shell/Preferences.h"
#include "shell/SettingsDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

// The three stores: settings.ini beside the program, the per-installation
// preferences and the global list of script folders.
class TestSettings : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_config.path());
    }

    void missingIniLeavesDefaults()
    {
        QTemporaryDir dir;
        IniSettings ini;
        QString file;
        ini.read(dir.path(), false, file);
        QVERIFY(!ini.enableSign);
        QVERIFY(!ini.enableValidate);
        QVERIFY(!ini.enableEditGui);
        QCOMPARE(ini.enableShowPortMapping, 0);
        QVERIFY(!ini.enableKeil);
        QVERIFY(file.isEmpty());
        // -k is the default of enablekeil.
        ini.read(dir.path(), true, file);
        QVERIFY(ini.enableKeil);
    }

    void iniSwitches()
    {
        QTemporaryDir dir;
        QFile f(dir.filePath(QStringLiteral("settings.ini")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[General]\nenablesign=true\nEnableValidate=1\nenableshowportmapping=2\nenablekeil=false\n"
                "externaleditor=/usr/bin/editor\nsomethingelse=7\n");
        f.close();
        IniSettings ini;
        QString file;
        ini.read(dir.path(), true, file);
        QVERIFY(ini.enableSign);
        QVERIFY(ini.enableValidate);
        QCOMPARE(ini.enableShowPortMapping, 2);
        QVERIFY(!ini.enableKeil);
        QCOMPARE(ini.externalEditor, QStringLiteral("/usr/bin/editor"));
    }

    void loadOnStartOnlyWithoutFile()
    {
        QTemporaryDir dir;
        QFile f(dir.filePath(QStringLiteral("settings.ini")));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[General]\nloadonstart=start.xml\n");
        f.close();
        IniSettings ini;
        QString file;
        ini.read(dir.path(), false, file);
        QCOMPARE(file, QStringLiteral("start.xml"));
        QString given = QStringLiteral("mine.xml");
        ini.read(dir.path(), false, given);
        QCOMPARE(given, QStringLiteral("mine.xml"));
    }

    void preferencesRoundTrip()
    {
        Preferences p;
        p.read();
        QCOMPARE(p.scriptsDir, QCoreApplication::applicationDirPath() + QStringLiteral("/scripts"));
        QCOMPARE(p.toolbarEnabled, 1);
        QCOMPARE(p.updatePeriod, 2);
        p.setWorkingDir(QStringLiteral("/work/here"));
        p.write(3, true, QStringLiteral("tav.log"), 1, 0);
        Preferences q;
        q.read();
        QCOMPARE(q.workingDir, QStringLiteral("/work/here"));
        QCOMPARE(q.tavLoggingMode, quint16(3));
        QVERIFY(q.tavLoggingTimeStamps);
        QCOMPARE(q.tavLoggingFilename, QStringLiteral("tav.log"));
        QCOMPARE(q.updatePeriod, 1);
        QCOMPARE(q.toolbarEnabled, 0);
    }

    void installationsKeepTheirOwnFolders()
    {
        // Another installation is another application key: its folders are its
        // own, while the list of script folders is shared.
        QSettings other(QCoreApplication::organizationName(), QStringLiteral("/opt/other-quillon"));
        other.setValue(QStringLiteral("workingDir"), QStringLiteral("/elsewhere"));
        other.sync();
        Preferences mine;
        mine.setWorkingDir(QStringLiteral("/mine"));
        Preferences::setScriptDirList({QStringLiteral("/shared/scripts")});
        Preferences reread;
        reread.read();
        QCOMPARE(reread.workingDir, QStringLiteral("/mine"));
        QCOMPARE(QSettings(QCoreApplication::organizationName(), QStringLiteral("/opt/other-quillon"))
                     .value(QStringLiteral("workingDir")).toString(),
                 QStringLiteral("/elsewhere"));
        QCOMPARE(Preferences::scriptDirList(), QStringList{QStringLiteral("/shared/scripts")});
    }

    void dialogAccept()
    {
        QTemporaryDir iniDir;
        Preferences p;
        p.read();
        Preferences::setScriptDirList({});
        SettingsDialog dialog(p, iniDir.path());
        QSignalSpy header(&dialog, &SettingsDialog::toolbarHeaderChanged);
        QSignalSpy logging(&dialog, &SettingsDialog::loggingChanged);
        dialog.scriptsDirBox()->setCurrentText(QStringLiteral("/scripts/a"));
        dialog.consoleBox()->setChecked(false);
        dialog.fileBox()->setChecked(true);
        dialog.timestampsBox()->setChecked(true);
        dialog.periodBox()->setCurrentIndex(3);
        dialog.showHeaderBox()->setChecked(false);
        dialog.scalingLine()->setText(QStringLiteral("1.5"));
        dialog.accept();

        QCOMPARE(Preferences::scriptDirList(), QStringList{QStringLiteral("/scripts/a")});
        Preferences q;
        q.read();
        QCOMPARE(q.scriptsDir, QStringLiteral("/scripts/a"));
        QCOMPARE(q.tavLoggingMode, quint16(2));
        QCOMPARE(q.updatePeriod, 3);
        QCOMPARE(q.toolbarEnabled, 0);
        QCOMPARE(header.count(), 1);
        QCOMPARE(header.first().first().toBool(), false);
        QCOMPARE(logging.first().at(0).value<quint16>(), quint16(2));
        QCOMPARE(qgetenv("QT_SCALE_FACTOR"), QByteArray("1.5"));
        QSettings ini(iniDir.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
        QCOMPARE(ini.value(QStringLiteral("ScaleFactor")).toString(), QStringLiteral("1.5"));

        // A second accept with the same folder does not repeat it in the list.
        SettingsDialog again(q, iniDir.path());
        again.scriptsDirBox()->setCurrentText(QStringLiteral("/scripts/a"));
        again.accept();
        QCOMPARE(Preferences::scriptDirList().size(), 1);
    }

    void smallScaleFactorIgnored()
    {
        QTemporaryDir iniDir;
        qunsetenv("QT_SCALE_FACTOR");
        Preferences p;
        p.read();
        SettingsDialog dialog(p, iniDir.path());
        dialog.scalingLine()->setText(QStringLiteral("0.5"));
        dialog.accept();
        QVERIFY(qgetenv("QT_SCALE_FACTOR").isEmpty());
        QVERIFY(!QFile::exists(iniDir.filePath(QStringLiteral("settings.ini"))));
    }

private:
    QTemporaryDir m_config;
};

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
