#include <QtTest>

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/SetDef.h"
#include "elements/SignalRelay.h"
#include "model/LockEngine.h"
#include "reader/DescriptionReader.h"
#include "views/FloatSeriesData.h"
#include "views/GaugeFeed.h"
#include "views/MyQwtPlot.h"
#include "views/TimeScaleDraw.h"

#include <qwt_dial.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_div.h>
#include <qwt_thermo.h>

#include <QTemporaryDir>

// Stands in for the main window: the feed slots forward to GaugeFeed, as
// the window's do.
class GaugeHost : public QObject
{
    Q_OBJECT
public:
    DocumentTables *tables = nullptr;
    int curveFeeds = 0;

public slots:
    void on_updateCurve() { curveFeeds += GaugeFeed::curves(tables, from()); }
    void on_updateDial() { GaugeFeed::dials(tables, from()); }
    void on_updateThermo() { GaugeFeed::thermos(tables, from()); }
    void on_updateLED() {}
    void on_updateMathLabel() {}

private:
    QObject *from() const
    {
        QObject *origin = SignalRelay::origin(this);
        return origin ? origin : sender();
    }
};

// Plots, their series and time scale, dials and thermometers: from the
// description to the samples fed by defines and the setDef commands.
class TestPlots : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_sink = new RecordingSink;
        m_tables = new DocumentTables;
        DocumentTables::setCurrent(m_tables);
        m_locks = new LockEngine(m_tables);
        LockEngine::setCurrent(m_locks);
        m_host = new GaugeHost;
        m_host->tables = m_tables;
    }

    void cleanup()
    {
        delete m_root;
        m_root = nullptr;
        delete m_reader;
        m_reader = nullptr;
        delete m_host;
        LockEngine::setCurrent(nullptr);
        delete m_locks;
        DocumentTables::setCurrent(nullptr);
        delete m_tables;
        delete m_sink;
    }

    // Sweep mode writes in place and wraps after the slot at `length`;
    // scrolling mode moves the window once it is full.
    void seriesModes_data()
    {
        QTest::addColumn<bool>("oszi");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("samples");
        QTest::newRow("sweep, partly filled") << false << 10 << 4;
        QTest::newRow("sweep, wrapped") << false << 5 << 13;
        QTest::newRow("scroll, partly filled") << true << 10 << 6;
        QTest::newRow("scroll, moving") << true << 5 << 23;
        QTest::newRow("no length") << false << 0 << 7;
        QTest::newRow("scroll without length") << true << 0 << 7;
    }

    void seriesModes()
    {
        QFETCH(bool, oszi);
        QFETCH(int, length);
        QFETCH(int, samples);
        FloatSeriesData series(length, oszi, true);
        // A model of what the store must hold, built the slow way.
        QVector<float> model(FloatSeriesData::Capacity, 0.0f);
        int index = 0;
        int size = 0;
        for (int i = 0; i < samples; ++i) {
            const float v = float(100 + i);
            series.append(v);
            size = qMin(size + 1, length);
            if (!oszi) {
                model[index] = v;
                index = index >= length ? 0 : index + 1;
            } else if (index >= length) {
                if (length > 0) {
                    model.remove(0);
                    model.insert(length - 1, v);
                    model.resize(FloatSeriesData::Capacity);
                }
            } else {
                model[index++] = v;
            }
        }
        QCOMPARE(int(series.size()), size);
        QCOMPARE(series.counter(), quint32(samples));
        QCOMPARE(series.writeIndex(), index);
        for (int i = 0; i <= length && i < FloatSeriesData::Capacity; ++i)
            QCOMPARE(series.value(i), model.at(i));
        for (int i = 0; i < int(series.size()); ++i)
            QCOMPARE(series.sample(size_t(i)), QPointF(i, double(model.at(i))));
        QCOMPARE(series.boundingRect(), QRectF(0, 0, 400, 860));
    }

    void seriesLengthIsCut()
    {
        FloatSeriesData series(30000, false, true);
        QCOMPARE(series.length(), 19999);
        series.setLength(-5);
        QCOMPARE(series.length(), 0);
        // Writing at the cut length stays inside the store.
        series.setLength(100000);
        for (int i = 0; i < 2 * FloatSeriesData::Capacity; ++i)
            series.append(1.0f);
        QCOMPARE(int(series.size()), 19999);
        QVERIFY(series.writeIndex() <= 19999);
    }

    void timeScaleLabels_data()
    {
        QTest::addColumn<double>("offset");
        QTest::addColumn<double>("factor");
        QTest::addColumn<int>("format");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << 0.0 << 1.0 << 0 << 250.0 << "250";
        QTest::newRow("offset and factor") << 1000.0 << 0.5 << 0 << 5.0 << "503";
        QTest::newRow("rounded") << 0.0 << 0.3 << 0 << 5.0 << "2";
        QTest::newRow("minutes and seconds") << 0.0 << 1.0 << 1 << 125.0 << "02:05";
        QTest::newRow("past an hour") << 3600.0 << 1.0 << 1 << 61.0 << "01:01";
    }

    void timeScaleLabels()
    {
        QFETCH(double, offset);
        QFETCH(double, factor);
        QFETCH(int, format);
        QFETCH(double, value);
        QFETCH(QString, text);
        TimeScaleDraw scale(factor, quint16(format));
        scale.setOffset(offset);
        QCOMPARE(scale.labelText(value), text);
        QCOMPARE(scale.label(value).text(), text);
    }

    void plotAttributes()
    {
        QVERIFY(read("<plot define=\"P\" oszi=\"1\" history=\"0\" maxX=\"30000\" minY=\"-5\" maxY=\"2.5\" grid=\"3\""
                     " xLabel=\"t\" yLabel=\"mV\" xFactor=\"0.5\" xScaleFormat=\"1\" autoScaleMaxY=\"1\">"
                     "<curve label=\"A\" color=\"255;0;0\" width=\"3\" data=\"a\"/>"
                     "<note/>"
                     "<curve data=\"\"/>"
                     "<curve label=\"C\" data=\"c.value\"/>"
                     "</plot>"
                     "<plot define=\"Q\" grid=\"0\"/>"));
        auto *p = plot("P");
        QVERIFY(p);
        QCOMPARE(p->maxX, 19999);
        QCOMPARE(p->initialMaxX, 19999);
        QCOMPARE(p->minY, -5.0f);
        QCOMPARE(p->maxY, 2.5f);
        QVERIFY(p->autoScaleMaxY);
        QVERIFY(!p->autoScaleMinY);
        QCOMPARE(p->curveCount(), 3);
        QCOMPARE(p->series(0)->length(), 19999);
        QVERIFY(p->series(0)->oszi());
        QVERIFY(!p->series(0)->history());
        QCOMPARE(p->curve(0)->pen().color(), QColor(255, 0, 0));
        QCOMPARE(p->curve(0)->pen().widthF(), 3.0);
        QCOMPARE(p->curve(0)->title().text(), QStringLiteral("A"));
        QCOMPARE(p->property("data").toStringList(), (QStringList{"a", "", "c.value"}));
        QCOMPARE(p->property("maxX").toString(), QStringLiteral("30000"));
        QCOMPARE(p->property("xLabel").toString(), QStringLiteral("t"));
        QVERIFY(!p->axisEnabled(QwtPlot::xBottom));
        QCOMPARE(p->footer().text(), QStringLiteral("t"));
        QCOMPARE(p->axisTitle(QwtPlot::yLeft).text(), QStringLiteral("mV"));
        QCOMPARE(p->axisTitle(QwtPlot::yLeft).font().family(), QStringLiteral("Helvetica"));
        QCOMPARE(p->timeScale()->factor(), 0.5);
        QCOMPARE(p->timeScale()->format(), quint16(1));
        QVERIFY(p->grid());
        QVERIFY(p->grid()->xEnabled());
        QVERIFY(p->grid()->yEnabled());
        QVERIFY(p->legend());
        QCOMPARE(m_tables->curveDependents.value("a"), QList<QObject *>{p});
        QCOMPARE(m_tables->curveDependents.value("c"), QList<QObject *>{p});
        QVERIFY(!m_tables->curveDependents.contains(QString()));

        auto *q = plot("Q");
        QVERIFY(q);
        QVERIFY(!q->grid());
        QCOMPARE(q->maxX, 1000);
        QVERIFY(q->axisEnabled(QwtPlot::xBottom));
    }

    // Feeding through the define's signal: sweep restarts, history, the
    // time scale's offset, autoscale.
    void sweepAndAutoscale_data()
    {
        QTest::addColumn<int>("history");
        QTest::newRow("history kept") << 1;
        QTest::newRow("history cleared") << 0;
    }

    void sweepAndAutoscale()
    {
        QFETCH(int, history);
        QVERIFY(read(QStringLiteral("<var define=\"a\"/>"
                                    "<plot define=\"P\" maxX=\"4\" minY=\"10\" maxY=\"20\" history=\"%1\""
                                    " autoScaleMinY=\"1\" autoScaleMaxY=\"1\"><curve data=\"a\"/><curve data=\"a\"/></plot>")
                         .arg(history)
                         .toUtf8()));
        auto *p = plot("P");
        DataClass *a = m_tables->dataValue("a");
        QVERIFY(p && a);
        const QList<quint32> values = {12, 15, 30, 11, 5};
        for (quint32 v : values)
            a->setValue(v);
        QCOMPARE(m_host->curveFeeds, 2 * values.size());
        // Four samples completed a sweep; the fifth starts the next.
        FloatSeriesData *s = p->series(0);
        QCOMPARE(s->counter(), quint32(5));
        QCOMPARE(p->timeScale()->offset(), 4.0);
        if (history) {
            QCOMPARE(int(s->size()), 4);
            QCOMPARE(s->value(0), 12.0f);
            QCOMPARE(s->value(4), 5.0f);
        } else {
            QCOMPARE(int(s->size()), 1);
            QCOMPARE(s->value(0), 5.0f);
            QCOMPARE(s->value(1), 0.0f);
        }
        QCOMPARE(p->series(1)->counter(), quint32(5));
        QCOMPARE(p->minY, 5.0f);
        QCOMPARE(p->maxY, 30.0f);
        QCOMPARE(p->axisScaleDiv(QwtPlot::yLeft).lowerBound(), 5.0);
        QCOMPARE(p->axisScaleDiv(QwtPlot::yLeft).upperBound(), 30.0);
    }

    void elementAndMissingFeeds()
    {
        QVERIFY(read("<var define=\"a\"/>"
                     "<plot define=\"P\" maxX=\"0\"><curve data=\"a\"/><curve data=\"nobody\"/></plot>"
                     "<dial define=\"D\" data=\"nobody\"/>"));
        auto *p = plot("P");
        DataClass *a = m_tables->dataValue("a");
        a->setValue(3);
        a->setValue(4);
        // A maxX of 0 never restarts a sweep and never shows a sample.
        QCOMPARE(p->series(0)->counter(), quint32(2));
        QCOMPARE(int(p->series(0)->size()), 0);
        QCOMPARE(p->timeScale()->offset(), 0.0);
        // A name nothing bears feeds nothing: the consumers keep their start.
        QCOMPARE(p->series(1)->counter(), quint32(0));
        QCOMPARE(dial("D")->value(), 1.0);
        QVERIFY(m_sink->errors.isEmpty());
    }

    void plotCommands()
    {
        QVERIFY(read("<var define=\"a\"/><var define=\"limit\" default=\"700\"/>"
                     "<plot define=\"P\" maxX=\"10\" minY=\"0\" maxY=\"100\" autoScaleMaxY=\"1\">"
                     "<curve data=\"a\"/><curve data=\"a\"/><curve data=\"a\"/></plot>"));
        m_tables->dataValue("limit")->applyDefault();
        auto *p = plot("P");
        DataClass *a = m_tables->dataValue("a");
        for (quint32 v : {10u, 20u, 300u})
            a->setValue(v);
        QCOMPARE(p->maxY, 300.0f);

        QVERIFY(SetDef::run("P.maxY=250.75"));
        QCOMPARE(p->maxY, 250.0f);
        QCOMPARE(p->axisScaleDiv(QwtPlot::yLeft).upperBound(), 250.75);
        QVERIFY(SetDef::run("P.minY=-3.5"));
        QCOMPARE(p->minY, -3.0f);
        QCOMPARE(p->axisScaleDiv(QwtPlot::yLeft).lowerBound(), -3.5);
        QVERIFY(SetDef::run("P.minX=2"));
        QCOMPARE(p->minX, 2);
        // The right side may name a define; a maxX past the store is cut.
        QVERIFY(SetDef::run("P.maxX=limit"));
        QCOMPARE(p->maxX, 700);
        QCOMPARE(p->series(2)->length(), 700);
        QVERIFY(SetDef::run("P.maxX=30000"));
        QCOMPARE(p->maxX, 19999);
        QCOMPARE(p->series(0)->length(), 19999);
        QCOMPARE(p->axisScaleDiv(QwtPlot::xBottom).upperBound(), 19999.0);
        // The samples survive bounds and masks.
        QCOMPARE(p->series(0)->counter(), quint32(3));

        QVERIFY(SetDef::run("P.curveMask=5"));
        QVERIFY(p->curve(0)->isVisible());
        QVERIFY(!p->curve(1)->isVisible());
        QVERIFY(p->curve(2)->isVisible());
        QVERIFY(SetDef::run("P.curveMask=0"));
        for (int i = 0; i < 3; ++i)
            QVERIFY(!p->curve(i)->isVisible());
        a->setValue(1);
        QCOMPARE(p->series(0)->counter(), quint32(4));

        QVERIFY(SetDef::run("P.visible=0"));
        QVERIFY(p->isHidden());

        // Only the word "reset" resets.
        SetDef::run("P.reset=1");
        QCOMPARE(p->series(0)->counter(), quint32(4));
        QVERIFY(SetDef::run("P.reset=reset"));
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(p->series(i)->counter(), quint32(0));
            QCOMPARE(int(p->series(i)->size()), 0);
            QCOMPARE(p->series(i)->value(0), 0.0f);
            QCOMPARE(p->series(i)->length(), 10);
        }
        QCOMPARE(p->maxX, 10);
        QCOMPARE(p->minX, 0);
        QCOMPARE(p->maxY, 100.0f);
        QCOMPARE(p->minY, 0.0f);
        QCOMPARE(p->axisScaleDiv(QwtPlot::yLeft).upperBound(), 100.0);
        QCOMPARE(p->timeScale()->offset(), 0.0);
    }

    void curveMaskRotates()
    {
        MyQwtPlot p;
        for (int i = 0; i < 34; ++i)
            p.addCurve(QString(), 1, QColor(), QStringLiteral("x"));
        p.setCurveMask(0x2);
        QVERIFY(!p.curve(0)->isVisible());
        QVERIFY(p.curve(1)->isVisible());
        QVERIFY(!p.curve(32)->isVisible());
        QVERIFY(p.curve(33)->isVisible());
    }

    void dialsAndThermos()
    {
        QVERIFY(read("<var define=\"level\"/>"
                     "<dial define=\"D\" min=\"0x10\" max=\"500\" data=\"level\"/>"
                     "<thermo define=\"T\" min=\"0\" max=\"100\" alarmlevel=\"80\" orientation=\"1\""
                     " normalcolor=\"0;0;255\" alarmcolor=\"255;0;0\" data=\"level\"/>"
                     "<thermo define=\"T2\" orientation=\"2\"/>"
                     "<thermo define=\"T3\" orientation=\"0\"/>"));
        QwtDial *d = dial("D");
        QVERIFY(d);
        QCOMPARE(d->lowerBound(), 16.0);
        QCOMPARE(d->upperBound(), 500.0);
        QVERIFY(d->isReadOnly());
        QVERIFY(!d->wrapping());
        QCOMPARE(d->origin(), 135.0);
        QCOMPARE(d->property("data").toString(), QStringLiteral("level"));
        QCOMPARE(d->value(), 16.0); // the start value 1, kept inside the scale

        auto *t = qobject_cast<QwtThermo *>(m_tables->thermos.value("T"));
        QVERIFY(t);
        QCOMPARE(t->orientation(), Qt::Horizontal);
        QCOMPARE(t->alarmLevel(), 80.0);
        QCOMPARE(t->palette().color(QPalette::ButtonText), QColor(0, 0, 255));
        QCOMPARE(t->palette().color(QPalette::Highlight), QColor(255, 0, 0));
        QCOMPARE(t->scalePosition(), QwtThermo::LeadingScale);
        QCOMPARE(t->property("alarmlevel").toString(), QStringLiteral("80"));
        QCOMPARE(t->value(), 550.0);
        QwtThermo defaults;
        auto *t2 = qobject_cast<QwtThermo *>(m_tables->thermos.value("T2"));
        QCOMPARE(t2->orientation(), defaults.orientation());
        QCOMPARE(t2->value(), 550.0);
        QCOMPARE(qobject_cast<QwtThermo *>(m_tables->thermos.value("T3"))->orientation(), Qt::Vertical);

        DataClass *level = m_tables->dataValue("level");
        level->setValue(42);
        QCOMPARE(d->value(), 42.0);
        QCOMPARE(t->value(), 42.0);
        QCOMPARE(t2->value(), 550.0);
    }

    // A dial bound that would leave its value outside is refused and
    // counted as a conflict; a fitting one is set.
    void dialBounds_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<double>("lower");
        QTest::addColumn<double>("upper");
        QTest::addColumn<int>("conflicts");
        QTest::newRow("max above the value") << "D.max=200" << 0.0 << 200.0 << 0;
        QTest::newRow("max below the value") << "D.max=50" << 0.0 << 1000.0 << 1;
        QTest::newRow("min below the value") << "D.min=90" << 90.0 << 1000.0 << 0;
        QTest::newRow("min above the value") << "D.min=150" << 0.0 << 1000.0 << 1;
        QTest::newRow("both refused") << "D.min=150;D.max=20" << 0.0 << 1000.0 << 2;
    }

    void dialBounds()
    {
        QFETCH(QString, command);
        QFETCH(double, lower);
        QFETCH(double, upper);
        QFETCH(int, conflicts);
        QVERIFY(read("<var define=\"level\"/><dial define=\"D\" data=\"level\"/>"));
        m_tables->dataValue("level")->setValue(100);
        SetDef::run(command);
        QwtDial *d = dial("D");
        QCOMPARE(d->lowerBound(), lower);
        QCOMPARE(d->upperBound(), upper);
        QCOMPARE(m_locks->conflictCount(), conflicts);
        QCOMPARE(d->value(), 100.0);
    }

    void badCommandsReport()
    {
        QVERIFY(read("<plot define=\"P\"><curve data=\"a\"/></plot>"));
        m_sink->clear();
        SetDef::run("P.maxX=abc");
        QVERIFY(m_sink->contains(QStringLiteral("P.maxX=abc")));
        QCOMPARE(plot("P")->maxX, 1000);
    }

