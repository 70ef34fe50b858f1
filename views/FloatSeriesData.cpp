#include "views/FloatSeriesData.h"

#include <algorithm>
#include <cstring>

FloatSeriesData::FloatSeriesData(int length, bool oszi, bool history)
    : m_oszi(oszi)
    , m_history(history)
{
    setLength(length);
}

size_t FloatSeriesData::size() const
{
    return size_t(m_size);
}

QPointF FloatSeriesData::sample(size_t i) const
{
    return QPointF(double(i), i < size_t(Capacity) ? double(m_samples[i]) : 0.0);
}

QRectF FloatSeriesData::boundingRect() const
{
    // A fixed rectangle: the plot's axes, not the data, set the view, and
    // Qwt need not scan the samples on every replot.
    return QRectF(0, 0, 400, 860);
}

void FloatSeriesData::setLength(int length)
{
    m_length = std::clamp(length, 0, MaxLength);
    // A shorter sweep must not leave the indexes beyond it.
    m_size = std::min(m_size, m_length);
    m_writeIndex = std::min(m_writeIndex, m_length);
}

void FloatSeriesData::append(float value)
{
    if (m_size < m_length)
        ++m_size;
    if (!m_oszi) {
        // The slot at position length is written once per sweep, then the
        // index returns to the front.
        m_samples[size_t(m_writeIndex)] = value;
        if (m_writeIndex >= m_length)
            m_writeIndex = 0;
        else
            ++m_writeIndex;
    } else if (m_writeIndex >= m_length) {
        if (m_length > 0) {
            // Only the window moves: the cost does not grow with the store.
            std::memmove(m_samples.data(), m_samples.data() + 1, sizeof(float) * size_t(m_length - 1));
            m_samples[size_t(m_length - 1)] = value;
        }
    } else {
        m_samples[size_t(m_writeIndex)] = value;
        ++m_writeIndex;
    }
    ++m_counter;
}

void FloatSeriesData::clear()
{
    clearSweep();
    m_counter = 0;
}

void FloatSeriesData::clearSweep()
{
    m_samples.fill(0.0f);
    m_size = 0;
    m_writeIndex = 0;
}
