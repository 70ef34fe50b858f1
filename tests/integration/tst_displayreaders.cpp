#include <QtTest>

#include "FakeElement.h"
#include "QuillonRun.h"
#include "elements/SignalRelay.h"
#include "RecordingSink.h"
#include "TestPictures.h"
#include "elements/DataClass.h"
#include "elements/DisplayRefresh.h"
#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "elements/Led.h"
#include "elements/LogLabel.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/SetDef.h"
#include "elements/Selectors.h"
#include "elements/Text.h"
#include "elements/TimerLabel.h"
#include "model/HardwareModel.h"
#include "model/MathCascade.h"
#include "reader/DescriptionReader.h"

#include <QGraphicsOpacityEffect>
#include <QMovie>
#include <QTemporaryDir>

// Stands in for the main window: the refresh slots forward to the same
// classes the window uses, the command slots record what arrives.
class DisplayHost : public QObject
{
    Q_OBJECT
public:
    DocumentTables *tables = nullptr;
    MathCascade *cascade = nullptr;
    QStringList commands;
    int mathUpdates = 0;

public slots:
    void on_updateMathLabel()
    {
        ++mathUpdates;
        cascade->update(from());
    }
    void on_updateLED() { DisplayRefresh::leds(tables, DisplayRefresh::senderDefine(from())); }
    void on_updateSvgImage() { DisplayRefresh::svgImages(tables, DisplayRefresh::senderDefine(from())); }
    void on_updateLog() { DisplayRefresh::logs(tables, DisplayRefresh::senderDefine(from())); }
    void changed() { commands << QStringLiteral("changed:") + from()->objectName(); }
    void setDef(const QString &text) { commands << QStringLiteral("setDef:") + text; }
    void sendUSB(const QString &text) { commands << QStringLiteral("sendUSB:") + text; }
    void recData(const QString &text) { commands << QStringLiteral("recData:") + text; }

private:
    // Elements reach a wide receiver through relays (see SlotWiring).
    QObject *from() const
    {
        QObject *origin = SignalRelay::origin(this);
        return origin ? origin : sender();
    }

public slots:
    void loadFile(const QString &text) { commands << QStringLiteral("loadFile:") + text; }
    void runScript(const QString &text) { commands << QStringLiteral("runScript:") + text; }
    void startProgram(const QString &text) { commands << QStringLiteral("startProgram:") + text; }
    void resetGUI(const QString &text) { commands << QStringLiteral("resetGUI:") + text; }
};

