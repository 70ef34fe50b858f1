#include "reader/PlotReader.h"

#include "elements/Container.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"
#include "reader/CommonAttributes.h"
#include "reader/DescriptionReader.h"
#include "views/FloatSeriesData.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>
#include <qwt_dial_needle.h>
#include <qwt_round_scale_draw.h>
#include <qwt_thermo.h>

#include <QXmlStreamAttributes>

#include <memory>

namespace {

struct Counters
{
    int plot = 0;
    int dial = 0;
    int thermo = 0;
};

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

bool has(const QXmlStreamAttributes &a, const char *name)
{
    return a.hasAttribute(QLatin1String(name));
}

// The form editor writes the attributes back from dynamic properties. A
// name that is already a static property of the widget class (a thermo's
// `orientation`) is left alone: converting the text would change the widget.
void keepAttributes(QObject *object, const QXmlStreamAttributes &a)
{
    for (const QXmlStreamAttribute &attr : a) {
        const QByteArray name = attr.name().toLatin1();
        if (object->metaObject()->indexOfProperty(name.constData()) >= 0)
            continue;
        object->setProperty(name.constData(), attr.value().toString());
    }
}

int integerOf(const QString &text, int fallback)
{
    bool ok = false;
    const qint64 v = NumberFormat::toInt64(NumberFormat::normaliseNumber(text.trimmed()), &ok);
    if (!ok)
        return fallback;
    return int(qBound<qint64>(INT_MIN, v, INT_MAX));
}

double numberOf(const QString &text, double fallback)
{
    bool ok = false;
    const double v = NumberFormat::normaliseNumber(text.trimmed()).toDouble(&ok);
    return ok ? v : fallback;
}

QColor colorOf(const QString &text)
{
    int rgba[4];
    int count = 0;
    if (CommonAttributes::parseColor(text, rgba, &count))
        return QColor(rgba[0], rgba[1], rgba[2], rgba[3]);
    return QColor(text.trimmed());
}

// The define a display follows, as the changed element names itself.
QString feedName(const QString &data)
{
    return Selectors::hasSelector(data) ? Selectors::stripSelector(data) : data;
}

void addDependent(QHash<QString, QList<QObject *>> &table, const QString &define, QObject *dependent)
{
    if (define.isEmpty())
        return;
    QList<QObject *> &list = table[define];
    if (!list.contains(dependent))
        list.append(dependent);
}

void readPlot(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    QString name = attribute(a, "define");
    if (name.isEmpty())
        name = QStringLiteral("PLOT_%1").arg(counters.plot);
    ++counters.plot;

    MyQwtPlot *plot = container->addPlot(attribute(a, "label"), -1, name);
    keepAttributes(plot, a);

    plot->setModes(integerOf(attribute(a, "oszi"), 0) != 0,
                   has(a, "history") ? integerOf(attribute(a, "history"), 1) != 0 : true);
    // A longer sweep than the store holds is cut at reading.
    const int maxX = qBound(0, has(a, "maxX") ? integerOf(attribute(a, "maxX"), 1000) : 1000,
                            FloatSeriesData::MaxLength);
    plot->setBounds(has(a, "minX") ? integerOf(attribute(a, "minX"), 0) : 0, maxX,
                    has(a, "minY") ? numberOf(attribute(a, "minY"), 0) : 0,
                    has(a, "maxY") ? numberOf(attribute(a, "maxY"), 1000) : 1000);
    plot->setAutoScale(integerOf(attribute(a, "autoScaleMinY"), 0) > 0,
                       integerOf(attribute(a, "autoScaleMaxY"), 0) > 0);
    plot->setTimeScale(has(a, "xFactor") ? numberOf(attribute(a, "xFactor"), 1.0) : 1.0,
                       quint16(integerOf(attribute(a, "xScaleFormat"), 0)));
    plot->setAxisLabels(has(a, "xLabel") ? attribute(a, "xLabel") : QString(),
                        has(a, "yLabel") ? attribute(a, "yLabel") : QString());
    if (has(a, "grid"))
        plot->setGrid(integerOf(attribute(a, "grid"), 0));
    reader.tables().plots.insert(name, plot);
    CommonAttributes::apply(reader, plot, a);

    QStringList dataNames;
    QXmlStreamReader &xml = reader.xml();
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("curve")) {
            const QXmlStreamAttributes c = xml.attributes();
            const QString data = attribute(c, "data");
            const int width = has(c, "width") ? qBound(0, integerOf(attribute(c, "width"), 1), 0xFFFF) : 1;
            const QColor color = has(c, "color") ? colorOf(attribute(c, "color")) : QColor();
            plot->addCurve(attribute(c, "label"), width, color, feedName(data));
            dataNames << data;
            addDependent(reader.tables().curveDependents, feedName(data), plot);
        }
        xml.skipCurrentElement();
    }
    plot->setProperty("data", dataNames);
}

