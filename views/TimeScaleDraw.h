#pragma once
#include <qwt_scale_draw.h>

// The bottom axis of a plot: sample numbers shown as time. A label is
// (offset + v) * factor, either as a whole number or, with format 1, as the
// time of day "mm:ss" that many seconds after midnight.
class TimeScaleDraw : public QwtScaleDraw
{
public:
    explicit TimeScaleDraw(double factor = 1.0, quint16 format = 0);

    QwtText label(double value) const override;
    // The text alone, for the label and for tests.
    QString labelText(double value) const;

    void setOffset(double offset);
    double offset() const { return m_offset; }
    double factor() const { return m_factor; }
    quint16 format() const { return m_format; }
    // Drops the label cache so a new offset shows at the next paint.
    void refresh() { invalidateCache(); }

private:
    double m_offset = 0.0;
    double m_factor = 1.0;
    quint16 m_format = 0;
};
