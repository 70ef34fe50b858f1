#include <QtTest>

#include "QuillonRun.h"
#include "integration/KeilToolStore.h"

#include <QProcess>
#include <QTemporaryDir>

// The Keil step of the real program's start: -k enters it into the tools
// menu of the user's Keil, -x ends right after, and quiet runs never ask.
class TestKeilStart : public QObject
{
    Q_OBJECT

    struct Run
    {
        bool finished = false;
        int exitCode = -1;
    };

    static Run quillon(const QString &configHome, const QStringList &args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
        p.setProcessEnvironment(env);
        p.setStandardInputFile(QProcess::nullDevice());
        p.start(QuillonRun::binary(), args);
        Run r;
        if (!p.waitForStarted(10000))
            return r;
        r.finished = p.waitForFinished(60000);
        if (!r.finished) {
            p.kill();
            p.waitForFinished(5000);
        }
        r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        return r;
    }

    static QString storeFile(const QString &configHome)
    {
        return configHome + QStringLiteral("/Keil/uVision5/ToolM.ini");
    }

    static int entriesOf(const QString &file, const QString &executable)
    {
        KeilToolStore store(file);
        int n = 0;
        for (int i = 0; i < KeilToolStore::kSlots; ++i)
            n += store.text("Mex", i) == executable;
        return n;
    }

private slots:
    void keilThenExit()
    {
        QTemporaryDir home;
        QDir().mkpath(home.filePath(QStringLiteral("Keil/uVision5")));
        const QString self = QFileInfo(QuillonRun::binary()).canonicalFilePath();
        QVERIFY(!self.isEmpty());

        Run r = quillon(home.path(), {"-q", "-k", "-x"});
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(entriesOf(storeFile(home.path()), self), 1);
        KeilToolStore store(storeFile(home.path()));
        QCOMPARE(store.text("Mtx", 0), QStringLiteral("Quillon V2.5.0"));
        QCOMPARE(store.flags(0), 0x900);

        // A second start finds itself and adds nothing.
        r = quillon(home.path(), {"-q", "-k", "-x"});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(entriesOf(storeFile(home.path()), self), 1);
    }

    void quietStartWithOtherCopyAddsNothing()
    {
        QTemporaryDir home;
        QDir().mkpath(home.filePath(QStringLiteral("Keil/uVision5")));
        const QString other = home.filePath(QStringLiteral("other/quillon"));
        QVERIFY(writeTextFile(other, "#!/bin/sh\n"));
        {
            KeilToolStore store(storeFile(home.path()));
            store.setValue("Mtx", 0, QStringLiteral("Quillon V2.4.0"));
            store.setValue("Mfg", 0, 0x900);
            store.setValue("Mex", 0, other);
            store.setValue("Mag", 0, QStringLiteral("x"));
            // A copy removed from disk: quiet runs don't ask, so it stays.
            store.setValue("Mtx", 1, QStringLiteral("Quillon V1.0.0"));
            store.setValue("Mfg", 1, 0x900);
            store.setValue("Mex", 1, home.filePath(QStringLiteral("removed/quillon")));
            QVERIFY(store.sync());
        }
        const Run r = quillon(home.path(), {"-q", "-k", "-x"});
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
        const QString self = QFileInfo(QuillonRun::binary()).canonicalFilePath();
        QCOMPARE(entriesOf(storeFile(home.path()), self), 0);
        QCOMPARE(entriesOf(storeFile(home.path()), other), 1);
        QCOMPARE(entriesOf(storeFile(home.path()), home.filePath(QStringLiteral("removed/quillon"))), 1);
    }

    void withoutKeilNothingIsCreated()
    {
        QTemporaryDir home;
        const Run r = quillon(home.path(), {"-q", "-k", "-x"});
        QVERIFY(r.finished);
        QCOMPARE(r.exitCode, 0);
        QVERIFY(!QFileInfo::exists(home.filePath(QStringLiteral("Keil"))));
    }
};

QTEST_GUILESS_MAIN(TestKeilStart)
#include "tst_keilstart.moc"