// The readers of text, image, svgembed, led, math, timer, log and button,
// from description text to live, wired elements.
class TestDisplayReaders : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_dir = new QTemporaryDir;
        m_sink = new RecordingSink;
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
        m_model = new HardwareModel(m_tables);
        m_cascade = new MathCascade(m_tables);
        m_host = new DisplayHost;
        m_host->tables = m_tables;
        m_host->cascade = m_cascade;
        QVERIFY(TestPictures::writePng(path(QStringLiteral("logo.png")), 10, 8, Qt::blue));
        QVERIFY(TestPictures::writePng(path(QStringLiteral("icon.png")), 40, 20, Qt::red));
        QVERIFY(TestPictures::writeBytes(path(QStringLiteral("anim.gif")),
                                         TestPictures::animatedGif({Qt::red, Qt::green}, 4, 4, 2)));
    }

    void cleanup()
    {
        delete m_root;
        m_root = nullptr;
        delete m_reader;
        m_reader = nullptr;
        delete m_host;
        delete m_cascade;
        delete m_model;
        DocumentTables::setCurrent(nullptr);
        delete m_tables;
        delete m_sink;
        delete m_dir;
    }

    void textsAndRunningNames()
    {
        QVERIFY(read("<text label=\"Heading\" wordwrap=\"1\" tooltip=\"Tip\">not shown</text>"
                     "<text define=\"NOTE\" label=\"Note\" size=\"100;-1\"/>"
                     "<text label=\"Last\"/>"
                     "<horizontalline/>"));
        auto *heading = find<Text>(QStringLiteral("TEXT_0"));
        QVERIFY(heading);
        QCOMPARE(heading->text(), QStringLiteral("Heading"));
        QVERIFY(heading->wordWrap());
        QCOMPARE(heading->toolTip(), QStringLiteral("Tip"));
        auto *note = find<Text>(QStringLiteral("NOTE"));
        QVERIFY(note);
        QVERIFY(!note->wordWrap());
        QCOMPARE(note->minimumWidth(), 100);
        QCOMPARE(note->maximumWidth(), 100);
        // The number counts every text of the document, named or not.
        QVERIFY(find<Text>(QStringLiteral("TEXT_2")));
        QCOMPARE(m_root->findChildren<Text *>().size(), 3);
        QVERIFY(m_root->findChild<QFrame *>(QString(), Qt::FindDirectChildrenOnly));
        QVERIFY(m_sink->errors.isEmpty());
        QVERIFY(m_sink->console.isEmpty());
    }

    void imagesFromFiles()
    {
        QVERIFY(read("<image define=\"logo\" file=\"logo.png\" label=\"Company logo\"/>"
                     "<image file=\"missing.png\"/>"
                     "<image define=\"logo\" file=\"anim.gif\"/>"
                     "<image file=\"anim.gif\" visible=\"false\"/>"));
        // The duplicate is built and takes the define's place in the table.
        const QList<Image *> logos = m_root->findChildren<Image *>(QStringLiteral("logo"));
        QCOMPARE(logos.size(), 2);
        QCOMPARE(m_tables->images.value(QStringLiteral("logo")), logos.last());
        Image *logo = logos.first();
        QCOMPARE(logo->property("File").toString(), QStringLiteral("logo.png"));
        QCOMPARE(logo->accessibleName(), QStringLiteral("Company logo"));
        QCOMPARE(logo->pixmap(Qt::ReturnByValue).size(), QSize(10, 8));

        auto *missing = qobject_cast<Image *>(m_tables->images.value(QStringLiteral("IMAGE_1")));
        QVERIFY(missing);
        QVERIFY(missing->pixmap(Qt::ReturnByValue).isNull());
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Picture of <image> element couldn't be loaded.")});
        QCOMPARE(consoleLinesWith(QStringLiteral("Duplicate define Image")), 1);

        auto *animated = qobject_cast<Image *>(m_tables->images.value(QStringLiteral("IMAGE_3")));
        QVERIFY(animated);
        QVERIFY(animated->movie());
        QCOMPARE(animated->movie()->state(), QMovie::Running);
        QVERIFY(animated->isHidden());
        QSignalSpy frames(animated->movie(), &QMovie::frameChanged);
        QVERIFY(frames.wait(2000));
    }

    void svgEmbeddedInDescription()
    {
        QWidget owner;
        auto *enable = new FakeElement(QStringLiteral("EN"), &owner);
        m_tables->addElement(QStringLiteral("EN"), enable);
        QVERIFY(read("<svgembed define=\"diagram\" size=\"20;20\" opacity=\"0.5\">\n"
                     "  <svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"10\" height=\"10\">\n"
                     "    <rect define=\"EN\" width=\"10\" height=\"10\" fill=\"#00ff00\"/>\n"
                     "    <text define=\"EN.definevalue\" x=\"0\" y=\"9\">&lt;?&gt;</text>\n"
                     "  </svg>\n"
                     "</svgembed>"
                     "<svgembed passive=\"1\"><svg xmlns=\"http://www.w3.org/2000/svg\" width=\"4\" height=\"4\">"
                     "<rect define=\"EN\" width=\"4\" height=\"4\"/></svg></svgembed>"
                     "<svgembed><p>not a picture</p></svgembed>"
                     "<text label=\"after\"/>"));
        QVERIFY(find<Text>(QStringLiteral("TEXT_0")));
        auto *diagram = qobject_cast<Image *>(m_tables->images.value(QStringLiteral("diagram")));
        QVERIFY(diagram);
        QVERIFY(diagram->isSvg());
        QCOMPARE(diagram->property("File").toString(), QStringLiteral("$SVG$"));
        QCOMPARE(diagram->pixmap(Qt::ReturnByValue).size(), QSize(20, 20));
        auto *effect = qobject_cast<QGraphicsOpacityEffect *>(diagram->graphicsEffect());
        QVERIFY(effect);
        QCOMPARE(effect->opacity(), 0.5);
        QVERIFY(diagram->svgSource().contains("&lt;?>") || diagram->svgSource().contains("&lt;?&gt;"));

        auto *passive = qobject_cast<Image *>(m_tables->images.value(QStringLiteral("IMAGE_1")));
        QVERIFY(passive && passive->isPassive());
        const QImage asRead = passive->pixmap(Qt::ReturnByValue).toImage();
        QCOMPARE(m_tables->svgImageDependents.value(QStringLiteral("EN")), QList<QObject *>{diagram});
        QVERIFY(m_tables->svgImageDependents.value(QStringLiteral("dummy_define")).contains(diagram));
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Picture of <image> element couldn't be loaded.")});

        // A change of EN redraws: the shape hides at 0, the text takes the value.
        enable->number = 0;
        QCOMPARE(DisplayRefresh::svgImages(m_tables, QStringLiteral("EN")), 1);
        QCOMPARE(qAlpha(diagram->pixmap(Qt::ReturnByValue).toImage().pixel(18, 2)), 0);
        QVERIFY(diagram->svgSource().contains(">0<"));
        // A passive picture stays as it was read.
        QCOMPARE(passive->pixmap(Qt::ReturnByValue).toImage(), asRead);
        enable->number = 1;
        DisplayRefresh::svgImages(m_tables, QStringLiteral("EN"));
        QCOMPARE(diagram->pixmap(Qt::ReturnByValue).toImage().pixelColor(18, 2), QColor(Qt::green));
        QCOMPARE(passive->pixmap(Qt::ReturnByValue).toImage(), asRead);
        passive->refreshSvg(m_tables);
        QCOMPARE(passive->pixmap(Qt::ReturnByValue).toImage(), asRead);
    }

    void ledsWatchTheirData()
    {
        QVERIFY(read("<led data=\"P0.OUT.PIN13\" bitmask=\"0x4\" oncolor=\"red\" offcolor=\"blue\" shape=\"round\"/>"
                     "<led define=\"L2\"/>"
                     "<led define=\"L3\" data=\"flag\" pos=\"junk\"/>"));
        auto *pin = find<Led>(QStringLiteral("P0_OUT_PIN13_0x4_0"));
        QVERIFY(pin);
        QCOMPARE(pin->onColor(), QStringLiteral("red"));
        QCOMPARE(pin->property("OffColor").toString(), QStringLiteral("blue"));
        QCOMPARE(pin->shape(), QStringLiteral("round"));
        QCOMPARE(pin->mask(), quint64(4));
        QCOMPARE(m_tables->leds.value(QStringLiteral("P0_OUT_PIN13_0x4_0")), pin);
        QCOMPARE(m_tables->ledDependents.value(QStringLiteral("P0.OUT.PIN13")), QList<QObject *>{pin});

        auto *lonely = find<Led>(QStringLiteral("L2"));
        QVERIFY(lonely);
        QCOMPARE(lonely->onColor(), QStringLiteral("green"));
        QCOMPARE(lonely->offColor(), QStringLiteral("grey"));
        QCOMPARE(consoleLinesWith(QStringLiteral("LED without data doesn't make sense: ")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("\"pos\" attribute invalid.")), 1);

        auto *flagLed = find<Led>(QStringLiteral("flag__2"));
        QVERIFY(flagLed);
        QCOMPARE(m_tables->leds.value(QStringLiteral("L3")), flagLed);

        DataClass *flag = record(QStringLiteral("flag"));
        flag->setValue(1);
        QVERIFY(flagLed->state());
        flag->setValue(0);
        QVERIFY(!flagLed->state());
        QVERIFY(!pin->state());
        QVERIFY(m_sink->errors.isEmpty());
    }

    void mathLabelsComputeAndCascade()
    {
        DataClass *prescaler = record(QStringLiteral("PRE"));
        QVERIFY(read("<math define=\"FREQ\" formula=\"16000000 / 2^PRE\" unit=\" Hz\" format=\"%d\"/>"
                     "<math formula=\"FREQ / 1000\" unit=\" kHz\"/>"
                     "<math define=\"QUIET\" formula=\"PRE\" passive=\"1\"/>"
                     "<math define=\"FREQ\" formula=\"1\"/>"));
        QCOMPARE(consoleLinesWith(QStringLiteral("Duplicate define ")), 1);
        auto *freq = dynamic_cast<MathLabel *>(m_tables->element(QStringLiteral("FREQ")));
        QVERIFY(freq);
        QCOMPARE(freq->names, QStringList{QStringLiteral("PRE")});
        QCOMPARE(static_cast<QObject *>(freq)->property("expression").toString(), QStringLiteral("16000000 / 2^PRE"));
        auto *khz = find<MathLabel>(QStringLiteral("MATH_1"));
        QVERIFY(khz);
        QCOMPARE(m_tables->mathDependents.value(QStringLiteral("FREQ")), QList<QObject *>{khz});
        QVERIFY(m_tables->mathDependents.value(QStringLiteral("dummy_define")).contains(khz));
        // A label without a define is no element.
        QVERIFY(!m_tables->element(QStringLiteral("MATH_1")));

        prescaler->setValue(4);
        QCOMPARE(freq->text(), QStringLiteral("1000000 Hz"));
        QCOMPARE(khz->text(), QStringLiteral("1000 kHz"));
        prescaler->setValue(3);
        QCOMPARE(khz->text(), QStringLiteral("2000 kHz"));

        // A passive label is computed but announces nothing.
        auto *quiet = dynamic_cast<MathLabel *>(m_tables->element(QStringLiteral("QUIET")));
        QVERIFY(quiet);
        QCOMPARE(quiet->text(), QStringLiteral("3"));
        const int before = m_host->mathUpdates;
        quiet->showResult(7);
        QCOMPARE(m_host->mathUpdates, before);
        QVERIFY(m_sink->errors.isEmpty());
    }

    void mathFormatsAndBits()
    {
        QVERIFY(read("<math define=\"P.R[3:0]\" formula=\"1\" format=\"%g\"/>"
                     "<math define=\"plain\" formula=\"1\" format=\"%q\"/>"
                     "<math define=\"P.R[7:4]\" formula=\"1\"/>"
                     "<math formula=\" \"/>",
                     true));
        auto *g = dynamic_cast<MathLabel *>(m_tables->element(QStringLiteral("P.R[3:0]")));
        QVERIFY(g);
        QCOMPARE(static_cast<QObject *>(g)->property("max").toLongLong(), 15);
        QCOMPARE(consoleLinesWith(QStringLiteral("Register combined with \"%g\" format: ")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>Unknown format in <a href=\"plain\">plain</a><br>")), 1);
        auto *bound = dynamic_cast<MathLabel *>(m_tables->element(QStringLiteral("P.R[7:4]")));
        QVERIFY(bound);
        // Bits of its own make the label register-bound: decimal by default.
        QCOMPARE(bound->resultFormat().format(), QStringLiteral("%d"));
        QCOMPARE(find<MathLabel>(QStringLiteral("plain"))->resultFormat().format(), QStringLiteral("%q"));
        QCOMPARE(consoleLinesWith(QStringLiteral("Math without formula: ")), 1);
        // The claim reached the hardware model: the label's bits compose the register.
        bound->showResult(2);
        g->showResult(1);
        QCOMPARE(m_model->composeRegisterValue(HardwareModel::findRegister(m_model->findPeripheral(QStringLiteral("P")),
                                                                           QStringLiteral("R"))),
                 QStringLiteral("33"));

        // The empty formula computes to 0 without a crash.
        auto *empty = find<MathLabel>(QStringLiteral("MATH_3"));
        QVERIFY(empty);
        m_cascade->evaluate(empty, QStringLiteral("dummy_define"));
        QCOMPARE(empty->text(), QStringLiteral("0"));
    }

    void mathActions()
    {
        DataClass *source = record(QStringLiteral("SRC"));
        QVERIFY(read("<math define=\"M\" formula=\"SRC*2\">"
                     "<action event=\"changed\" cmd=\"setdef\" data=\"X=M\" cond=\"M&gt;2\"/>"
                     "<action event=\"changed\" cmd=\"sendUSB\" data=\"01\" recdata=\"02\"/>"
                     "<action event=\"clicked\" cmd=\"setDef\" data=\"no\"/>"
                     "<action event=\"changed\" cmd=\"blink\" data=\"\"/>"
                     "<note/>"
                     "</math>"));
        QCOMPARE(consoleLinesWith(QStringLiteral("Can't use event \"clicked\" in UI element \"Math\"")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("Unknown command \"blink\"in action: ")), 1);
        QVERIFY(m_reader->state().usesStick);
        source->setValue(1);
        QCOMPARE(m_host->commands, (QStringList{QStringLiteral("sendUSB:01"), QStringLiteral("recData:02")}));
        m_host->commands.clear();
        source->setValue(2);
        QCOMPARE(m_host->commands,
                 (QStringList{QStringLiteral("setDef:X=M"), QStringLiteral("sendUSB:01"), QStringLiteral("recData:02")}));
    }

    void timersTickAfterStartUp()
    {
        QVERIFY(read("<timer define=\"tick\" run=\"1\" singleShot=\"1\" interval=\"10\">"
                     "<action event=\"changed\" cmd=\"runScript\" data=\"Print(1)\"/>"
                     "<action event=\"selected\" cmd=\"setDef\" data=\"no\"/>"
                     "</timer>"
                     "<timer visible=\"false\" interval=\"5\"/>"));
        auto *tick = qobject_cast<TimerLabel *>(m_tables->timers.value(QStringLiteral("tick")));
        QVERIFY(tick);
        QCOMPARE(m_tables->element(QStringLiteral("tick")), static_cast<ActiveElement *>(tick));
        auto *hidden = qobject_cast<TimerLabel *>(m_tables->timers.value(QStringLiteral("TIMER_1")));
        QVERIFY(hidden && hidden->isHidden());
        QCOMPARE(consoleLinesWith(QStringLiteral("Can't use event \"selected\" in UI element \"Timer\"")), 1);

        // Nothing runs before the start-up step.
        QTest::qWait(50);
        QCOMPARE(tick->counter(), qint64(0));
        startUp();
        // A reset connects again: still one tick.
        tick->connectSignals();
        QTRY_COMPARE(tick->counter(), qint64(1));
        QTest::qWait(50);
        QCOMPARE(tick->counter(), qint64(1));
        QCOMPARE(tick->text(), QStringLiteral("1"));
        QCOMPARE(hidden->counter(), qint64(0));
        QCOMPARE(m_host->commands, QStringList{QStringLiteral("runScript:Print(1)")});
        // A reset starts it anew by `run`.
        tick->applyDefault();
        QCOMPARE(tick->text(), QStringLiteral("0"));
        tick->connectSignals();
        QTRY_COMPARE(tick->counter(), qint64(1));
        // Its ticks never count as the user's changes.
        QVERIFY(!m_host->commands.join(QString()).contains(QStringLiteral("changed:")));
    }

    void logsWriteColumns()
    {
        DataClass *prescaler = record(QStringLiteral("PRE"));
        QVERIFY(read("<math define=\"FREQ\" formula=\"16/2^PRE\"/>"
                     "<log define=\"LOG\" filename=\"out.csv\" append=\"1\" delimiter=\"44\" type=\"csv\">"
                     "<logitem data=\"PRE\" label=\"Prescaler\"/>"
                     "<logitem data=\"FREQ\" label=\"MHz\"><action event=\"changed\" cmd=\"setDef\" data=\"a=1\"/></logitem>"
                     "</log>"
                     "<log/>"));
        QCOMPARE(consoleLinesWith(QStringLiteral("Log without define is not allowed: ")), 1);
        auto *log = dynamic_cast<LogLabel *>(m_tables->element(QStringLiteral("LOG")));
        QVERIFY(log);
        QCOMPARE(log->text(), QStringLiteral("Log"));
        QCOMPARE(log->columnTitles(), (QStringList{QStringLiteral("Prescaler"), QStringLiteral("MHz")}));
        QCOMPARE(log->fileName(), path(QStringLiteral("out.csv")));
        QCOMPARE(log->type(), QStringLiteral("csv"));

        prescaler->setValue(1);
        prescaler->setValue(2);
        QFile file(path(QStringLiteral("out.csv")));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        // Each change writes a line: the record's own, then the label's that follows it.
        QCOMPARE(lines, (QStringList{QStringLiteral("1,"), QStringLiteral("1,8"), QStringLiteral("2,8"),
                                     QStringLiteral("2,4")}));
    }

    void buttonsRunTheirActions()
    {
        QVERIFY(read("<button define=\"go\" label=\"Go\" tooltip=\"Send it\">"
                     "<action event=\"clicked\" cmd=\"sendUSB\" data=\"AA\" recdata=\"BB\"/>"
                     "<action event=\"clicked\" cmd=\"setDef\" data=\"skipped=1\" cond=\"0\"/>"
                     "<action event=\"clicked\" cmd=\"setDef\" data=\"a=1\" cond=\"1\"/>"
                     "<action event=\"released\" cmd=\"sendUSB\" data=\"03\"/>"
                     "<action event=\"pressed\" cmd=\"setDef\" data=\"p=1\"/>"
                     "<action event=\"checked\" cmd=\"setDef\" data=\"x\"/>"
                     "<action event=\"bogus\" cmd=\"setDef\"/>"
                     "<action event=\"clicked\" cmd=\"resetGUI\" data=\"ignored\"/>"
                     "</button>"
                     "<button define=\"go\" label=\"Again\" enabled=\"false\" setDef=\"a=1;b=2\"/>"
                     "<button icon=\"missing.png\"/>"
                     "<button define=\"pic\" icon=\"icon.png\" size=\"16;16\" nograyout=\"1\" enabled=\"true\"/>"));
        QCOMPARE(consoleLinesWith(QStringLiteral("Can't use event \"checked\" in UI element \"Button\"")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("Unknown event \"bogus\"in action: ")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("Duplicate define PushButton")), 1);
        QCOMPARE(consoleLinesWith(QStringLiteral("Icon file not found in UI element")), 1);

        const QList<PushButton *> buttons = m_root->findChildren<PushButton *>();
        QCOMPARE(buttons.size(), 4);
        PushButton *go = buttons.at(0);
        PushButton *again = buttons.at(1);
        QCOMPARE(go->text(), QStringLiteral("Go"));
        QCOMPARE(go->toolTip(), QStringLiteral("Send it"));
        QCOMPARE(go->styleSheet(), PushButton::plainStyle());
        QVERIFY(!again->isEnabled());
        auto *pic = qobject_cast<PushButton *>(m_tables->pushButtons.value(QStringLiteral("pic")));
        QVERIFY(pic);
        QVERIFY(pic->isEnabled());
        QVERIFY(pic->isFlat());
        QCOMPARE(pic->iconSize(), QSize(16, 16));
        QCOMPARE(pic->size(), QSize(16, 16));

        m_root->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_root));
        QTest::mouseClick(go, Qt::LeftButton);
        // Pressed, released, clicked; each event's entries in their order, a
        // condition that does not hold skipping its own.
        QCOMPARE(m_host->commands, (QStringList{QStringLiteral("setDef:p=1"), QStringLiteral("sendUSB:03"), QStringLiteral("sendUSB:AA"),
                                                QStringLiteral("recData:BB"), QStringLiteral("setDef:a=1"),
                                                QStringLiteral("resetGUI:ignored")}));
        m_host->commands.clear();
        QTest::mouseClick(again, Qt::LeftButton);
        QVERIFY(m_host->commands.isEmpty());
        again->setEnabled(true);
        QTest::mouseClick(again, Qt::LeftButton);
        QCOMPARE(m_host->commands, (QStringList{QStringLiteral("setDef:a=1"), QStringLiteral("setDef:b=2")}));
    }

    void setDefReachesDisplays()
    {
        QVERIFY(read("<image define=\"logo\" file=\"anim.gif\"/>"
                     "<button define=\"go\" label=\"Go\" size=\"16;16\"/>"
                     "<button define=\"plain\" label=\"Plain\"/>"
                     "<led define=\"L\" data=\"flag\"/>"
                     "<timer define=\"tick\" interval=\"100\"/>"));
        auto *logo = qobject_cast<Image *>(m_tables->images.value(QStringLiteral("logo")));
        QVERIFY(logo && logo->movie());

        // `.image` replaces the animation with a still; `.save` writes what is shown.
        QVERIFY(SetDef::run(QStringLiteral("logo.image=%1").arg(path(QStringLiteral("logo.png"))), m_tables));
        QVERIFY(!logo->movie());
        QCOMPARE(logo->pixmap(Qt::ReturnByValue).size(), QSize(10, 8));
        QCOMPARE(logo->pixmap(Qt::ReturnByValue).toImage().pixelColor(4, 4), QColor(Qt::blue));
        QVERIFY(SetDef::run(QStringLiteral("logo.save=%1").arg(path(QStringLiteral("saved.png"))), m_tables));
        const QImage saved(path(QStringLiteral("saved.png")));
        QCOMPARE(saved.size(), QSize(10, 8));
        QCOMPARE(saved.pixelColor(4, 4), QColor(Qt::blue));

        QVERIFY(SetDef::run(QStringLiteral("go.image=%1").arg(path(QStringLiteral("icon.png"))), m_tables));
        auto *go = qobject_cast<PushButton *>(m_tables->pushButtons.value(QStringLiteral("go")));
        QVERIFY(go && !go->icon().isNull());
        QCOMPARE(go->iconSize(), QSize(16, 16));
        // Without a size the picture's own is taken.
        QVERIFY(SetDef::run(QStringLiteral("plain.image=%1").arg(path(QStringLiteral("icon.png"))), m_tables));
        QCOMPARE(qobject_cast<PushButton *>(m_tables->pushButtons.value(QStringLiteral("plain")))->iconSize(), QSize(40, 20));
        // A picture that is missing keeps the icon, and is told.
        SetDef::run(QStringLiteral("go.image=%1").arg(path(QStringLiteral("none.png"))), m_tables);
        QCOMPARE(m_sink->errors, QStringList{QStringLiteral("Picture of <button> element couldn't be loaded.")});
        QVERIFY(!go->icon().isNull());

        auto *tick = qobject_cast<TimerLabel *>(m_tables->timers.value(QStringLiteral("tick")));
        QVERIFY(SetDef::run(QStringLiteral("tick.interval=250;tick.run=1"), m_tables));
        QCOMPARE(tick->interval(), 250);
        QVERIFY(tick->isActive());
        QVERIFY(SetDef::run(QStringLiteral("tick.run=0"), m_tables));
        QVERIFY(!tick->isActive());

        m_root->show();
        QVERIFY(SetDef::run(QStringLiteral("L.visible=0"), m_tables));
        auto *led = qobject_cast<Led *>(m_tables->leds.value(QStringLiteral("L")));
        QVERIFY(led && led->isHidden());
    }

    void boardExampleReads()
    {
        const QString file = QuillonRun::buildDir() + QStringLiteral("/examples/nrf52840/nrf52840_board.xml");
        QFile device(file);
        QVERIFY(device.open(QIODevice::ReadOnly | QIODevice::Text));
        ReaderOptions options;
        options.slotHost = m_host;
        options.model = m_model;
        m_reader = new DescriptionReader(*m_tables, options);
        QVERIFY(m_reader->read(&device, file));
        m_root = m_reader->takeRootWidget();
        // Signed, and nothing in it that the readers refuse.
        QVERIFY2(m_sink->errors.isEmpty(), qPrintable(m_sink->errors.join(QLatin1Char('\n'))));
        QCOMPARE(consoleLinesWith(QStringLiteral("XML Error")), 0);

        // The tick frequency follows the prescaler: 16 MHz / 2^n.
        const QString prescaler = QStringLiteral("TIMER0.PRESCALER.PRESCALER");
        QList<MathLabel *> tickLabels;
        for (MathLabel *label : m_root->findChildren<MathLabel *>()) {
            if (label->names.contains(prescaler))
                tickLabels << label;
        }
        QCOMPARE(tickLabels.size(), 1);
        ActiveElement *element = m_tables->element(prescaler);
        QVERIFY(element);
        QVERIFY(element->setValue(QStringLiteral("4"), Selectors::Value));
        m_cascade->update(prescaler);
        QVERIFY2(tickLabels.first()->text().startsWith(QStringLiteral("1000000")), qPrintable(tickLabels.first()->text()));
        QVERIFY(element->setValue(QStringLiteral("0"), Selectors::Value));
        m_cascade->update(prescaler);
        QVERIFY2(tickLabels.first()->text().startsWith(QStringLiteral("16000000")), qPrintable(tickLabels.first()->text()));

        QVERIFY(!m_root->findChildren<Led *>().isEmpty());
        for (Led *led : m_root->findChildren<Led *>())
            QVERIFY2(!led->watchedDefine().isEmpty(), qPrintable(led->objectName()));
    }

