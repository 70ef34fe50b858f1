#include "views/MyQwtPlot.h"

#include "elements/NumberFormat.h"
#include "views/FloatSeriesData.h"
#include "views/TimeScaleDraw.h"

#include <qwt_legend.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_widget.h>
#include <qwt_text.h>

#include <QFont>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace {

QFont titleFont()
{
    QFont font(QStringLiteral("Helvetica"), 12, 50);
    font.setStyleHint(QFont::AnyStyle, QFont::PreferDefault);
    return font;
}

// A number of a command: a plain or hexadecimal integer or a float.
bool commandNumber(const QString &text, double *value)
{
    // A float first, so that "250.75" keeps its fraction; then the
    // hexadecimal and binary spellings.
    bool ok = false;
    const double d = text.trimmed().toDouble(&ok);
    if (ok && std::isfinite(d)) {
        *value = d;
        return true;
    }
    const qint64 integer = NumberFormat::toInt64(text.trimmed(), &ok);
    if (ok)
        *value = double(integer);
    return ok;
}

int clampToInt(double v)
{
    return int(std::clamp(std::trunc(v), double(INT_MIN), double(INT_MAX)));
}

} // namespace

MyQwtPlot::MyQwtPlot(QWidget *parent)
    : QwtPlot(parent)
{
    m_timeScale = new TimeScaleDraw;
    setAxisScaleDraw(QwtPlot::xBottom, m_timeScale);
    setAutoReplot(false);
    setBounds(minX, maxX, minY, maxY);
}

MyQwtPlot::~MyQwtPlot() = default;

void MyQwtPlot::setBounds(int lowX, int highX, double lowY, double highY)
{
    minX = initialMinX = lowX;
    maxX = initialMaxX = std::clamp(highX, 0, FloatSeriesData::MaxLength);
    minY = initialMinY = float(lowY);
    maxY = initialMaxY = float(highY);
    setAxisScale(QwtPlot::xBottom, minX, maxX);
    setAxisScale(QwtPlot::yLeft, minY, maxY);
}

void MyQwtPlot::setModes(bool oszi, bool history)
{
    m_oszi = oszi;
    m_history = history;
    // A scrolling window has no fixed sample numbers to show.
    enableAxis(QwtPlot::xBottom, !oszi);
}

void MyQwtPlot::setAutoScale(bool low, bool high)
{
    autoScaleMinY = low;
    autoScaleMaxY = high;
}

void MyQwtPlot::setTimeScale(double factor, quint16 format)
{
    m_timeScale = new TimeScaleDraw(factor, format);
    setAxisScaleDraw(QwtPlot::xBottom, m_timeScale);
}

void MyQwtPlot::setAxisLabels(const QString &xLabel, const QString &yLabel)
{
    if (!xLabel.isNull()) {
        QwtText title(xLabel);
        title.setFont(titleFont());
        setAxisTitle(QwtPlot::xBottom, title);
        if (m_oszi)
            setFooter(title);
    }
    if (!yLabel.isNull()) {
        QwtText title(yLabel);
        title.setFont(titleFont());
        setAxisTitle(QwtPlot::yLeft, title);
    }
}

void MyQwtPlot::setGrid(int grid)
{
    if (grid == 0)
        return;
    if (!m_grid) {
        m_grid = new QwtPlotGrid;
        m_grid->attach(this);
    }
    m_grid->enableX(grid & 1);
    m_grid->enableY(grid & 2);
}

int MyQwtPlot::addCurve(const QString &label, int width, const QColor &color, const QString &data)
{
    Curve c;
    c.curve = new QwtPlotCurve(label);
    if (color.isValid())
        c.curve->setPen(color, width, Qt::SolidLine);
    c.series = new FloatSeriesData(maxX, m_oszi, m_history);
    c.curve->setData(c.series); // the curve owns its series
    c.curve->attach(this);
    c.data = data;
    if (!label.isEmpty())
        insertLegend(new QwtLegend, QwtPlot::RightLegend);
    m_curves.append(c);
    applyCurveMask();
    return m_curves.size() - 1;
}

FloatSeriesData *MyQwtPlot::series(int curve) const
{
    return curve >= 0 && curve < m_curves.size() ? m_curves.at(curve).series : nullptr;
}

QwtPlotCurve *MyQwtPlot::curve(int curve) const
{
    return curve >= 0 && curve < m_curves.size() ? m_curves.at(curve).curve : nullptr;
}

QString MyQwtPlot::curveData(int curve) const
{
    return curve >= 0 && curve < m_curves.size() ? m_curves.at(curve).data : QString();
}

int MyQwtPlot::feed(const QString &define, double value)
{
    int count = 0;
    for (int i = 0; i < m_curves.size(); ++i) {
        if (!define.isEmpty() && m_curves.at(i).data == define) {
            addSample(i, value, false);
            ++count;
        }
    }
    if (count)
        replot();
    return count;
}

