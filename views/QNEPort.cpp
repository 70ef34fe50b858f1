#include "views/QNEPort.h"

#include "views/QNEBlock.h"
#include "views/QNEConnection.h"

#include <QBrush>
#include <QGraphicsTextItem>
#include <QPainterPath>
#include <QPen>

QNEPort::QNEPort(QNEBlock *block, const QString &name, bool isOutput)
    : QGraphicsPathItem(block)
    , m_block(block)
    , m_name(name)
    , m_isOutput(isOutput)
{
    QPainterPath path;
    path.addEllipse(-kRadius, -kRadius, 2 * kRadius, 2 * kRadius);
    setPath(path);
    setPen(QPen(Qt::darkRed));
    setBrush(Qt::red);
    // Without this the port hears nothing when the block is dragged.
    setFlag(QGraphicsItem::ItemSendsScenePositionChanges);
    if (isOutput && !name.isEmpty()) {
        m_label = new QGraphicsTextItem(name, this);
        m_label->setPos(kRadius + 2, -m_label->boundingRect().height() / 2);
    }
}

QNEPort::~QNEPort()
{
    // The wires go with the port; copy first, since each detaches itself.
    const QList<QNEConnection *> wires = m_connections;
    m_connections.clear();
    for (QNEConnection *wire : wires)
        wire->portDeleted(this);
}

void QNEPort::attach(QNEConnection *connection)
{
    if (connection && !m_connections.contains(connection))
        m_connections.append(connection);
}

void QNEPort::detach(QNEConnection *connection)
{
    m_connections.removeAll(connection);
}

QVariant QNEPort::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemScenePositionHasChanged) {
        for (QNEConnection *wire : qAsConst(m_connections)) {
            wire->updatePosFromPorts();
            wire->updatePath();
        }
    }
    return QGraphicsPathItem::itemChange(change, value);
}
