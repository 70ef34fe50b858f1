#include <QtTest>

#include "FakeElement.h"
#include "RecordingSink.h"
#include "TestPictures.h"
#include "elements/DataClass.h"
#include "elements/DisplayRefresh.h"
#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "elements/Led.h"
#include "elements/LogLabel.h"
#include "elements/PushButton.h"
#include "elements/Selectors.h"
#include "elements/TimerLabel.h"

#include <QTemporaryDir>

#include <cmath>

namespace {

QColor hex(const QString &text)
{
    return QColor(QStringLiteral("#") + text);
}

double distance(const QColor &a, const QColor &b)
{
    const double dr = a.red() - b.red();
    const double dg = a.green() - b.green();
    const double db = a.blue() - b.blue();
    return std::sqrt(dr * dr + dg * dg + db * db);
}

QColor mix(const QColor &inner, const QColor &outer, double t)
{
    return QColor(int(inner.red() * (1 - t) + outer.red() * t), int(inner.green() * (1 - t) + outer.green() * t),
                  int(inner.blue() * (1 - t) + outer.blue() * t));
}

// The colour word whose gradient, at position t between the inner (0) and
// the outer (1) stop, is nearest to the pixel.
QString nearestWord(const QColor &pixel, double t, bool on)
{
    QString best;
    double bestDistance = 1e9;
    for (const QString &word : Led::colorWords()) {
        const QColor expected = mix(hex(Led::innerStopColor(word, on)), hex(Led::outerStopColor(word, on)), t);
        const double d = distance(pixel, expected);
        if (d < bestDistance) {
            bestDistance = d;
            best = word;
        }
    }
    return best;
}

} // namespace

