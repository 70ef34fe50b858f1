#include <QtTest>

#include "QuillonRun.h"

#include "automation/PythonBridge.h"
#include "elements/DataClass.h"
#include "reader/DescriptionReader.h"
#include "reader/ElementAttributes.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "tooling/GuiXmlWriter.h"
#include "tooling/XmlGenerator.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>

// Every description the project ships or tests with is opened, written
// back by the form editor's writer and opened again: the form, the values,
// the exported headers and the configuration files must not tell the two
// apart, and writing the written file again changes no byte. The folders
// are walked, so that a description added later is held to the same.
class TestGuiXmlRoundTrip : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void roundTrip_data();
    void roundTrip();
    void cleanupTestCase();

private:
    // The folder's entries linked into a new folder, so that the written
    // file finds the SVD, ELF and pictures the original names.
    QString stage(const QString &sourceFolder, const QString &name);
    // The form as a list of lines: kind, define, label and default of each
    // element in document order, then the values without a widget.
    static QStringList formOutline(Document &document);
    static void outline(QObject *object, QStringList &lines);
    // A saved configuration without the lines that name the description's
    // path and the digest over it.
    static QStringList configurationBody(const QString &folder);
    // Runs the program over a description with a script; the console text.
    QString runScript(const QString &description, const QString &script);

    QTemporaryDir m_dir;
    QStringList m_generated;
    int m_stages = 0;
    QElapsedTimer m_clock;
};

void TestGuiXmlRoundTrip::initTestCase()
{
    QVERIFY(m_dir.isValid());
    // No dialog may wait for an answer.
    Dialogs::setQuiet(true);
    // The example uses Python: the bridge is the one built beside the program.
    PythonBridge::setPluginPath(QuillonRun::buildDir() + QStringLiteral("/libquillon_python.so"));
    m_clock.start();
    // A generated description of each SVD file, in both layouts.
    const QDir svds(QuillonRun::sourceDir() + QStringLiteral("/tests/data/svd"));
    for (const QString &svd : svds.entryList({QStringLiteral("*.svd")}, QDir::Files, QDir::Name)) {
        for (bool tree : {true, false}) {
            const QString folder = m_dir.filePath(QStringLiteral("gen_%1_%2").arg(QFileInfo(svd).baseName()).arg(tree));
            QVERIFY(QDir().mkpath(folder));
            const QString copy = QDir(folder).filePath(svd);
            QVERIFY(QFile::copy(svds.filePath(svd), copy));
            XmlGenerator generator;
            QVERIFY2(generator.generateXMLFromSVD(copy, tree), qPrintable(svd));
            m_generated << generator.outputPath();
        }
    }
}

void TestGuiXmlRoundTrip::cleanupTestCase()
{
    qInfo("round trip of all descriptions: %lld ms", m_clock.elapsed());
}

void TestGuiXmlRoundTrip::roundTrip_data()
{
    QTest::addColumn<QString>("path");
    QStringList paths;
    paths << QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
    for (const char *folder : {"/tests/data/descriptions", "/fuzz/corpus/description"}) {
        const QDir dir(QuillonRun::sourceDir() + QLatin1String(folder));
        for (const QString &name : dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name))
            paths << dir.filePath(name);
    }
    paths << m_generated;
    for (const QString &path : paths) {
        const QString tag = QFileInfo(QFileInfo(path).absolutePath()).fileName() + QLatin1Char('/')
            + QFileInfo(path).fileName();
        QTest::newRow(qPrintable(tag)) << path;
    }
}

QString TestGuiXmlRoundTrip::stage(const QString &sourceFolder, const QString &name)
{
    const QString folder = m_dir.filePath(QStringLiteral("stage%1/%2").arg(++m_stages).arg(name));
    QDir().mkpath(folder);
    const QDir source(sourceFolder);
    for (const QFileInfo &entry : source.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
        QFile::link(entry.absoluteFilePath(), QDir(folder).filePath(entry.fileName()));
    return folder;
}

void TestGuiXmlRoundTrip::outline(QObject *object, QStringList &lines)
{
    for (QObject *child : object->children()) {
        if (!child->isWidgetType())
            continue;
        const QString kind = ElementAttributes::elementName(child);
        if (!kind.isEmpty()) {
            QString label;
            for (const auto &pair : ElementAttributes::current(child)) {
                if (pair.first == QLatin1String("label"))
                    label = pair.second;
            }
            lines << QStringLiteral("%1 %2 [%3] =%4")
                         .arg(kind, child->objectName(), label,
                              ElementAttributes::propertyHolder(child)->property("my_default").toString());
        }
        outline(child, lines);
    }
}

QStringList TestGuiXmlRoundTrip::formOutline(Document &document)
{
    QStringList lines;
    if (document.root()) {
        lines << ElementAttributes::elementName(document.root());
        outline(document.root(), lines);
    }
    QStringList vars;
    for (DataClass *data : document.tables().dataValues)
        vars << QStringLiteral("var %1 =%2").arg(data->objectName(), data->property("my_default").toString());
    vars.sort();
    return lines + vars;
}

QString TestGuiXmlRoundTrip::runScript(const QString &description, const QString &script)
{
    const QString folder = QFileInfo(description).absolutePath();
    const QString scriptPath = QDir(folder).filePath(QStringLiteral("run%1.script").arg(++m_stages));
    const QString mirror = scriptPath + QStringLiteral(".log");
    writeTextFile(scriptPath, script.toUtf8());
    const QuillonRun run = QuillonRun::run({QStringLiteral("-q"), QStringLiteral("-x"), QStringLiteral("-b") + scriptPath,
                                            QStringLiteral("-c") + mirror, description},
                                           60000);
    if (!run.finished)
        return QStringLiteral("HANG");
    return readTextFile(mirror);
}

QStringList TestGuiXmlRoundTrip::configurationBody(const QString &folder)
{
    QStringList lines = readTextFile(folder + QStringLiteral("/config.qlnp")).split(QLatin1Char('\n'));
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QString &line) {
                                   return line.contains(QLatin1String("<XmlFile>"))
                                       || line.contains(QLatin1String("<checksum>"));
                               }),
                lines.end());
    return lines;
}