void readDial(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    QString name = attribute(a, "define");
    if (name.isEmpty())
        name = QStringLiteral("DIAL_%1").arg(counters.dial);
    ++counters.dial;

    QwtDial *dial = container->addDial(attribute(a, "label"), -1, name);
    keepAttributes(dial, a);
    dial->setReadOnly(true);
    dial->setWrapping(false);
    dial->setOrigin(135.0);
    dial->setScaleArc(0.0, 270.0);
    dial->setScale(has(a, "min") ? numberOf(attribute(a, "min"), 0) : 0,
                   has(a, "max") ? numberOf(attribute(a, "max"), 1000) : 1000);
    auto *scale = new QwtRoundScaleDraw;
    scale->setSpacing(8);
    scale->enableComponent(QwtAbstractScaleDraw::Backbone, false);
    scale->setTickLength(QwtScaleDiv::MinorTick, 0);
    scale->setTickLength(QwtScaleDiv::MediumTick, 4);
    scale->setTickLength(QwtScaleDiv::MajorTick, 8);
    dial->setScaleDraw(scale);
    dial->setNeedle(new QwtDialSimpleNeedle(QwtDialSimpleNeedle::Arrow, true, Qt::red, QColor(Qt::gray).lighter(130)));
    dial->setValue(1);

    const QString data = attribute(a, "data");
    dial->setProperty("data", data);
    reader.tables().dials.insert(name, dial);
    addDependent(reader.tables().dialDependents, feedName(data), dial);
    CommonAttributes::apply(reader, dial, a);
    reader.xml().skipCurrentElement();
}

void readThermo(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    QString name = attribute(a, "define");
    if (name.isEmpty())
        name = QStringLiteral("THERMO_%1").arg(counters.thermo);
    ++counters.thermo;

    QwtThermo *thermo = container->addThermo(attribute(a, "label"), -1, name);
    keepAttributes(thermo, a);
    QPalette palette = thermo->palette();
    if (has(a, "normalcolor")) {
        const QColor color = colorOf(attribute(a, "normalcolor"));
        if (color.isValid())
            palette.setColor(QPalette::ButtonText, color);
    }
    if (has(a, "alarmcolor")) {
        const QColor color = colorOf(attribute(a, "alarmcolor"));
        if (color.isValid())
            palette.setColor(QPalette::Highlight, color);
    }
    thermo->setPalette(palette);
    thermo->setAlarmLevel(has(a, "alarmlevel") ? integerOf(attribute(a, "alarmlevel"), 30) : 30);
    thermo->setAlarmEnabled(true);
    thermo->setScale(has(a, "min") ? numberOf(attribute(a, "min"), 0) : 0,
                     has(a, "max") ? numberOf(attribute(a, "max"), 1000) : 1000);
    if (has(a, "orientation")) {
        const int o = integerOf(attribute(a, "orientation"), -1);
        if (o == 0)
            thermo->setOrientation(Qt::Vertical);
        else if (o == 1)
            thermo->setOrientation(Qt::Horizontal);
    }
    thermo->setScalePosition(QwtThermo::LeadingScale);
    thermo->setValue(550);

    const QString data = attribute(a, "data");
    thermo->setProperty("data", data);
    reader.tables().thermos.insert(name, thermo);
    addDependent(reader.tables().thermoDependents, feedName(data), thermo);
    CommonAttributes::apply(reader, thermo, a);
    reader.xml().skipCurrentElement();
}

} // namespace

void PlotReader::install(DescriptionReader &reader)
{
    auto counters = std::make_shared<Counters>();
    reader.registerHandler(QStringLiteral("plot"), [counters](DescriptionReader &r, Container *c) {
        readPlot(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("dial"), [counters](DescriptionReader &r, Container *c) {
        readDial(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("thermo"), [counters](DescriptionReader &r, Container *c) {
        readThermo(r, c, *counters);
    });
}
