#include <QtTest>
#include <QGraphicsScene>
#include <QGraphicsView>

#include "model/LockGraph.h"
#include "views/LockDialog.h"
#include "views/QNEBlock.h"
#include "views/QNEConnection.h"
#include "views/QNEPort.h"

// The lock diagram: what the dialog builds from a graph, where blocks go,
// and that wires follow their blocks.
class TestLockDialog : public QObject
{
    Q_OBJECT

private:
    static LockGraph chain()
    {
        // S (ports 0 and 1) locks T and U; T (port 3) locks U.
        LockGraph g;
        g.block(QStringLiteral("S")).ports = QStringList{QStringLiteral("0"), QStringLiteral("1")};
        g.block(QStringLiteral("T")).ports = QStringList{QStringLiteral("3")};
        g.block(QStringLiteral("U"));
        g.links.append({QStringLiteral("S"), QStringLiteral("0"), QStringLiteral("T"), QStringLiteral("3")});
        g.links.append({QStringLiteral("S"), QStringLiteral("1"), QStringLiteral("U"), QStringLiteral("7")});
        g.links.append({QStringLiteral("T"), QStringLiteral("3"), QStringLiteral("U"), QStringLiteral("8")});
        return g;
    }

private slots:
    void dialogShowsBlocksAndWires()
    {
        LockDialog dialog(chain());
        QCOMPARE(dialog.view()->scene(), dialog.scene());
        QCOMPARE(dialog.blocks().size(), 3);
        QCOMPARE(dialog.connections().size(), 3);

        QNEBlock *s = dialog.block(QStringLiteral("S"));
        QVERIFY(s);
        QCOMPARE(s->outputPorts().size(), 2);
        QCOMPARE(s->outputPorts().at(1)->portName(), QStringLiteral("1"));
        QNEBlock *u = dialog.block(QStringLiteral("U"));
        QCOMPARE(u->outputPorts().size(), 0);
        // Both wires into U end on its one input port.
        QCOMPARE(u->inputPort()->connections().size(), 2);

        QNEConnection *first = dialog.connections().first();
        QCOMPARE(first->port1(), s->port(QStringLiteral("0")));
        QCOMPARE(first->port2(), dialog.block(QStringLiteral("T"))->inputPort());
    }

    void blocksStandInColumnsBySteps()
    {
        LockDialog dialog(chain());
        // S is locked by nobody: column 0. T and U are one lock away.
        QCOMPARE(dialog.block(QStringLiteral("S"))->pos(), LockDialog::blockPosition(0, 0, 0));
        QCOMPARE(dialog.block(QStringLiteral("T"))->pos(), LockDialog::blockPosition(1, 0, 0));
        QCOMPARE(dialog.block(QStringLiteral("U"))->pos(), LockDialog::blockPosition(1, 1, 1));
        QCOMPARE(LockDialog::blockPosition(2, 3, 1, 10), QPointF(2 * 180 - 50 + 240, 10 + 60 + 3 * 60));
    }

    void circleOnlyGraphIsPlaced()
    {
        LockGraph g;
        g.block(QStringLiteral("A")).ports = QStringList{QStringLiteral("1")};
        g.block(QStringLiteral("B")).ports = QStringList{QStringLiteral("1")};
        g.links.append({QStringLiteral("A"), QStringLiteral("1"), QStringLiteral("B"), QStringLiteral("1")});
        g.links.append({QStringLiteral("B"), QStringLiteral("1"), QStringLiteral("A"), QStringLiteral("1")});
        LockDialog dialog(g);
        QCOMPARE(dialog.block(QStringLiteral("A"))->pos(), LockDialog::blockPosition(0, 0, 0));
        QCOMPARE(dialog.block(QStringLiteral("B"))->pos(), LockDialog::blockPosition(1, 0, 0));
    }

    void wireFollowsMovedBlock()
    {
        LockDialog dialog(chain());
        QNEConnection *wire = dialog.connections().first();
        QNEBlock *t = dialog.block(QStringLiteral("T"));
        const QPointF before = wire->pos2();
        t->moveBy(30, 40);
        QCOMPARE(wire->pos2(), before + QPointF(30, 40));
        QCOMPARE(wire->path().currentPosition(), wire->pos2());
    }

    void blockLookAndGrowth()
    {
        QNEBlock block(QStringLiteral("A.B.C"));
        QCOMPARE(block.path().boundingRect(), QRectF(-50, -15, 100, 30));
        QVERIFY(block.flags() & QGraphicsItem::ItemIsMovable);
        block.addPort(QStringLiteral("1"));
        QCOMPARE(block.addPort(QStringLiteral("1")), block.port(QStringLiteral("1")));
        QCOMPARE(block.path().boundingRect().height(), 30.0);
        for (int i = 2; i <= 4; ++i)
            block.addPort(QString::number(i));
        // Four ports need more room than 30 pixels; the box grows.
        QVERIFY(block.path().boundingRect().height() > 30);
        for (QNEPort *port : block.outputPorts())
            QVERIFY(block.path().boundingRect().contains(QPointF(49, port->pos().y())));
    }

    void rebuildAndDeletionAreClean()
    {
        LockDialog dialog(chain());
        dialog.setGraph(LockGraph());
        QVERIFY(dialog.blocks().isEmpty());
        QVERIFY(dialog.scene()->items().isEmpty());
        dialog.setGraph(chain());
        QCOMPARE(dialog.blocks().size(), 3);
        // A wire whose block goes first forgets its port.
        QNEConnection *wire = dialog.connections().first();
        delete dialog.block(QStringLiteral("S"));
        QVERIFY(!wire->port1());
        wire->updatePosFromPorts();
    }
};

QTEST_MAIN(TestLockDialog)
#include "tst_lockdialog.moc"
