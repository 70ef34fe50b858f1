#include "views/ChipGeometry.h"

#include "views/PinMappingDocument.h"

ChipGeometry::ChipGeometry(const PinMappingDocument &document)
{
    const qreal size = qBound<qreal>(PinMappingDocument::kMinChipSize, document.chipSize,
                                     PinMappingDocument::kMaxChipSize);
    m_bounds = QRectF(0, 0, size, size);
    m_body = m_bounds.adjusted(200, 200, -200, -200);
    m_pinSize = qMin<qreal>(document.pinSize, PinMappingDocument::kMaxBoxSize);
    m_arrow = qMin<qreal>(document.arrowSize, PinMappingDocument::kMaxBoxSize);
    m_top = document.marginTopY;
    m_bottom = document.marginBottomY;
    m_left = document.marginLeftX;
    m_right = document.marginRightX;
    const qreal n = document.pins.size();
    m_hSpacing = (m_body.width() - (m_left + m_right)) * 4 / (n + 4);
    m_vSpacing = (m_body.height() - (m_top + m_bottom)) * 4 / (n + 4);
}

qreal ChipGeometry::anchor(const Pin &pin) const
{
    const qreal step = pin.index + 1;
    switch (pin.quadrant) {
    case 0: return m_body.top() + m_top + step * m_vSpacing;
    case 1: return m_body.left() + m_left + step * m_hSpacing;
    case 2: return m_body.bottom() - m_bottom - step * m_vSpacing;
    case 3: return m_body.right() - m_right - step * m_hSpacing;
    default: return 0;
    }
}

qreal ChipGeometry::boxLength(qreal textWidth) const
{
    const qreal inner = m_pinSize > 0 ? m_pinSize : qBound<qreal>(0, textWidth, PinMappingDocument::kMaxBoxSize);
    return inner + kBoxMargin;
}

QRectF ChipGeometry::pinBox(const Pin &pin, qreal textWidth) const
{
    const qreal length = boxLength(textWidth);
    const qreal at = anchor(pin);
    switch (pin.quadrant) {
    case 0: return QRectF(m_body.left() - length, at + 3 - kHorizontalBoxHeight, length, kHorizontalBoxHeight);
    case 1: return QRectF(at - kRotatedBoxHeight + 4, m_body.bottom(), kRotatedBoxHeight, length);
    case 2: return QRectF(m_body.right(), at + 3 - kHorizontalBoxHeight, length, kHorizontalBoxHeight);
    case 3: return QRectF(at - kRotatedBoxHeight + 4, m_body.top() - length, kRotatedBoxHeight, length);
    default: return QRectF();
    }
}

QRectF ChipGeometry::functionBox(const Pin &pin, const QRectF &box, qreal used, qreal length) const
{
    const qreal gap = used + m_arrow;
    switch (pin.quadrant) {
    case 0: return QRectF(box.left() - gap - length, box.top(), length, box.height());
    case 1: return QRectF(box.left(), box.bottom() + gap, box.width(), length);
    case 2: return QRectF(box.right() + gap, box.top(), length, box.height());
    case 3: return QRectF(box.left(), box.top() - gap - length, box.width(), length);
    default: return QRectF();
    }
}

bool ChipGeometry::isRotated(const Pin &pin)
{
    return pin.quadrant == 1 || pin.quadrant == 3;
}

bool ChipGeometry::isDrawn(const Pin &pin)
{
    return pin.quadrant <= 3;
}

QString ChipGeometry::pinLabel(const Pin &pin)
{
    return QStringLiteral("%1: %2").arg(pin.nr).arg(pin.pinname);
}

QColor ChipGeometry::textColorFor(const QColor &background)
{
    return background.lightness() < 128 ? QColor(Qt::white) : QColor(Qt::black);
}
