#include "views/QNEConnection.h"

#include "views/QNEPort.h"

#include <QBrush>
#include <QPainterPath>
#include <QPen>

QNEConnection::QNEConnection(QGraphicsItem *parent)
    : QGraphicsPathItem(parent)
{
    QPen pen(Qt::black, 2);
    pen.setCapStyle(Qt::SquareCap);
    pen.setJoinStyle(Qt::BevelJoin);
    setPen(pen);
    setBrush(Qt::NoBrush);
    setZValue(-1);
}

QNEConnection::~QNEConnection()
{
    if (m_port1)
        m_port1->detach(this);
    if (m_port2)
        m_port2->detach(this);
}

void QNEConnection::setPort1(QNEPort *port)
{
    if (m_port1)
        m_port1->detach(this);
    m_port1 = port;
    if (port)
        port->attach(this);
}

void QNEConnection::setPort2(QNEPort *port)
{
    if (m_port2)
        m_port2->detach(this);
    m_port2 = port;
    if (port)
        port->attach(this);
}

void QNEConnection::portDeleted(QNEPort *port)
{
    if (m_port1 == port)
        m_port1 = nullptr;
    if (m_port2 == port)
        m_port2 = nullptr;
}

void QNEConnection::updatePosFromPorts()
{
    if (m_port1)
        m_pos1 = m_port1->scenePos();
    if (m_port2)
        m_pos2 = m_port2->scenePos();
}

void QNEConnection::updatePath()
{
    QPainterPath p;
    p.moveTo(m_pos1);
    // Horizontal tangents at both ends: the wire leaves an output to the
    // right and enters an input from the left, also when it runs backwards.
    const qreal dx = qMax<qreal>(40.0, qAbs(m_pos2.x() - m_pos1.x()) * 0.5);
    p.cubicTo(QPointF(m_pos1.x() + dx, m_pos1.y()), QPointF(m_pos2.x() - dx, m_pos2.y()), m_pos2);
    setPath(p);
}
