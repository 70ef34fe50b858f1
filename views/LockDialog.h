#pragma once
#include <QDialog>
#include <QList>

#include "model/LockGraph.h"

class QGraphicsScene;
class QGraphicsView;
class QNEBlock;
class QNEConnection;

// "Lockings": the locks of the open description as a diagram, for authors
// of descriptions. Each element with locks is a block with a port per lock
// value; each lock a wire from the source's port to the target's block.
class LockDialog : public QDialog
{
    Q_OBJECT
public:
    explicit LockDialog(const LockGraph &graph, QWidget *parent = nullptr);

    // Rebuilds the diagram.
    void setGraph(const LockGraph &graph);

    QGraphicsScene *scene() const { return m_scene; }
    QGraphicsView *view() const { return m_view; }
    QList<QNEBlock *> blocks() const { return m_blocks; }
    QList<QNEConnection *> connections() const { return m_connections; }
    QNEBlock *block(const QString &name) const;

    // Scene position of a block: columns 180 apart by distance from the
    // sources, rows 60 apart, every other row shifted left by 50 so that
    // wires into a column do not run through its blocks.
    static QPointF blockPosition(int column, int row, int level, qreal top = 0);

private:
    QGraphicsScene *m_scene;
    QGraphicsView *m_view;
    QList<QNEBlock *> m_blocks;
    QList<QNEConnection *> m_connections;
};
