#include "views/QGraphicsChipItem.h"

#include "shell/MainWindow.h"
#include "views/ChipGeometry.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingState.h"

#include <QFontMetricsF>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QMetaObject>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>
#include <QVector>
#include <QtMath>

namespace {

void drawBoxText(QPainter *painter, const QRectF &box, bool rotated, const QString &text, const QColor &color)
{
    painter->setPen(color);
    if (!rotated) {
        painter->drawText(box.adjusted(3, 0, -3, 0), Qt::AlignVCenter | Qt::AlignHCenter, text);
        return;
    }
    painter->save();
    painter->translate(box.bottomLeft());
    painter->rotate(-90);
    painter->drawText(QRectF(0, 0, box.height(), box.width()).adjusted(3, 0, -3, 0),
                      Qt::AlignVCenter | Qt::AlignHCenter, text);
    painter->restore();
}

// A small arrow across the gap between `from` and `to` (two points on the
// line from the pin outwards); the head sits at `to`.
void drawArrow(QPainter *painter, const QPointF &from, const QPointF &to)
{
    painter->drawLine(from, to);
    const QPointF d = to - from;
    const qreal length = qSqrt(d.x() * d.x() + d.y() * d.y());
    if (length < 1)
        return;
    const QPointF unit = d / length;
    const QPointF normal(-unit.y(), unit.x());
    const qreal head = qMin<qreal>(6, length / 2);
    QPainterPath path;
    path.moveTo(to);
    path.lineTo(to - unit * head + normal * head / 2);
    path.lineTo(to - unit * head - normal * head / 2);
    path.closeSubpath();
    painter->fillPath(path, painter->pen().color());
}

// The midpoint of a box's side facing the chip.
QPointF innerEdge(const QRectF &box, int quadrant)
{
    switch (quadrant) {
    case 0: return QPointF(box.right(), box.center().y());
    case 1: return QPointF(box.center().x(), box.top());
    case 2: return QPointF(box.left(), box.center().y());
    default: return QPointF(box.center().x(), box.bottom());
    }
}

} // namespace

QGraphicsChipItem::QGraphicsChipItem(std::shared_ptr<PinMappingDocument> document, QGraphicsItem *parent)
    : QGraphicsObject(parent)
    , m_document(std::move(document))
{
    setAcceptHoverEvents(true);
    m_extent = ChipGeometry(*m_document).bounds();
}

QRectF QGraphicsChipItem::boundingRect() const
{
    return m_extent;
}

void QGraphicsChipItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    PinMappingDocument &doc = *m_document;
    const ChipGeometry geometry(doc);
    const QFontMetricsF metrics(painter->font());
    QRectF extent = geometry.bounds();
    // However many functions a file stacks on a pin, painting stays within
    // a chip's size around the chip.
    const QRectF limit = geometry.bounds().adjusted(-geometry.bounds().width(), -geometry.bounds().height(),
                                                    geometry.bounds().width(), geometry.bounds().height());

    painter->setPen(QPen(Qt::black, 1));
    painter->setBrush(doc.chipColor);
    painter->drawRect(geometry.body());
    painter->setPen(Qt::black);
    {
        // The name is the chip's marking: large, in proportion to the body.
        const QFont pinFont = painter->font();
        QFont nameFont = pinFont;
        nameFont.setPixelSize(qBound(10, int(geometry.body().height() / 18), 400));
        painter->setFont(nameFont);
        painter->drawText(geometry.body(), Qt::AlignCenter | Qt::TextWordWrap, doc.name);
        painter->setFont(pinFont);
    }

    for (Pin &pin : doc.pins) {
        pin.mappedCount = 0;
        if (!ChipGeometry::isDrawn(pin)) {
            pin.rect = QRectF();
            continue;
        }
        const QString label = ChipGeometry::pinLabel(pin);
        pin.rect = geometry.pinBox(pin, metrics.horizontalAdvance(label));
        // An index beyond its side would put the pin anywhere: not drawn.
        if (!limit.contains(pin.rect)) {
            pin.rect = QRectF();
            continue;
        }
        painter->setPen(QPen(Qt::black, 1));
        painter->setBrush(pin.color);
        painter->drawRect(pin.rect);
        drawBoxText(painter, pin.rect, ChipGeometry::isRotated(pin), label, ChipGeometry::textColorFor(pin.color));
        extent |= pin.rect;
    }

    const PinMappingState state = PinMappingState::evaluate(doc, m_tables);
    QVector<qreal> used(doc.pins.size(), 0.0);
    for (const PinMappingState::Placement &p : state.placements()) {
        Pin &pin = doc.pins[p.pin];
        ++pin.mappedCount;
        if (pin.rect.isNull())
            continue;
        const MapEntry &entry = doc.entries.at(p.entry);
        const QString text = entry.shownName();
        const qreal length = geometry.boxLength(metrics.horizontalAdvance(text));
        const QRectF box = geometry.functionBox(pin, pin.rect, used[p.pin], length);
        // Where the previous box (or the pin) ends: the arrow spans the gap.
        const QRectF previous = geometry.functionBox(pin, pin.rect, used[p.pin] - geometry.arrowSize(), 0);
        used[p.pin] += geometry.advance(length);
        if (!limit.contains(box))
            continue;

        painter->setPen(QPen(entry.color.darker(150), 1));
        const QPointF near = innerEdge(previous, pin.quadrant);
        const QPointF far = innerEdge(box, pin.quadrant);
        if (entry.output)
            drawArrow(painter, far, near);
        else
            drawArrow(painter, near, far);
        painter->setPen(QPen(Qt::black, 1));
        painter->setBrush(entry.color);
        painter->drawRect(box);
        drawBoxText(painter, box, ChipGeometry::isRotated(pin), text, ChipGeometry::textColorFor(entry.color));
        extent |= box;
    }

    if (extent != m_extent) {
        // The next layout pass of the scene takes the new size.
        prepareGeometryChange();
        m_extent = extent;
    }
}

