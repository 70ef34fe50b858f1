#pragma once
#include <QColor>
#include <QRectF>
#include <QString>

class PinMappingDocument;
struct Pin;

// Where the chip, its pins and the function boxes go, in the chip item's
// own coordinates. Plain numbers, so that the layout can be checked without
// painting; the text widths come from the caller (font metrics on screen).
//
// The item is a square of the chip size; the body is that square less 200
// on each side. Each side's pin pitch assumes the pins spread evenly over
// the four sides: (side length - margins) * 4 / (n + 4).
class ChipGeometry
{
public:
    explicit ChipGeometry(const PinMappingDocument &document);

    QRectF bounds() const { return m_bounds; }
    QRectF body() const { return m_body; }
    qreal horizontalSpacing() const { return m_hSpacing; }
    qreal verticalSpacing() const { return m_vSpacing; }

    // The coordinate along its side where the pin sits (y for the left and
    // right sides, x for bottom and top).
    qreal anchor(const Pin &pin) const;
    // Length of a pin's or function's box across the side: the fixed pin
    // size, or the text width, plus room for the frame.
    qreal boxLength(qreal textWidth) const;
    // The pin's box, unrotated; empty for a pin off the four sides.
    QRectF pinBox(const Pin &pin, qreal textWidth) const;
    // The box of a function beyond the pin's box: `used` is the length the
    // functions already drawn on the pin take (their boxes and arrows).
    QRectF functionBox(const Pin &pin, const QRectF &pinBox, qreal used, qreal length) const;
    // What `used` grows by for one function box of that length.
    qreal advance(qreal length) const { return m_arrow + length; }
    qreal arrowSize() const { return m_arrow; }

    // Text on the bottom and top sides runs upwards.
    static bool isRotated(const Pin &pin);
    static bool isDrawn(const Pin &pin);
    // "nr: name".
    static QString pinLabel(const Pin &pin);
    // White on dark colours, black on light ones.
    static QColor textColorFor(const QColor &background);

    static constexpr int kBoxMargin = 18;
    static constexpr int kHorizontalBoxHeight = 14;
    static constexpr int kRotatedBoxHeight = 16;

private:
    QRectF m_bounds;
    QRectF m_body;
    qreal m_hSpacing = 0;
    qreal m_vSpacing = 0;
    qreal m_pinSize = 0;
    qreal m_arrow = 0;
    qreal m_top = 0;
    qreal m_bottom = 0;
    qreal m_left = 0;
    qreal m_right = 0;
};