void TestGuiXmlRoundTrip::roundTrip()
{
    QFETCH(QString, path);
    const QString name = QFileInfo(path).fileName();
    const QString originalFolder = stage(QFileInfo(path).absolutePath(), QStringLiteral("original"));
    const QString writtenFolder = stage(QFileInfo(path).absolutePath(), QStringLiteral("written"));
    const QString original = QDir(originalFolder).filePath(name);
    const QString written = QDir(writtenFolder).filePath(name);
    // The written file replaces the link to the original.
    QFile::remove(written);

    Document first(nullptr);
    if (!first.read(original, ReaderOptions()))
        QSKIP(qPrintable(QStringLiteral("The description does not load: ") + first.errorText()));
    GuiXmlWriter writer(first);
    QVERIFY2(writer.write(written), qPrintable(writer.errorText()));

    Document second(nullptr);
    QVERIFY2(second.read(written, ReaderOptions()), qPrintable(second.errorText()));
    const QStringList before = formOutline(first);
    const QStringList after = formOutline(second);
    if (before != after) {
        for (int i = 0; i < qMax(before.size(), after.size()); ++i) {
            if (before.value(i) != after.value(i)) {
                qWarning("first difference at %d: \"%s\" / \"%s\"", i, qPrintable(before.value(i)),
                         qPrintable(after.value(i)));
                break;
            }
        }
    }
    QCOMPARE(after.size(), before.size());
    QCOMPARE(after, before);

    // The writer is a fixed point: the written file written again is the same.
    const QString again = QDir(writtenFolder).filePath(QStringLiteral("again.xml"));
    GuiXmlWriter writerAgain(second);
    QVERIFY2(writerAgain.write(again), qPrintable(writerAgain.errorText()));
    QCOMPARE(readTextFile(again), readTextFile(written));

    // The program sees the same form: values, headers and configurations,
    // each configuration loading into the other form to the same values.
    const QString outA = QDir(originalFolder).filePath(QStringLiteral("out"));
    const QString outB = QDir(writtenFolder).filePath(QStringLiteral("out"));
    QDir().mkpath(outA);
    QDir().mkpath(outB);
    const QString saveScript = QStringLiteral("DUMPALL(%1/dump.txt)\nSETFILENAME(%1/config.qlnp)\nSAVE\nEXPORT\n");
    const QString loadScript = QStringLiteral("LOAD(%1/config.qlnp)\nDUMPALL(%2/loaded.txt)\n");
    const QString logA = runScript(original, saveScript.arg(outA));
    const QString logB = runScript(written, saveScript.arg(outB) + loadScript.arg(outA, outB));
    QVERIFY(logA != QLatin1String("HANG") && logB != QLatin1String("HANG"));
    // Signed: the written file opens without a checksum complaint.
    QVERIFY2(!logB.contains(QLatin1String("has been manipulated")), qPrintable(logB));

    const QString dumpA = readTextFile(outA + QStringLiteral("/dump.txt"));
    const QString dumpB = readTextFile(outB + QStringLiteral("/dump.txt"));
    QCOMPARE(dumpB, dumpA);
    QVERIFY(!dumpA.isEmpty() || first.tables().elements.isEmpty());

    const QStringList headersA = QDir(outA).entryList({QStringLiteral("*.h")}, QDir::Files, QDir::Name);
    QCOMPARE(QDir(outB).entryList({QStringLiteral("*.h")}, QDir::Files, QDir::Name), headersA);
    for (const QString &header : headersA)
        QCOMPARE(readTextFile(QDir(outB).filePath(header)), readTextFile(QDir(outA).filePath(header)));

    QCOMPARE(readTextFile(outB + QStringLiteral("/loaded.txt")), dumpA);
    // The other way round needs a run only when the two configurations say
    // anything different beside the description's path and their digest.
    if (configurationBody(outB) != configurationBody(outA)) {
        const QString loadedByA = runScript(original, loadScript.arg(outB, outA));
        QVERIFY(loadedByA != QLatin1String("HANG"));
        QCOMPARE(readTextFile(outA + QStringLiteral("/loaded.txt")), dumpB);
    }
}

QTEST_MAIN(TestGuiXmlRoundTrip)
#include "tst_guixmlroundtrip.moc"