private:
    bool read(const QByteArray &body)
    {
        QTemporaryDir dir;
        const QByteArray text = descriptionText("\t<verticalcontainer>\n" + body + "\n\t</verticalcontainer>", "2.5.0");
        const QString file = dir.filePath(QStringLiteral("form.xml"));
        writeTextFile(file, signedDescription(text));
        QFile device(file);
        if (!device.open(QIODevice::ReadOnly | QIODevice::Text))
            return false;
        ReaderOptions options;
        options.slotHost = m_host;
        m_reader = new DescriptionReader(*m_tables, options);
        const bool ok = m_reader->read(&device, file);
        m_root = m_reader->takeRootWidget();
        return ok;
    }
    MyQwtPlot *plot(const char *name) const { return qobject_cast<MyQwtPlot *>(m_tables->plots.value(name)); }
    QwtDial *dial(const char *name) const { return qobject_cast<QwtDial *>(m_tables->dials.value(name)); }

    RecordingSink *m_sink = nullptr;
    DocumentTables *m_tables = nullptr;
    LockEngine *m_locks = nullptr;
    GaugeHost *m_host = nullptr;
    DescriptionReader *m_reader = nullptr;
    QWidget *m_root = nullptr;
};

QTEST_MAIN(TestPlots)
#include "tst_plots.moc"
