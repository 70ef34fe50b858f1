#pragma once
#include <QGraphicsPathItem>
#include <QPointF>

class QNEPort;

// A wire from one port to another, drawn as a curve behind the blocks.
class QNEConnection : public QGraphicsPathItem
{
public:
    enum { Type = QGraphicsItem::UserType + 2 };

    explicit QNEConnection(QGraphicsItem *parent = nullptr);
    ~QNEConnection() override;

    int type() const override { return Type; }

    void setPort1(QNEPort *port);
    void setPort2(QNEPort *port);
    QNEPort *port1() const { return m_port1; }
    QNEPort *port2() const { return m_port2; }

    // Takes both ends from the ports' current scene positions.
    void updatePosFromPorts();
    void updatePath();
    QPointF pos1() const { return m_pos1; }
    QPointF pos2() const { return m_pos2; }

    // A port is going away; the wire forgets it.
    void portDeleted(QNEPort *port);

private:
    QNEPort *m_port1 = nullptr;
    QNEPort *m_port2 = nullptr;
    QPointF m_pos1;
    QPointF m_pos2;
};
