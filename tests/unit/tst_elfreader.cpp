#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "device/CLog.h"
#include "device/ELFReader.h"
#include "device/TargetVariable.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "reader/DescriptionReader.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

// The ELF reader on firmware compiled by the build, checked against nm,
// and the `elf` and `var` elements that use it.
class TestElfReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const char *file : {QUILLON_TEST_FIRMWARE, QUILLON_TEST_FIRMWARE32}) {
            QVERIFY(QFileInfo::exists(QLatin1String(file)));
            // nm's view of the same file: name -> (address, size).
            QProcess nm;
            nm.start(QStringLiteral("nm"), {QStringLiteral("-S"), QLatin1String(file)});
            QVERIFY(nm.waitForFinished(20000));
            const QStringList lines = QString::fromLocal8Bit(nm.readAllStandardOutput()).split(QLatin1Char('\n'));
            QHash<QString, QPair<quint64, quint64>> &symbols = m_nmOf[QLatin1String(file)];
            for (const QString &line : lines) {
                const QStringList f = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
                if (f.size() == 4)
                    symbols.insert(f.at(3), {f.at(0).toULongLong(nullptr, 16), f.at(1).toULongLong(nullptr, 16)});
            }
            QVERIFY(symbols.contains(QStringLiteral("counter")));
        }
        m_nm = m_nmOf.value(QStringLiteral(QUILLON_TEST_FIRMWARE));
    }

    void init() { m_sink = new RecordingSink; }
    void cleanup()
    {
        delete m_root;
        m_root = nullptr;
        delete m_reader;
        m_reader = nullptr;
        delete m_tables;
        m_tables = nullptr;
        delete m_sink;
    }

    void symbolsMatchNm_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("size");
        const struct { const char *tag; const char *file; } files[] = {
            {"64-bit program", QUILLON_TEST_FIRMWARE}, {"32-bit object", QUILLON_TEST_FIRMWARE32}};
        const struct { const char *name; int size; } symbols[] = {
            {"counter", 4}, {"speed", 2}, {"mode", 1}, {"temperature", 4},
            {"samples", 8}, {"table", 256}, {"hidden_state", 4}};
        for (const auto &f : files) {
            for (const auto &s : symbols)
                QTest::addRow("%s, %s", f.tag, s.name) << QString::fromLatin1(f.file) << QString::fromLatin1(s.name) << s.size;
        }
    }

    void symbolsMatchNm()
    {
        QFETCH(QString, file);
        QFETCH(QString, name);
        QFETCH(int, size);
        ELFReader reader;
        QCOMPARE(reader.Read(file.toLocal8Bit().constData(), ELFReader::Symbols), 0);
        unsigned long address = 0;
        unsigned long length = 0;
        QCOMPARE(reader.GetAddress(name.toLatin1().constData(), &address, &length), 0);
        QCOMPARE(quint64(length), quint64(size));
        const QHash<QString, QPair<quint64, quint64>> nm = m_nmOf.value(file);
        QVERIFY(nm.contains(name));
        QCOMPARE(quint64(address), nm.value(name).first);
        QCOMPARE(quint64(length), nm.value(name).second);
        // In the linked program the data sits in target RAM, as placed.
        if (file == QLatin1String(QUILLON_TEST_FIRMWARE))
            QVERIFY(address >= 0x20000000ul);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("readCode");
        QTest::addColumn<int>("lookupCode");
        QTest::newRow("missing file") << "missing" << int(CLog::FileNotFound) << int(CLog::NoFileLoaded);
        QTest::newRow("not ELF") << "text" << int(CLog::NotElf) << int(CLog::NoFileLoaded);
        QTest::newRow("empty") << "empty" << int(CLog::NotElf) << int(CLog::NoFileLoaded);
        QTest::newRow("header only") << "header" << int(CLog::Truncated) << int(CLog::NoFileLoaded);
        QTest::newRow("cut in half") << "half" << int(CLog::Truncated) << int(CLog::NoFileLoaded);
        QTest::newRow("stripped") << "stripped" << int(CLog::NoSymbolTable) << int(CLog::NoFileLoaded);
        QTest::newRow("symbol missing") << "good" << 0 << int(CLog::SymbolNotFound);
        QTest::newRow("folder") << "folder" << int(CLog::FileUnreadable) << int(CLog::NoFileLoaded);
    }

    void failures()
    {
        QFETCH(QString, kind);
        QFETCH(int, readCode);
        QFETCH(int, lookupCode);
        QTemporaryDir dir;
        const QByteArray firmware = readBytes(QStringLiteral(QUILLON_TEST_FIRMWARE));
        QString path = dir.filePath(QStringLiteral("fw.elf"));
        if (kind == QLatin1String("text"))
            writeTextFile(path, "int main() { return 0; }\n");
        else if (kind == QLatin1String("empty"))
            writeTextFile(path, QByteArray());
        else if (kind == QLatin1String("header"))
            writeTextFile(path, firmware.left(64));
        else if (kind == QLatin1String("half"))
            writeTextFile(path, firmware.left(firmware.size() / 2));
        else if (kind == QLatin1String("stripped"))
            path = QStringLiteral(QUILLON_TEST_FIRMWARE_STRIPPED);
        else if (kind == QLatin1String("good"))
            path = QStringLiteral(QUILLON_TEST_FIRMWARE);
        else if (kind == QLatin1String("folder"))
            path = dir.path();
        ELFReader reader;
        QCOMPARE(reader.Read(path.toLocal8Bit().constData(), ELFReader::Symbols), readCode);
        unsigned long address = 0xdead;
        unsigned long size = 0xbeef;
        QCOMPARE(reader.GetAddress("no_such_symbol", &address, &size), lookupCode);
        QCOMPARE(address, 0xdeadul);
        QCOMPARE(size, 0xbeeful);
        // Every code has a text of its own.
        QVERIFY(!CLog::ErrorCodeToString(readCode).isEmpty());
        QVERIFY(CLog::ErrorCodeToString(lookupCode) != CLog::ErrorCodeToString(CLog::Ok));
    }

    // A failed read forgets the symbols of the file read before.
    void rereadReplaces()
    {
        ELFReader reader;
        QCOMPARE(reader.Read(QUILLON_TEST_FIRMWARE), 0);
        QVERIFY(reader.symbolCount() >= 7);
        QCOMPARE(reader.Read("/nonexistent/fw.elf"), int(CLog::FileNotFound));
        QCOMPARE(reader.GetAddress("counter", nullptr, nullptr), int(CLog::NoFileLoaded));
    }

    // `symbol` replaces `address` and `size`; `interval` is read after it.
    void varsBySymbol()
    {
        QVERIFY(read(QStringLiteral("<elf file=\"%1\"/>").arg(QStringLiteral(QUILLON_TEST_FIRMWARE)).toUtf8(),
                     "<var define=\"c\" symbol=\"counter\" size=\"1\" address=\"0x10\" interval=\"50\"/>"
                     "<var define=\"s\" symbol=\"samples\"/>"
                     "<var define=\"gone\" symbol=\"no_such_symbol\" interval=\"10\"/>"
                     "<var define=\"plain\" default=\"3\"/>"
                     "<var define=\"fixed\" address=\"0x20000000\" size=\"4\"/>"));
        TargetVariable *c = target("c");
        QVERIFY(c);
        QCOMPARE(quint64(c->address), m_nm.value("counter").first);
        QCOMPARE(c->size, 4u);
        QCOMPARE(c->interval, 50u);
        QVERIFY(!c->valid);
        TargetVariable *s = target("s");
        QVERIFY(s);
        QCOMPARE(s->size, 8u);
        QCOMPARE(m_tables->dataValue("s")->buffer().size(), 8);
        QVERIFY(s->valid);
        // A symbol that is not there: the message, and no record.
        QVERIFY(m_tables->dataValue("gone"));
        QVERIFY(!target("gone"));
        QVERIFY(m_sink->contains(QStringLiteral("Cannot find ELF symbol \"no_such_symbol\". Error: ")
                                 + CLog::ErrorCodeToString(CLog::SymbolNotFound)));
        QVERIFY(!target("plain"));
        QVERIFY(target("fixed"));
        QVERIFY(target("fixed")->valid);
    }

    void elfProblems_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing file")
            << QByteArray("<elf file=\"/nonexistent/fw.elf\"/>")
            << QStringLiteral("Problem reading ELF file /nonexistent/fw.elf: %1.").arg(CLog::ErrorCodeToString(CLog::FileNotFound));
        QTest::newRow("no symbol table")
            << QByteArray("<elf file=\"" QUILLON_TEST_FIRMWARE_STRIPPED "\"/>")
            << QStringLiteral("Problem reading ELF file %1: %2.")
                   .arg(QStringLiteral(QUILLON_TEST_FIRMWARE_STRIPPED), CLog::ErrorCodeToString(CLog::NoSymbolTable));
        QTest::newRow("no elf element")
            << QByteArray()
            << QStringLiteral("Cannot find ELF symbol \"counter\". Error: %1").arg(CLog::ErrorCodeToString(CLog::NoFileLoaded));
    }

    void elfProblems()
    {
        QFETCH(QByteArray, head);
        QFETCH(QString, message);
        QVERIFY(read(head, "<var define=\"c\" symbol=\"counter\"/>"));
        QVERIFY2(m_sink->contains(message), qPrintable(m_sink->console.join('\n') + m_sink->errors.join('\n')));
        QVERIFY(m_tables->dataValue("c"));
        QVERIFY(!target("c"));
    }

    // Sizes that no variable has: bounded, and nothing read past a buffer.
    void absurdSizes_data()
    {
        QTest::addColumn<QString>("size");
        QTest::addColumn<bool>("record");
        QTest::addColumn<int>("recordSize");
        QTest::addColumn<int>("buffer");
        QTest::newRow("zero") << "0" << false << 0 << 0;
        QTest::newRow("five") << "5" << true << 5 << 5;
        QTest::newRow("one gigabyte") << "0x40000000" << true << 0x10000 << 0x10000;
        QTest::newRow("beyond 64 bits") << "99999999999999999999999" << false << 0 << 0;
    }

    void absurdSizes()
    {
        QFETCH(QString, size);
        QFETCH(bool, record);
        QFETCH(int, recordSize);
        QFETCH(int, buffer);
        QVERIFY(read(QByteArray(),
                     QStringLiteral("<var define=\"v\" address=\"0x20000000\" size=\"%1\" interval=\"5\"/>").arg(size).toUtf8()));
        QCOMPARE(target("v") != nullptr, record);
        if (record)
            QCOMPARE(int(target("v")->size), recordSize);
        QCOMPARE(m_tables->dataValue("v")->buffer().size(), buffer);
    }

    // Damaged copies of a real file: bytes changed, cut or shifted. Each
    // gives a code or symbols, never a crash or a lookup past the file.
    void damagedCopies()
    {
        const QByteArray good = readBytes(QStringLiteral(QUILLON_TEST_FIRMWARE));
        QVERIFY(good.size() > 1000);
        QRandomGenerator random(20261125);
        int refused = 0;
        for (int round = 0; round < 3000; ++round) {
            QByteArray bytes = good;
            switch (round % 3) {
            case 0: // a few bytes changed, headers included
                for (int i = 0; i < 1 + int(random.bounded(8)); ++i)
                    bytes[int(random.bounded(quint32(round % 2 ? 64 : bytes.size())))] = char(random.bounded(256));
                break;
            case 1: // cut anywhere
                bytes.truncate(int(random.bounded(quint32(bytes.size()))));
                break;
            default: // a block moved
                bytes.remove(int(random.bounded(quint32(bytes.size()))), 1 + int(random.bounded(64u)));
                break;
            }
            ELFReader reader;
            const int code = reader.ReadBytes(bytes);
            unsigned long address = 0, size = 0;
            if (code != 0) {
                ++refused;
                QCOMPARE(reader.GetAddress("counter", &address, &size), int(CLog::NoFileLoaded));
            } else {
                reader.GetAddress("counter", &address, &size);
            }
        }
        // Most damage is seen; the rest left the symbol table readable.
        QVERIFY(refused > 500);
    }

    // The bundled example's live data tab: its variables find their
    // symbols in the firmware the build compiled beside it.
    void exampleLiveData()
    {
        const QString folder = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840");
        ELFReader firmware;
        QCOMPARE(firmware.Read(QString(folder + "/live_data.elf").toLocal8Bit().constData()), 0);
        m_tables = new DocumentTables;
        QFile device(folder + QStringLiteral("/nrf52840_board.xml"));
        QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Text));
        ReaderOptions options;
        m_reader = new DescriptionReader(*m_tables, options);
        QVERIFY(m_reader->read(&device, device.fileName()));
        m_root = m_reader->takeRootWidget();
        QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join('\n')));
        QVERIFY2(m_sink->console.filter(QStringLiteral("XML Error")).isEmpty(), qPrintable(m_sink->console.join('\n')));
        const struct { const char *define; const char *symbol; } vars[] = {
            {"LIVE.ADC", "adc_raw"}, {"LIVE.FAN", "fan_speed"}, {"LIVE.TEMP", "board_temperature"},
            {"LIVE.DUTY", "led_duty"}, {"LIVE.TRACE", "trace_buffer"}};
        for (const auto &v : vars) {
            unsigned long address = 0, size = 0;
            QCOMPARE(firmware.GetAddress(v.symbol, &address, &size), 0);
            TargetVariable *t = target(v.define);
            QVERIFY2(t, v.define);
            QCOMPARE(quint64(t->address), quint64(address));
            QCOMPARE(quint64(t->size), quint64(size));
        }
        QCOMPARE(m_tables->dataValue("LIVE.TRACE")->buffer().size(), 16);
    }