void MyQwtPlot::restartSweepScale(quint32 counter)
{
    m_timeScale->setOffset(double(counter));
    m_timeScale->refresh();
    axisWidget(QwtPlot::xBottom)->update();
    updateAxes();
}

void MyQwtPlot::addSample(int index, double value, bool replotNow)
{
    FloatSeriesData *s = series(index);
    if (!s)
        return;
    s->append(float(value));
    if (!s->oszi() && maxX != 0 && s->counter() % quint32(maxX) == 0) {
        if (!s->history())
            s->clearSweep();
        restartSweepScale(s->counter());
    }
    bool rescale = false;
    if (autoScaleMinY && value < double(minY)) {
        minY = float(value);
        rescale = true;
    }
    if (autoScaleMaxY && value > double(maxY)) {
        maxY = float(std::ceil(value));
        rescale = true;
    }
    if (rescale)
        setAxisScale(QwtPlot::yLeft, minY, maxY);
    if (replotNow)
        replot();
}

void MyQwtPlot::reset()
{
    for (Curve &c : m_curves) {
        c.series->clear();
        c.series->setLength(initialMaxX);
    }
    minY = initialMinY;
    maxY = initialMaxY;
    minX = initialMinX;
    maxX = initialMaxX;
    setAxisScale(QwtPlot::xBottom, minX, maxX);
    setAxisScale(QwtPlot::yLeft, minY, maxY);
    restartSweepScale(0);
    replot();
}

void MyQwtPlot::clearCurves()
{
    for (Curve &c : m_curves)
        c.series->clear();
    restartSweepScale(0);
}

void MyQwtPlot::setAxes()
{
    setAxisScale(QwtPlot::xBottom, minX, maxX);
    setAxisScale(QwtPlot::yLeft, minY, maxY);
}

void MyQwtPlot::setMinY(double v)
{
    minY = float(std::trunc(v));
    setAxisScale(QwtPlot::yLeft, v, axisScaleDiv(QwtPlot::yLeft).upperBound());
    replot();
}

void MyQwtPlot::setMaxY(double v)
{
    maxY = float(std::trunc(v));
    setAxisScale(QwtPlot::yLeft, axisScaleDiv(QwtPlot::yLeft).lowerBound(), v);
    replot();
}

void MyQwtPlot::setMinX(int v)
{
    minX = v;
    setAxisScale(QwtPlot::xBottom, minX, maxX);
    replot();
}

void MyQwtPlot::setMaxX(int v)
{
    // The store has no room beyond its capacity: cut here, not in the caller.
    maxX = std::clamp(v, 0, FloatSeriesData::MaxLength);
    for (Curve &c : m_curves)
        c.series->setLength(maxX);
    setAxisScale(QwtPlot::xBottom, minX, maxX);
    replot();
}

void MyQwtPlot::setCurveMask(quint32 mask)
{
    curveMask = mask;
    applyCurveMask();
    replot();
}

void MyQwtPlot::applyCurveMask()
{
    for (int i = 0; i < m_curves.size(); ++i)
        m_curves.at(i).curve->setVisible((curveMask >> (i % 32)) & 1u);
}

bool MyQwtPlot::command(const QString &suffix, const QString &text)
{
    if (suffix == QLatin1String("reset")) {
        if (text.trimmed().compare(QLatin1String("reset"), Qt::CaseInsensitive) != 0)
            return false;
        reset();
        return true;
    }
    double v = 0;
    if (!commandNumber(text, &v))
        return false;
    if (suffix == QLatin1String("minY"))
        setMinY(v);
    else if (suffix == QLatin1String("maxY"))
        setMaxY(v);
    else if (suffix == QLatin1String("minX"))
        setMinX(clampToInt(v));
    else if (suffix == QLatin1String("maxX"))
        setMaxX(clampToInt(v));
    else if (suffix == QLatin1String("curveMask"))
        setCurveMask(quint32(qint64(std::trunc(v))));
    else if (suffix == QLatin1String("visible"))
        setVisible(v != 0);
    else
        return false;
    return true;
}

void MyQwtPlot::removeCurves()
{
    for (Curve &c : m_curves) {
        c.curve->detach();
        delete c.curve; // and its series with it
    }
    m_curves.clear();
    insertLegend(nullptr);
    replot();
}

void MyQwtPlot::setSeriesModes(bool oszi, bool history)
{
    setModes(oszi, history);
    for (Curve &c : m_curves) {
        c.series = new FloatSeriesData(maxX, m_oszi, m_history);
        c.curve->setData(c.series); // drops the former series
    }
    restartSweepScale(0);
    replot();
}
