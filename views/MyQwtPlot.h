#pragma once
#include <qwt_plot.h>

#include <QColor>
#include <QList>
#include <QString>

class FloatSeriesData;
class QwtPlotCurve;
class QwtPlotGrid;
class TimeScaleDraw;

// A plot of live values: curves against a sample count shown as time. Each
// curve is fed by one define; the plot sweeps over maxX samples (or scrolls
// in "oszi" mode), widens its y axis when autoscaling, and returns to the
// bounds of the description on `reset`.
class MyQwtPlot : public QwtPlot
{
    Q_OBJECT

public:
    explicit MyQwtPlot(QWidget *parent = nullptr);
    ~MyQwtPlot() override;

    // Settings of the description; setBounds also makes them the initial
    // bounds that `reset` returns to. maxX is cut to what a series holds.
    void setBounds(int minX, int maxX, double minY, double maxY);
    void setModes(bool oszi, bool history);
    void setAutoScale(bool minY, bool maxY);
    void setTimeScale(double factor, quint16 format);
    void setAxisLabels(const QString &xLabel, const QString &yLabel);
    // Bit 0 vertical lines, bit 1 horizontal ones.
    void setGrid(int grid);

    // A curve with its own series; an invalid colour keeps Qwt's pen.
    int addCurve(const QString &label, int width, const QColor &color, const QString &data);

    // One value of a define: added to every curve it feeds. The number of
    // curves fed.
    int feed(const QString &define, double value);
    // One sample for one curve, with sweep restart and autoscale; replots
    // unless told not to.
    void addSample(int curve, double value, bool replotNow = true);

    // The setDef suffixes: reset, minY, maxY, minX, maxX, curveMask,
    // visible. False for an unknown suffix or an unusable number.
    bool command(const QString &suffix, const QString &text);
    void reset();
    void setMinY(double v);
    void setMaxY(double v);
    void setMinX(int v);
    void setMaxX(int v);
    void setCurveMask(quint32 mask);

    // What a catalog record does to a plot it names: the curves start
    // afresh, and the axes show the plot's current bounds again.
    // The form editor's edits: every curve goes (with its legend), and every
    // series starts over in the new modes.
    void removeCurves();
    void setSeriesModes(bool oszi, bool history);
    bool oszi() const { return m_oszi; }
    bool history() const { return m_history; }

    Q_INVOKABLE void clearCurves();
    Q_INVOKABLE void setAxes();

    int curveCount() const { return m_curves.size(); }
    FloatSeriesData *series(int curve) const;
    QwtPlotCurve *curve(int curve) const;
    QString curveData(int curve) const;
    QwtPlotGrid *grid() const { return m_grid; }
    TimeScaleDraw *timeScale() const { return m_timeScale; }

    bool autoScaleMinY = false;
    bool autoScaleMaxY = false;
    float minY = 0;
    float maxY = 1000;
    qint32 minX = 0;
    qint32 maxX = 1000;
    float initialMinY = 0;
    float initialMaxY = 1000;
    qint32 initialMinX = 0;
    qint32 initialMaxX = 1000;
    quint32 curveMask = 0xFFFF;

private:
    struct Curve
    {
        QwtPlotCurve *curve = nullptr;
        FloatSeriesData *series = nullptr;
        QString data;
    };
    void applyCurveMask();
    void restartSweepScale(quint32 counter);

    QList<Curve> m_curves;
    TimeScaleDraw *m_timeScale = nullptr;
    QwtPlotGrid *m_grid = nullptr;
    bool m_oszi = false;
    bool m_history = true;
};