private:
    static QByteArray readBytes(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    bool read(const QByteArray &head, const QByteArray &body)
    {
        m_tables = new DocumentTables;
        const QByteArray text = descriptionText(head + "\t<verticalcontainer>\n" + body + "\n\t</verticalcontainer>", "2.5.0");
        const QString file = m_dir.filePath(QStringLiteral("form.xml"));
        writeTextFile(file, signedDescription(text));
        QFile device(file);
        if (!device.open(QIODevice::ReadOnly | QIODevice::Text))
            return false;
        ReaderOptions options;
        m_reader = new DescriptionReader(*m_tables, options);
        const bool ok = m_reader->read(&device, file);
        m_root = m_reader->takeRootWidget();
        return ok;
    }

    TargetVariable *target(const char *define) const
    {
        DataClass *d = m_tables->dataValue(QLatin1String(define));
        return d ? d->target() : nullptr;
    }

    QTemporaryDir m_dir;
    QHash<QString, QPair<quint64, quint64>> m_nm;
    QHash<QString, QHash<QString, QPair<quint64, quint64>>> m_nmOf;
    RecordingSink *m_sink = nullptr;
    DocumentTables *m_tables = nullptr;
    DescriptionReader *m_reader = nullptr;
    QWidget *m_root = nullptr;
};

QTEST_MAIN(TestElfReader)
#include "tst_elfreader.moc"