// The display elements as widgets: what they draw, which signals they send,
// how their timers and files behave, and that bad input leaves them empty
// instead of failing.
class TestDisplayElements : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_dir = new QTemporaryDir;
        m_sink = new RecordingSink;
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
    }

    void cleanup()
    {
        DocumentTables::setCurrent(nullptr);
        delete m_tables;
        delete m_sink;
        delete m_dir;
    }

    void ledColours_data()
    {
        QTest::addColumn<QString>("onColor");
        QTest::addColumn<QString>("offColor");
        QTest::addColumn<bool>("state");
        QTest::addColumn<QString>("shown");

        for (const QString &word : Led::colorWords()) {
            QTest::newRow(qPrintable(word + QStringLiteral(" on"))) << word << QStringLiteral("grey") << true << word;
            QTest::newRow(qPrintable(word + QStringLiteral(" off"))) << QStringLiteral("green") << word << false << word;
        }
        QTest::newRow("unknown on-colour falls back to green") << "orange" << "grey" << true << "green";
        QTest::newRow("unknown off-colour falls back to grey") << "red" << "Blue" << false << "grey";
        QTest::newRow("defaults on") << QString() << QString() << true << "green";
    }

    void ledColours()
    {
        QFETCH(QString, onColor);
        QFETCH(QString, offColor);
        QFETCH(bool, state);
        QFETCH(QString, shown);

        Led led;
        if (!onColor.isEmpty())
            led.setOnColor(onColor);
        if (!offColor.isEmpty())
            led.setOffColor(offColor);
        led.setValue(state);
        led.resize(64, 64);
        const QImage image = led.grab().toImage();
        QCOMPARE(image.size(), QSize(64, 64));

        // The picture's gradient is centred at (26, 24) with radius 30. One
        // point near the rim and one near the centre (clear of the highlight)
        // check both stops.
        const QColor rim = image.pixelColor(32, 50);
        const QColor inner = image.pixelColor(20, 30);
        const double tRim = std::hypot(32.5 - 26, 50.5 - 24) / 30;
        const double tInner = std::hypot(20.5 - 26, 30.5 - 24) / 30;
        QCOMPARE(nearestWord(rim, tRim, state), shown);
        QCOMPARE(nearestWord(inner, tInner, state), shown);
        QVERIFY2(distance(rim, mix(hex(Led::innerStopColor(shown, state)), hex(Led::outerStopColor(shown, state)), tRim)) < 30,
                 qPrintable(rim.name()));
    }

    void ledState_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("bitmask");
        QTest::addColumn<bool>("lit");
        QTest::addColumn<bool>("invalid");

        QTest::newRow("set, no mask") << "1" << "" << true << false;
        QTest::newRow("clear, no mask") << "0" << "" << false << false;
        QTest::newRow("masked bit set") << "4" << "0x4" << true << false;
        QTest::newRow("masked bit clear") << "4" << "3" << false << false;
        QTest::newRow("mask 0 never lights") << "255" << "0" << false << false;
        QTest::newRow("hex value") << "0x10" << "16" << true << false;
        QTest::newRow("binary mask") << "6" << "0b010" << true << false;
        QTest::newRow("junk value") << "junk" << "1" << false << true;
        QTest::newRow("empty value") << "" << "1" << false << true;
    }

    void ledState()
    {
        QFETCH(QString, value);
        QFETCH(QString, bitmask);
        QFETCH(bool, lit);
        QFETCH(bool, invalid);

        Led led;
        led.watch(QStringLiteral("X"), bitmask);
        QCOMPARE(led.feed(value), !invalid);
        QCOMPARE(led.state(), lit);
        if (invalid)
            QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Invalid value in ledb: \"%1\"").arg(value)});
        else
            QVERIFY(m_sink->errors.isEmpty());

        // A bad value leaves a lit lamp lit.
        led.setValue(true);
        led.feed(value);
        QCOMPARE(led.state(), invalid ? true : lit);
    }

    void ledFollowsRecordsAndElements()
    {
        auto *record = m_tables->addDataValue(new DataClass(QStringLiteral("flags")));
        QWidget owner;
        auto *element = new FakeElement(QStringLiteral("EN"), &owner);
        m_tables->addElement(QStringLiteral("EN"), element);

        Led fromRecord;
        fromRecord.watch(QStringLiteral("flags"), QStringLiteral("0x2"));
        Led fromElement;
        fromElement.watch(QStringLiteral("EN"), QString());
        Led elsewhere;
        elsewhere.watch(QStringLiteral("other"), QString());
        m_tables->ledDependents[QStringLiteral("flags")] = {&fromRecord};
        m_tables->ledDependents[QStringLiteral("EN")] = {&fromElement};
        m_tables->ledDependents[QStringLiteral("other")] = {&elsewhere};

        record->setValue(2);
        QCOMPARE(DisplayRefresh::leds(m_tables, QStringLiteral("flags")), 1);
        QVERIFY(fromRecord.state());
        QVERIFY(!fromElement.state());

        element->number = 1;
        QCOMPARE(DisplayRefresh::leds(m_tables, QStringLiteral("EN")), 1);
        QVERIFY(fromElement.state());
        record->setValue(1);
        DisplayRefresh::leds(m_tables, QStringLiteral("flags"));
        QVERIFY(!fromRecord.state());

        // A define that is in no table drives nothing.
        QCOMPARE(DisplayRefresh::leds(m_tables, QStringLiteral("other")), 0);
        QCOMPARE(DisplayRefresh::leds(m_tables, QStringLiteral("unknown")), 0);
        QVERIFY(m_sink->errors.isEmpty());
    }

    void unreadablePicturesLeaveImageEmpty_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("missing file") << "missing.png" << QByteArray();
        QTest::newRow("truncated gif") << "broken.gif" << QByteArray("GIF89a\x04\x00", 8);
        QTest::newRow("gif without frames") << "still.gif" << QByteArray("GIF89a\x04\x00\x04\x00\x00\x00\x00\x3b", 14);
        QTest::newRow("text as png") << "notes.png" << QByteArray("not a picture");
        QTest::newRow("empty gif") << "empty.gif" << QByteArray("");
        QTest::newRow("no name") << "" << QByteArray();
    }

    void unreadablePicturesLeaveImageEmpty()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QString path;
        if (!name.isEmpty()) {
            path = m_dir->filePath(name);
            if (!bytes.isNull())
                QVERIFY(TestPictures::writeBytes(path, bytes));
        }
        const QString still = m_dir->filePath(QStringLiteral("still.png"));
        QVERIFY(TestPictures::writePng(still, 4, 4, Qt::green));

        Image image;
        QVERIFY(image.setPictureFile(still));
        QVERIFY(!image.setPictureFile(path));
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Picture of <image> element couldn't be loaded.")});
        QVERIFY(!image.movie());
        QVERIFY(image.pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(!image.savePicture(m_dir->filePath(QStringLiteral("out.png"))));
    }

    void brokenSvgIsReported()
    {
        Image image;
        QVERIFY(!image.setSvg("<svg xmlns=\"http://www.w3.org/2000/svg\"><rect"));
        QVERIFY(!image.setSvg(QByteArray()));
        QVERIFY(!image.isSvg());
        image.refreshSvg(m_tables);
        image.redraw();
        QCOMPARE(m_sink->errors.size(), 2);
        QCOMPARE(m_sink->errors.first(), QStringLiteral("Picture of <image> element couldn't be loaded."));
    }

    void buttonWaitsForSendDelay()
    {
        PushButton button;
        QVariantMap data;
        data.insert(QStringLiteral("0"),
                    QStringList{QStringLiteral("clicked_sendUSB"), QString(), QStringLiteral("AA"), QString(), QStringLiteral("150"),
                                QStringLiteral("clicked_sendUSB"), QString(), QStringLiteral("BB"), QString(), QString()});
        button.setProperty("data", data);
        QList<qint64> times;
        QElapsedTimer clock;
        connect(&button, &PushButton::clicked_sendUSB, this, [&](const QString &) { times << clock.elapsed(); });
        // A timer that fires during the wait shows the event loop runs.
        bool loopRan = false;
        QTimer::singleShot(20, this, [&loopRan] { loopRan = true; });
        clock.start();
        button.click();
        QCOMPARE(times.size(), 2);
        QVERIFY2(times.at(1) - times.at(0) >= 150, qPrintable(QString::number(times.at(1) - times.at(0))));
        QVERIFY(loopRan);
    }

    void buttonIcon()
    {
        const QString png = m_dir->filePath(QStringLiteral("icon.png"));
        QVERIFY(TestPictures::writePng(png, 40, 20, Qt::red));

        // Without a size the button takes the picture's.
        PushButton natural;
        QVERIFY(natural.setIconFile(png));
        QCOMPARE(natural.iconSize(), QSize(40, 20));
        QCOMPARE(natural.size(), QSize(40, 20));
        QVERIFY(!natural.setIconFile(m_dir->filePath(QStringLiteral("none.png"))));

        // nograyout: the disabled icon is the picture itself, not a greyed one.
        PushButton plain;
        QVERIFY(plain.setIconFile(png, QSize(), true));
        const QImage disabled = plain.icon().pixmap(QSize(40, 20), QIcon::Disabled).toImage();
        QCOMPARE(disabled.pixelColor(5, 5), QColor(Qt::red));
    }

    void timerRunsActionsPerTick()
    {
        TimerLabel timer;
        timer.setObjectName(QStringLiteral("poll"));
        QVariantMap data;
        data.insert(QStringLiteral("0"),
                    QStringList{QStringLiteral("changed_setDef"), QString(), QStringLiteral("x=1"),
                                QStringLiteral("changed_runScript"), QStringLiteral("0"), QStringLiteral("never"),
                                QStringLiteral("changed_sendUSB"), QString(), QStringLiteral("05"), QStringLiteral("R"), QString()});
        static_cast<QObject &>(timer).setProperty("data", data);
        QSignalSpy setDefs(&timer, &TimerLabel::changed_setDef);
        QSignalSpy scripts(&timer, &TimerLabel::changed_runScript);
        QSignalSpy sends(&timer, &TimerLabel::changed_sendUSB);
        QSignalSpy replies(&timer, &TimerLabel::changed_recData);

        timer.setInterval(10);
        timer.setRun(1);
        timer.connectSignals();
        QTRY_VERIFY(timer.counter() >= 3);
        timer.stop();
        const int ticks = int(timer.counter());
        QCOMPARE(setDefs.count(), ticks);
        QCOMPARE(sends.count(), ticks);
        QCOMPARE(replies.count(), ticks);
        QCOMPARE(scripts.count(), 0);
        QCOMPARE(setDefs.first().first().toString(), QStringLiteral("x=1"));
        QCOMPARE(replies.first().first().toString(), QStringLiteral("R"));
    }

    void timerKinds()
    {
        TimerLabel timer;
        timer.setObjectName(QStringLiteral("T"));
        QVERIFY(timer.setValue(QStringLiteral("250"), Selectors::Interval));
        QCOMPARE(timer.value(Selectors::Interval), QStringLiteral("250"));
        QCOMPARE(timer.timer()->interval(), 250);
        QCOMPARE(timer.value(Selectors::Run), QStringLiteral("0"));
        QVERIFY(timer.setValue(QStringLiteral("0x1"), Selectors::Run));
        QCOMPARE(timer.value(Selectors::Run), QStringLiteral("1"));
        QCOMPARE(timer.value(Selectors::TypeInfo), QStringLiteral("TimerLabel"));
        QVERIFY(timer.setValue(QStringLiteral("7"), Selectors::Value));
        QCOMPARE(timer.value(Selectors::Value), QStringLiteral("7"));
        QVERIFY(timer.setBits(3, 0));

        QVERIFY(!timer.setValue(QStringLiteral("soon"), Selectors::Interval));
        QCOMPARE(timer.timer()->interval(), 250);
        QVERIFY(!timer.loadValue(QStringLiteral("x")));
        QCOMPARE(timer.value(Selectors::Label), QString());
        QCOMPARE(m_sink->errors,
                 (QStringList{QStringLiteral("Trying to set \"T\" to invalid value \"soon\""),
                              QStringLiteral("Trying to load \"T\" with invalid value \"x\""),
                              QStringLiteral("Can not return value of type \"label\" from \"T\"")}));
    }

    void logReplacesOrAppends_data()
    {
        QTest::addColumn<bool>("append");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("replace") << false << QStringList{QStringLiteral("3;x")};
        QTest::newRow("append") << true << QStringList{QStringLiteral("1;"), QStringLiteral("3;"), QStringLiteral("3;x")};
    }

    void logReplacesOrAppends()
    {
        QFETCH(bool, append);
        QFETCH(QStringList, lines);

        QWidget owner;
        auto *speed = new FakeElement(QStringLiteral("SPEED"), &owner);
        m_tables->addElement(QStringLiteral("SPEED"), speed);
        auto *mode = m_tables->addDataValue(new DataClass(QStringLiteral("mode")));
        Q_UNUSED(mode);
        auto *text = new FakeElement(QStringLiteral("NAME"), &owner);
        text->overrideText = QStringLiteral("x");
        m_tables->addElement(QStringLiteral("NAME"), text);

        LogLabel log;
        log.setObjectName(QStringLiteral("LOG"));
        const QString path = m_dir->filePath(QStringLiteral("values.csv"));
        log.setFileName(path);
        log.setAppend(append);
        QCOMPARE(log.addColumn(QStringLiteral("SPEED"), QStringLiteral("Speed")), 0);
        QCOMPARE(log.addColumn(QStringLiteral("NAME.definevalue"), QStringLiteral("Name")), 1);
        m_tables->logDependents[QStringLiteral("SPEED")] = {&log};
        m_tables->logDependents[QStringLiteral("NAME")] = {&log};

        speed->number = 1;
        QCOMPARE(DisplayRefresh::logs(m_tables, QStringLiteral("SPEED")), 1);
        speed->number = 3;
        DisplayRefresh::logs(m_tables, QStringLiteral("SPEED"));
        // A column that reads another kind of the element follows the element.
        QCOMPARE(DisplayRefresh::logs(m_tables, QStringLiteral("NAME")), 1);
        QCOMPARE(DisplayRefresh::logs(m_tables, QStringLiteral("mode")), 0);

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList written = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(written, lines);
        QCOMPARE(log.value(Selectors::Value), lines.last());
        QVERIFY(m_sink->errors.isEmpty());
    }

    void logTimestamps_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("console");
        QTest::newRow("none") << int(LogLabel::NoTimestamp) << "" << "</b>";
        QTest::newRow("time") << int(LogLabel::TimeOnly) << "07:08:09:0012\t" << "</b>07:08:09:0012 ";
        QTest::newRow("date") << int(LogLabel::DateAndTime) << "2024.03.05/07:08:09\t" << "</b>2024.03.05/07:08:09 ";
    }

    void logTimestamps()
    {
        QFETCH(int, mode);
        QFETCH(QString, file);
        QFETCH(QString, console);
        const QDateTime when(QDate(2024, 3, 5), QTime(7, 8, 9, 12), Qt::UTC);
        QCOMPARE(LogLabel::fileStamp(mode, when, QLatin1Char('\t')), file);
        QCOMPARE(LogLabel::consoleStamp(mode, when), console);

        // The stamp of a written line is the current UTC time in that form.
        LogLabel log;
        log.setTimestamp(mode);
        log.setDelimiter(QLatin1Char('\t'));
        log.addColumn(QStringLiteral("A"), QString());
        const QDateTime before = QDateTime::currentDateTimeUtc();
        log.valueChanged(0);
        const QString stamp = log.lastLine();
        if (mode == LogLabel::NoTimestamp) {
            QCOMPARE(stamp, QString());
        } else {
            const QString expectedStart = LogLabel::fileStamp(mode, before, QLatin1Char('\t')).left(mode == LogLabel::TimeOnly ? 5 : 16);
            QVERIFY2(stamp.startsWith(expectedStart), qPrintable(stamp));
            QCOMPARE(stamp.size(), file.size());
        }
    }

    void logEchoAndUnwritableFile()
    {
        QWidget owner;
        auto *a = new FakeElement(QStringLiteral("A"), &owner);
        m_tables->addElement(QStringLiteral("A"), a);
        LogLabel log;
        log.setObjectName(QStringLiteral("L"));
        log.setConsoleEcho(true);
        log.setDelimiter(QLatin1Char(','));
        log.addColumn(QStringLiteral("A"), QStringLiteral("a"));
        log.addColumn(QStringLiteral("A"), QStringLiteral("again"));
        log.setFileName(m_dir->filePath(QStringLiteral("no/such/folder/log.txt")));

        a->number = 5;
        QVERIFY(log.take(m_tables, QStringLiteral("A")));
        a->number = 6;
        QVERIFY(log.take(m_tables, QStringLiteral("A")));
        QCOMPARE(m_sink->console, (QStringList{QStringLiteral("<b>L: </b>5,5<br>"), QStringLiteral("<b>L: </b>6,6<br>")}));
        // Reported once, not at every line.
        QCOMPARE(m_sink->errors.size(), 1);
        QVERIFY(m_sink->errors.first().startsWith(QStringLiteral("Cannot open file %1:\n").arg(log.fileName())));
    }

private:
    QTemporaryDir *m_dir = nullptr;
    RecordingSink *m_sink = nullptr;
    DocumentTables *m_tables = nullptr;
};

QTEST_MAIN(TestDisplayElements)
#include "tst_displayelements.moc"
