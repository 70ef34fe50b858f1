#include "views/LockDialog.h"

#include "views/QNEBlock.h"
#include "views/QNEConnection.h"
#include "views/QNEPort.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QHash>
#include <QQueue>
#include <QVBoxLayout>

LockDialog::LockDialog(const LockGraph &graph, QWidget *parent)
    : QDialog(parent)
    , m_scene(new QGraphicsScene(this))
    , m_view(new QGraphicsView(m_scene, this))
{
    setWindowTitle(QStringLiteral("Lockings"));
    m_view->setRenderHint(QPainter::Antialiasing);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    resize(800, 600);
    setGraph(graph);
}

QPointF LockDialog::blockPosition(int column, int row, int level, qreal top)
{
    return QPointF(column * 180 - level * 50 + 240, top + 60 + row * 60);
}

QNEBlock *LockDialog::block(const QString &name) const
{
    for (QNEBlock *b : m_blocks) {
        if (b->name() == name)
            return b;
    }
    return nullptr;
}

void LockDialog::setGraph(const LockGraph &graph)
{
    m_scene->clear();
    m_blocks.clear();
    m_connections.clear();

    // Columns by distance from the sources that nothing locks; blocks that
    // only sit on circles start a column of their own at 0.
    const int n = graph.blocks.size();
    QHash<QString, int> index;
    for (int i = 0; i < n; ++i)
        index.insert(graph.blocks.at(i).name, i);
    QVector<QList<int>> next(n);
    QVector<bool> locked(n, false);
    for (const LockGraph::Link &link : graph.links) {
        const int s = index.value(link.source, -1);
        const int t = index.value(link.target, -1);
        if (s < 0 || t < 0)
            continue;
        next[s].append(t);
        if (s != t)
            locked[t] = true;
    }
    QVector<int> column(n, -1);
    auto spread = [&](int from) {
        QQueue<int> queue;
        column[from] = 0;
        queue.enqueue(from);
        while (!queue.isEmpty()) {
            const int b = queue.dequeue();
            for (int t : next.at(b)) {
                if (column.at(t) < 0) {
                    column[t] = column.at(b) + 1;
                    queue.enqueue(t);
                }
            }
        }
    };
    for (int i = 0; i < n; ++i) {
        if (!locked.at(i) && column.at(i) < 0)
            spread(i);
    }
    for (int i = 0; i < n; ++i) {
        if (column.at(i) < 0)
            spread(i);
    }

    QHash<int, int> rowsInColumn;
    for (int i = 0; i < n; ++i) {
        const LockGraph::Block &b = graph.blocks.at(i);
        auto *item = new QNEBlock(b.name);
        for (const QString &port : b.ports)
            item->addPort(port);
        const int row = rowsInColumn.value(column.at(i), 0);
        rowsInColumn.insert(column.at(i), row + 1);
        item->setPos(blockPosition(column.at(i), row, row % 2));
        m_scene->addItem(item);
        m_blocks.append(item);
    }

    for (const LockGraph::Link &link : graph.links) {
        QNEBlock *source = block(link.source);
        QNEBlock *target = block(link.target);
        if (!source || !target)
            continue;
        auto *wire = new QNEConnection;
        m_scene->addItem(wire);
        wire->setPort1(source->addPort(link.port));
        wire->setPort2(target->inputPort());
        wire->setToolTip(QStringLiteral("%1 = %2").arg(link.target, link.value));
        wire->updatePosFromPorts();
        wire->updatePath();
        m_connections.append(wire);
    }
}
