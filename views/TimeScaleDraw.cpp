#include "views/TimeScaleDraw.h"

#include <QTime>
#include <qwt_text.h>

#include <cmath>

TimeScaleDraw::TimeScaleDraw(double factor, quint16 format)
    : m_factor(factor)
    , m_format(format)
{
}

QwtText TimeScaleDraw::label(double value) const
{
    return QwtText(labelText(value));
}

QString TimeScaleDraw::labelText(double value) const
{
    const double t = (m_offset + value) * m_factor;
    if (m_format == 1)
        return QTime(0, 0, 0).addSecs(int(t)).toString(QStringLiteral("mm:ss"));
    return QString::number(qRound64(t));
}

void TimeScaleDraw::setOffset(double offset)
{
    m_offset = offset;
}