int QGraphicsChipItem::pinAt(const QPointF &pos) const
{
    const QList<Pin> &pins = m_document->pins;
    for (int i = 0; i < pins.size(); ++i) {
        if (pins.at(i).rect.contains(pos))
            return i;
    }
    return -1;
}

QString QGraphicsChipItem::toolTipText(const PinMappingDocument &document, int pinIndex, bool html,
                                       DocumentTables *tables)
{
    if (pinIndex < 0 || pinIndex >= document.pins.size())
        return QString();
    const Pin &pin = document.pins.at(pinIndex);
    const QString lead = html ? QStringLiteral("<br> - ") : QStringLiteral("\n - ");
    const QString lineBreak = html ? QStringLiteral("<br>&nbsp;&nbsp;&nbsp;") : QStringLiteral("\n   ");
    auto escaped = [html](const QString &text) { return html ? text.toHtmlEscaped() : text; };
    const PinMappingState state = PinMappingState::evaluate(document, tables);

    QString text = html ? QStringLiteral("<b>%1</b>").arg(escaped(pin.pinname)) : pin.pinname;
    for (int e : document.entriesOfPin(pin.pinname)) {
        const MapEntry &entry = document.entries.at(e);
        text += lead + escaped(entry.shownName());
        for (int c : document.conditionsOfFunction(entry.function)) {
            const QString cond = document.conditions.at(c).cond;
            if (cond.isEmpty())
                continue;
            const bool holds = state.holding().at(c);
            if (html && holds)
                text += lineBreak + QStringLiteral("<b>%1</b>").arg(escaped(cond));
            else
                text += lineBreak + escaped(cond);
        }
        if (!entry.info.isEmpty())
            text += lineBreak + escaped(entry.info);
        if (html) {
            for (const QString &link : entry.links())
                text += QStringLiteral(":<a href=\"%1\">%2</a>").arg(link.toHtmlEscaped(), link.toHtmlEscaped());
        }
    }
    return text;
}

void QGraphicsChipItem::on_linkActivated(QString link)
{
    if (MainWindow *window = MainWindow::instance())
        QMetaObject::invokeMethod(window, "on_anchorClicked", Q_ARG(QString, link));
}

void QGraphicsChipItem::hoverMoveEvent(QGraphicsSceneHoverEvent *event)
{
    if (!m_document->tooltipsActive)
        return;
    const int pin = pinAt(event->pos());
    if (pin < 0) {
        if (m_lastTipPin >= 0)
            QToolTip::hideText();
        m_lastTipPin = -1;
        return;
    }
    m_lastTipPin = pin;
    QToolTip::showText(event->screenPos(), toolTipText(*m_document, pin, true, m_tables));
}

void QGraphicsChipItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    // A tool tip can't be clicked: a double click on the pin follows its
    // first link instead.
    const int pin = pinAt(event->pos());
    if (pin < 0) {
        QGraphicsObject::mouseDoubleClickEvent(event);
        return;
    }
    for (int e : m_document->entriesOfPin(m_document->pins.at(pin).pinname)) {
        const QStringList links = m_document->entries.at(e).links();
        if (!links.isEmpty()) {
            on_linkActivated(links.first());
            return;
        }
    }
}
