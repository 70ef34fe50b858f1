// The tools for description authors through the real program: the script
// commands VALIDATE, CHECKXSD and GENERATEXMLFROMSVD, and a vendor SVD file
// completed, generated into a description and opened headless with every
// register and field bound.

#include <QtTest>

#include <QProcess>
#include <QTemporaryDir>

#include "config/Checksum.h"
#include "shell/MainWindow.h"
#include "support/FormWindow.h"
#include "support/ModelDocument.h"
#include "support/QuillonRun.h"
#include "support/RecordingSink.h"

class TestDescriptionTools : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString svdTool() const { return QFileInfo(QuillonRun::binary()).absolutePath() + "/quillon-svd-complete"; }

private slots:
    void scriptCommands()
    {
        const QString work = m_dir.filePath("script");
        const QString svdFolder = m_dir.filePath("svdfolder");
        QDir().mkpath(work);
        QDir().mkpath(svdFolder);
        // Only in the scripts folder: GENERATEXMLFROMSVD finds it there.
        QVERIFY(QFile::copy(QuillonRun::sourceDir() + "/tests/data/svd/ARM_SAMPLE_ARM_Sample.svd",
                            QDir(svdFolder).filePath("arm.svd")));
        const QString description = QDir(work).filePath("d.xml");
        QVERIFY(writeTextFile(description, "<?xml version=\"1.0\"?>\n<nvxmlcfg version=\"2.0.0\">\n<tabcontainer>\n"
                                           "<checkbox define=\"A.B.C\" lockon=\"X.Y.Z\"/>\n</tabcontainer>\n</nvxmlcfg>\n"));
        const QString script = QDir(work).filePath("tools.script");
        QVERIFY(writeTextFile(script, QStringLiteral("SETSCRIPTSDIR(%1)\nVALIDATE(%2)\nCHECKXSD(%2)\nGENERATEXMLFROMSVD(arm.svd, 0)\nEXIT(0)\n")
                                          .arg(svdFolder, description)
                                          .toUtf8()));
        const QString mirror = QDir(work).filePath("console.log");
        const QuillonRun run = QuillonRun::run({"-q", "-b" + script, "-c" + mirror}, 120000, work);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        const QString log = readTextFile(mirror);
        QVERIFY2(!log.contains("not available in this build"), qPrintable(log));
        QVERIFY2(log.contains("Starting validation:</b></font> File: " + description), qPrintable(log));
        QVERIFY2(log.contains("Found lockon without \"=\" at line 4"), qPrintable(log));
        QVERIFY2(log.contains("<b>Document is valid.</b>"), qPrintable(log));
        QVERIFY2(log.contains("<b>Finished xsd check.</b>"), qPrintable(log));
        const QString generated = QDir(svdFolder).filePath("arm_Generated.xml");
        const QByteArray text = readTextFile(generated).toUtf8();
        QVERIFY2(text.contains("<gridcontainer columns=\"3\" label=\"TIMER0\""), text.left(600).constData());
        QVERIFY(text.contains("<checksum>" + Checksum::digestOf(text).toUtf8() + "</checksum>"));
    }

    // The menu entries in quiet mode: each file dialog counts as cancelled
    // with its console line, nothing blocks and the form stays as it was.
    void menuEntriesInQuietMode()
    {
        FormWindow form;
        QVERIFY(form.write(miniSvd("<field><name>EN</name><lsb>0</lsb><msb>0</msb></field>\n"),
                           "<tabcontainer><checkbox define=\"P.R.EN\"/></tabcontainer>"));
        QVERIFY(form.open());
        const QStringList slotNames{"validateDefines", "generateXMLFromSVD", "completeSvdFile"};
        const QStringList titles{"Validate XML File", "Open SVD File", "Open SVD File"};
        for (int i = 0; i < slotNames.size(); ++i) {
            form.sink->clear();
            QVERIFY(QMetaObject::invokeMethod(form.window, qPrintable(slotNames[i])));
            QVERIFY2(form.sink->contains(QStringLiteral("file dialog \"%1\" counts as cancelled").arg(titles[i])),
                     qPrintable(form.sink->console.join('\n')));
            QVERIFY(form.tables().element("P.R.EN"));
        }
    }

    // The whole road for a vendor file: completion, generation, opening.
    void vendorFileBindsWhole()
    {
        const QString work = m_dir.filePath("vendor");
        QDir().mkpath(work);
        const QString svd = QDir(work).filePath("arm.svd");
        QVERIFY(QFile::copy(QuillonRun::sourceDir() + "/tests/data/svd/ARM_SAMPLE_ARM_Sample.svd", svd));
        QProcess tool;
        tool.start(svdTool(), {svd});
        QVERIFY(tool.waitForFinished(60000));
        QCOMPARE(tool.exitCode(), 0);
        const QString completed = QDir(work).filePath("arm_completed.svd");
        QVERIFY(QFile::exists(completed));

        const QString script = QDir(work).filePath("gen.script");
        QVERIFY(writeTextFile(script, QStringLiteral("GENERATEXMLFROMSVD(%1, 1)\nEXIT(0)\n").arg(completed).toUtf8()));
        QuillonRun run = QuillonRun::run({"-q", "-b" + script}, 120000, work);
        QCOMPARE(run.exitCode, 0);
        const QString description = QDir(work).filePath("arm_completed_Generated.xml");
        QVERIFY(QFile::exists(description));

        const QString mirror = QDir(work).filePath("open.log");
        run = QuillonRun::run({"-q", "-g", "-c" + mirror, description}, 120000, work);
        QVERIFY(run.finished);
        QCOMPARE(run.exitCode, 0);
        const QString log = readTextFile(mirror);
        QVERIFY(!log.isEmpty());
        for (const char *complaint : {"Not found in svd file", "manipulated", "Cannot read", "Duplicate define"})
            QVERIFY2(!log.contains(QLatin1String(complaint)), qPrintable(log.left(4000)));
        // Headers were written for the peripherals: the form was whole.
        QVERIFY(QFile::exists(QDir(work).filePath("TIMER0_defines.h")));
    }
};

QTEST_MAIN(TestDescriptionTools)
#include "tst_descriptiontools.moc"
