#pragma once
#include <qwt_series_data.h>

#include <QPointF>
#include <QRectF>
#include <QtGlobal>

#include <array>

// The samples of one curve: a fixed store of 20,000 floats allocated with
// the curve, so that feeding never allocates. In sweep mode a sample costs
// one store; in scrolling mode ("oszi") a full window moves by one block
// move per sample.
class FloatSeriesData : public QwtSeriesData<QPointF>
{
public:
    static constexpr int Capacity = 20000;
    // The largest sweep length the store can hold.
    static constexpr int MaxLength = Capacity - 1;

    FloatSeriesData(int length, bool oszi, bool history);

    size_t size() const override;
    QPointF sample(size_t i) const override;
    QRectF boundingRect() const override;

    // Adds one sample as the mode says; the counter always grows.
    void append(float value);
    // Empties the store: samples, size, write index and counter.
    void clear();
    // Drops what is drawn but keeps the counter (a new sweep without history).
    void clearSweep();

    // The sweep length; cut to MaxLength, negative counts as 0.
    void setLength(int length);
    int length() const { return m_length; }
    int writeIndex() const { return m_writeIndex; }
    quint32 counter() const { return m_counter; }
    bool oszi() const { return m_oszi; }
    bool history() const { return m_history; }
    float value(int i) const { return (i >= 0 && i < Capacity) ? m_samples[size_t(i)] : 0.0f; }

private:
    int m_length = 0;
    int m_writeIndex = 0;
    quint32 m_counter = 0;
    int m_size = 0;
    bool m_oszi = false;
    bool m_history = true;
    std::array<float, Capacity> m_samples{};
};
