#include "views/QNEBlock.h"

#include "views/QNEPort.h"

#include <QFontMetrics>
#include <QGraphicsTextItem>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QStyleOptionGraphicsItem>

QNEBlock::QNEBlock(const QString &name, QGraphicsItem *parent)
    : QGraphicsPathItem(parent)
    , m_name(name)
{
    setPen(QPen(Qt::darkGreen));
    setBrush(Qt::green);
    setFlag(QGraphicsItem::ItemIsMovable);
    setFlag(QGraphicsItem::ItemIsSelectable);
    setToolTip(name);

    m_label = new QGraphicsTextItem(this);
    // Long defines are elided so the name stays inside its box.
    const QFontMetrics metrics(m_label->font());
    m_label->setPlainText(metrics.elidedText(name, Qt::ElideMiddle, kWidth - 8));
    layoutPorts();
}

QNEPort *QNEBlock::addPort(const QString &name)
{
    if (QNEPort *existing = port(name))
        return existing;
    auto *p = new QNEPort(this, name, true);
    m_outputs.append(p);
    layoutPorts();
    return p;
}

QNEPort *QNEBlock::port(const QString &name) const
{
    for (QNEPort *p : m_outputs) {
        if (p->portName() == name)
            return p;
    }
    return nullptr;
}

QNEPort *QNEBlock::inputPort()
{
    if (!m_input) {
        m_input = new QNEPort(this, QString(), false);
        layoutPorts();
    }
    return m_input;
}

void QNEBlock::layoutPorts()
{
    // The box is 100 x 30 and grows downwards only when its ports need more
    // room than that.
    const int needed = m_outputs.size() * kPortSpacing + 2;
    const int height = qMax(kHeight, needed);
    const qreal top = -kHeight / 2.0;
    QPainterPath p;
    p.addRoundedRect(-kWidth / 2.0, top, kWidth, height, 5, 5);
    setPath(p);

    const qreal middle = top + height / 2.0;
    const qreal first = middle - (m_outputs.size() - 1) * kPortSpacing / 2.0;
    for (int i = 0; i < m_outputs.size(); ++i)
        m_outputs.at(i)->setPos(kWidth / 2.0, first + i * kPortSpacing);
    if (m_input)
        m_input->setPos(-kWidth / 2.0, middle);
    const QRectF text = m_label->boundingRect();
    m_label->setPos(-text.width() / 2, middle - text.height() / 2);
}

void QNEBlock::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    Q_UNUSED(option);
    Q_UNUSED(widget);
    if (isSelected()) {
        painter->setPen(QPen(Qt::darkYellow));
        painter->setBrush(Qt::yellow);
    } else {
        painter->setPen(pen());
        painter->setBrush(brush());
    }
    painter->drawPath(path());
}
