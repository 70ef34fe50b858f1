#pragma once
#include <QGraphicsPathItem>
#include <QList>
#include <QString>

class QNEBlock;
class QNEConnection;

// A labelled connection point on a QNEBlock. Output ports sit on the
// block's right edge with their label beside them; the one input port sits
// unlabelled on the left edge. A port keeps the wires that end on it and
// re-routes them whenever its block is moved.
class QNEPort : public QGraphicsPathItem
{
public:
    enum { Type = QGraphicsItem::UserType + 1 };
    static const int kRadius = 4;

    QNEPort(QNEBlock *block, const QString &name, bool isOutput);
    ~QNEPort() override;

    int type() const override { return Type; }

    QNEBlock *block() const { return m_block; }
    QString portName() const { return m_name; }
    bool isOutput() const { return m_isOutput; }

    const QList<QNEConnection *> &connections() const { return m_connections; }
    // Called by QNEConnection when a wire is attached or detached.
    void attach(QNEConnection *connection);
    void detach(QNEConnection *connection);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    QNEBlock *m_block;
    QString m_name;
    bool m_isOutput;
    QGraphicsTextItem *m_label = nullptr;
    QList<QNEConnection *> m_connections;
};
