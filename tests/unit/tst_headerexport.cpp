#include <QtTest>

#include "FakeElement.h"
#include "QuillonRun.h"
#include "RecordingSink.h"
#include "config/Checksum.h"
#include "config/HeaderExporter.h"
#include "config/OldConfigurationLoader.h"
#include "elements/DocumentTables.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"

#include <QCryptographicHash>
#include <QProcess>
#include <QTemporaryDir>

// Header export: the line forms, guards and version blocks, the refusal on
// conflicts, writing only what changed, and the files a compiler accepts.
// Also the checksum signer and the old #define path's spreading of a
// register value over its elements.
class TestHeaderExport : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
        m_model = new HardwareModel(m_tables);
        m_sink = new RecordingSink;
    }

    void cleanup()
    {
        qDeleteAll(m_elements);
        m_elements.clear();
        delete m_model;
        delete m_tables;
        delete m_sink;
    }

    void lineForms_data()
    {
        QTest::addColumn<QString>("reg");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("failed");
        QTest::addColumn<QString>("line");
        QTest::newRow("zero") << "R" << "0" << false << "#define P_R (0x0) /*decimal 0*/\n\n";
        QTest::newRow("hex upper case") << "R" << "48879" << false << "#define P_R (0xBEEF) /*decimal 48879*/\n\n";
        QTest::newRow("64 bit") << "R" << "18446744073709551615" << false
                                << "#define P_R (0xFFFFFFFFFFFFFFFF) /*decimal 18446744073709551615*/\n\n";
        QTest::newRow("float") << "R" << "1.5" << false << "#define P_R (1.5)\n\n";
        QTest::newRow("exponent") << "R" << "1e+20" << false << "#define P_R (1e+20)\n\n";
        QTest::newRow("negative") << "R" << "-3" << false << "#define P_R (-3)\n\n";
        QTest::newRow("text") << "R" << "FAST_MODE" << true << "#define P_R FAST_MODE\n\n";
        QTest::newRow("no register part") << "" << "16" << false << "#define P (0x10) /*decimal 16*/\n\n";
        QTest::newRow("no register part, text") << "" << "x" << true << "#define P x\n\n";
    }

    void lineForms()
    {
        QFETCH(QString, reg);
        QFETCH(QString, value);
        QFETCH(bool, failed);
        QFETCH(QString, line);
        QCOMPARE(HeaderExporter::registerLine(QStringLiteral("P"), reg, value, failed), line);
    }

    void guardNames_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("guard");
        QTest::newRow("plain") << "clock_config.h" << "CLOCK_CONFIG_H";
        QTest::newRow("several, sorted") << "b.h#a.h" << "A#B_H";
    }

    void guardNames()
    {
        QFETCH(QString, header);
        QFETCH(QString, guard);
        QCOMPARE(HeaderExporter::guardName(header), guard);
    }

    void versionBlocks_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("block");
        QTest::newRow("V prefix") << "abc_regs.h" << "V1.2.3"
                                  << "/* XML Version 1.2.3 */\n#define ABC_XML_VERSION (10203)\n\n";
        QTest::newRow("two digits") << "uart.h" << "2.10" << "/* XML Version 2.10 */\n#define UART_XML_VERSION (210)\n\n";
        QTest::newRow("none") << "uart.h" << "" << "";
    }

    void versionBlocks()
    {
        QFETCH(QString, header);
        QFETCH(QString, version);
        QFETCH(QString, block);
        QCOMPARE(HeaderExporter::versionBlock(header, version), block);
    }

    void textsInFixedOrder()
    {
        claim(QStringLiteral("UART.CONFIG[3:0]"), QStringLiteral("uart.h"), 5);
        claim(QStringLiteral("UART.CONFIG[7:4]"), QStringLiteral("uart.h"), 2);
        claim(QStringLiteral("ADC.CTRL[0]"), QStringLiteral("adc.h"), 1, 1);
        claim(QStringLiteral("UART.BAUD"), QStringLiteral("uart.h"), 115200, 0xFFFFFF);
        m_model->addPeripheral(QStringLiteral("SVDONLY"))->addRegister(QStringLiteral("R"), QString());

        HeaderExporter exporter(*m_model, HeaderExporter::Options());
        const QMap<QString, QString> texts = exporter.buildTexts();
        QCOMPARE(texts.keys(), (QStringList{"adc.h", "uart.h"}));
        QCOMPARE(texts.value(QStringLiteral("adc.h")), QStringLiteral("#define ADC_CTRL (0x1) /*decimal 1*/\n\n"));
        // Bits 3:0 = 5 and 7:4 = 2 merge into 0x25; the registers come in a
        // fixed order, whatever the hash order.
        const QString uart = texts.value(QStringLiteral("uart.h"));
        QVERIFY(uart.contains(QLatin1String("#define UART_CONFIG (0x25) /*decimal 37*/\n\n")));
        QVERIFY(uart.contains(QLatin1String("#define UART_BAUD (0x1C200) /*decimal 115200*/\n\n")));
        for (int i = 0; i < 5; ++i)
            QCOMPARE(HeaderExporter(*m_model, HeaderExporter::Options()).buildTexts(), texts);

        HeaderExporter::Options prefixed;
        prefixed.definePrefixes.insert(QStringLiteral("adc.h"), QStringLiteral("X"));
        QCOMPARE(HeaderExporter(*m_model, prefixed).buildTexts().value(QStringLiteral("adc.h")),
                 QStringLiteral("#define X$ADC_CTRL (0x1) /*decimal 1*/\n\n"));
    }

    void writesOnlyWhatChanged()
    {
        QTemporaryDir dir;
        writeTextFile(dir.filePath(QStringLiteral("banner.txt")), "/* banner */\n");
        claim(QStringLiteral("A.R[3:0]"), QStringLiteral("a.h"), 1);
        claim(QStringLiteral("B.R[3:0]"), QStringLiteral("b.h"), 2);
        HeaderExporter::Options options;
        options.exportFolder = dir.path();
        options.disclaimerPath = dir.filePath(QStringLiteral("banner.txt"));
        options.versionText = QStringLiteral("1.4");
        QMap<QString, bool> flags;

        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(false, flags, {}), 2);
        QCOMPARE(readTextFile(dir.filePath(QStringLiteral("a.h"))),
                 QStringLiteral("/* banner */\n#ifndef A_H\n#define A_H\n\n/* XML Version 1.4 */\n#define A_XML_VERSION (104)\n\n"
                                "#define A_R (0x1) /*decimal 1*/\n\n#endif /* A_H */\n"));
        QVERIFY(m_sink->contains(QStringLiteral("<font color=\"blue\"><b>Exported headerfile:</b></font> ") + dir.filePath(QStringLiteral("a.h"))));

        // Nothing changed: nothing written. A change of one header writes that one.
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(false, flags, {}), 0);
        flags.insert(QStringLiteral("b.h"), true);
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(false, flags, {}), 1);
        QCOMPARE(flags.value(QStringLiteral("b.h")), false);
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(true, flags, {}), 2);
    }

    void refusesOnConflicts()
    {
        QTemporaryDir dir;
        claim(QStringLiteral("A.R[3:0]"), QStringLiteral("a.h"), 1);
        HeaderExporter::Options options;
        options.exportFolder = dir.path();
        QMap<QString, bool> flags;
        const QList<HeaderExporter::Conflict> one{{QStringLiteral("A.R[3$$$COLON$$$0]"), QStringLiteral("A.R[3:0]")}};
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(true, flags, one), 0);
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("a.h"))));
        QCOMPARE(m_sink->console.last(),
                 QStringLiteral("<font color=\"red\"><b>Warning: </font></b> Could not export headerfiles. <a href=\"A.R[3$$$COLON$$$0]\">A.R[3:0]</a> is in a conflicted state!<br>"));
        const QList<HeaderExporter::Conflict> two{{"x", "X"}, {"y", "Y"}};
        QCOMPARE(HeaderExporter::refusalLine(two),
                 QStringLiteral("<font color=\"red\"><b>Warning: </font></b> Could not export headerfiles. <a href=\"x\">X</a> and <a href=\"y\">Y</a> are in a conflicted state!<br>"));
    }

    void unwritableFolderAndMissingDisclaimer()
    {
        claim(QStringLiteral("A.R[3:0]"), QStringLiteral("a.h"), 1);
        HeaderExporter::Options options;
        options.exportFolder = QStringLiteral("/nonexistent-folder/headers");
        options.disclaimerPath = QStringLiteral("/nonexistent-folder/disclaimer.txt");
        QMap<QString, bool> flags;
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(true, flags, {}), 0);
        QVERIFY(m_sink->contains(QStringLiteral("<font color=\"orange\"><b>Disclaimer file \"/nonexistent-folder/disclaimer.txt\" is missing</b></font><br>")));
        QVERIFY(m_sink->contains(QStringLiteral("<font color=\"orange\"><b>Could not write header file \"/nonexistent-folder/headers/a.h\"</b></font><br>")));
        // The flag stays, so the next export tries again.
        QVERIFY(!flags.contains(QStringLiteral("a.h")) || flags.value(QStringLiteral("a.h")));
    }

    void headersCompile()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("gcc")).isEmpty())
            QSKIP("gcc is not installed");
        QTemporaryDir dir;
        writeTextFile(dir.filePath(QStringLiteral("banner.txt")), "/* Generated. */\n");
        claim(QStringLiteral("UART.CONFIG[3:0]"), QStringLiteral("uart.h"), 5);
        claim(QStringLiteral("UART.BAUD"), QStringLiteral("uart.h"), 115200, 0xFFFFFF);
        claim(QStringLiteral("CLK.SRC[1:0]"), QStringLiteral("clock.h"), 2, 3);
        HeaderExporter::Options options;
        options.exportFolder = dir.path();
        options.disclaimerPath = dir.filePath(QStringLiteral("banner.txt"));
        options.versionText = QStringLiteral("V2.0.1");
        QMap<QString, bool> flags;
        QCOMPARE(HeaderExporter(*m_model, options).exportHeaders(true, flags, {}), 2);
        writeTextFile(dir.filePath(QStringLiteral("main.c")),
                      "#include \"uart.h\"\n#include \"clock.h\"\n#include \"uart.h\"\n"
                      "_Static_assert(UART_CONFIG == 0x5, \"config\");\n"
                      "_Static_assert(UART_BAUD == 115200, \"baud\");\n"
                      "_Static_assert(CLK_SRC == 2, \"clock\");\n"
                      "_Static_assert(UART_XML_VERSION == 20001, \"version\");\n"
                      "int main(void) { return 0; }\n");
        QProcess gcc;
        gcc.setWorkingDirectory(dir.path());
        gcc.start(QStringLiteral("gcc"), {QStringLiteral("-fsyntax-only"), QStringLiteral("-Wall"), QStringLiteral("-Werror"),
                                          QStringLiteral("main.c")});
        QVERIFY(gcc.waitForFinished(60000));
        QVERIFY2(gcc.exitCode() == 0, gcc.readAllStandardError().constData());
    }

    void signing()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("d.xml"));
        writeTextFile(path, "<?xml version=\"1.0\"?>\n<nvxmlcfg version=\"2.5.0\">\n<verticalcontainer/>\n</nvxmlcfg>\n");
        QVERIFY(Checksum::signFile(path));
        QByteArray text = readTextFile(path).toUtf8();
        QVERIFY(text.contains("<nvxmlcfg version=\"2.5.0\">\n\t<checksum>"));
        // Checked against an independent computation of the digest.
        const int close = text.indexOf("</checksum>");
        const QByteArray digest = QCryptographicHash::hash(text.mid(close), QCryptographicHash::Sha256).toHex();
        QCOMPARE(text.mid(close - 64, 64), digest);
        // Signing again changes nothing.
        QVERIFY(Checksum::signFile(path));
        QCOMPARE(readTextFile(path).toUtf8(), text);

        // Four version parts match neither form: nothing is inserted.
        writeTextFile(path, "<?xml version=\"1.0\"?>\n<nvxmlcfg version=\"2.5.0.1\">\n</nvxmlcfg>\n");
        QVERIFY(Checksum::signFile(path));
        QVERIFY(!readTextFile(path).contains(QLatin1String("<checksum>")));
        QVERIFY(m_sink->contains(QStringLiteral("No checksum element found in ")));
        QVERIFY(!Checksum::signFile(dir.filePath(QStringLiteral("missing.xml"))));
    }

    void oldPathSpreadsRegisterValues()
    {
        FakeElement *low = claim(QStringLiteral("P.R[3:0]"), QString(), 0, 15);
        FakeElement *high = claim(QStringLiteral("P.R[7:4]"), QString(), 0, 15);
        FakeElement *whole = claim(QStringLiteral("P.W"), QString(), 0, 0xFFFF);
        const Register *r = HardwareModel::findRegister(m_model->findPeripheral(QStringLiteral("P")), QStringLiteral("R"));
        const Register *w = HardwareModel::findRegister(m_model->findPeripheral(QStringLiteral("P")), QStringLiteral("W"));
        OldConfigurationLoader::applyToRegister(r, QStringLiteral("0x5A"));
        QCOMPARE(low->number, 0xA);
        QCOMPARE(high->number, 0x5);
        OldConfigurationLoader::applyToRegister(w, QStringLiteral("(0x1234u)"));
        QCOMPARE(whole->number, 0x1234);
        // A text reaches no element that holds only part of the register.
        OldConfigurationLoader::applyToRegister(r, QStringLiteral("FAST"));
        QCOMPARE(low->number, 0xA);
    }

private:
    FakeElement *claim(const QString &define, const QString &header, qint64 number, qint64 maximum = 3);

    DocumentTables *m_tables = nullptr;
    HardwareModel *m_model = nullptr;
    RecordingSink *m_sink = nullptr;
    QList<FakeElement *> m_elements;
};

FakeElement *TestHeaderExport::claim(const QString &define, const QString &header, qint64 number, qint64 maximum)
{
    auto *e = new FakeElement(define);
    e->number = number;
    e->maximum = maximum;
    m_elements << e;
    m_model->claimDefine(define, header, e, true);
    return e;
}

QTEST_MAIN(TestHeaderExport)
#include "tst_headerexport.moc"