private:
    bool read(const QByteArray &body, bool withModel = false);
    QString path(const QString &name) const { return m_dir->filePath(name); }
    // The start-up step: defaults, then signals.
    void startUp();
    DataClass *record(const QString &name);
    template <class T>
    T *find(const QString &name) const
    {
        return m_root ? m_root->findChild<T *>(name) : nullptr;
    }
    int consoleLinesWith(const QString &text) const;

    QTemporaryDir *m_dir = nullptr;
    RecordingSink *m_sink = nullptr;
    DocumentTables *m_tables = nullptr;
    HardwareModel *m_model = nullptr;
    MathCascade *m_cascade = nullptr;
    DisplayHost *m_host = nullptr;
    DescriptionReader *m_reader = nullptr;
    QWidget *m_root = nullptr;
};

bool TestDisplayReaders::read(const QByteArray &body, bool withModel)
{
    const QByteArray text = descriptionText("\t<verticalcontainer>\n" + body + "\n\t</verticalcontainer>", "2.5.0");
    const QString file = path(QStringLiteral("form.xml"));
    writeTextFile(file, signedDescription(text));
    QFile device(file);
    if (!device.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    ReaderOptions options;
    options.slotHost = m_host;
    if (withModel)
        options.model = m_model;
    m_reader = new DescriptionReader(*m_tables, options);
    const bool ok = m_reader->read(&device, file);
    m_root = m_reader->takeRootWidget();
    return ok;
}

void TestDisplayReaders::startUp()
{
    for (ActiveElement *element : m_tables->elementList)
        element->applyDefault();
    for (ActiveElement *element : m_tables->elementList)
        element->connectSignals();
}

DataClass *TestDisplayReaders::record(const QString &name)
{
    auto *data = m_tables->addDataValue(new DataClass(name));
    connect(data, SIGNAL(updateMathLabels()), m_host, SLOT(on_updateMathLabel()));
    connect(data, SIGNAL(updateLEDs()), m_host, SLOT(on_updateLED()));
    connect(data, SIGNAL(updateLEDs()), m_host, SLOT(on_updateSvgImage()));
    connect(data, SIGNAL(updateLEDs()), m_host, SLOT(on_updateLog()));
    return data;
}

int TestDisplayReaders::consoleLinesWith(const QString &text) const
{
    int count = 0;
    for (const QString &line : m_sink->console)
        count += line.contains(text) ? 1 : 0;
    return count;
}

QTEST_MAIN(TestDisplayReaders)
#include "tst_displayreaders.moc"
