#pragma once
#include <QGraphicsPathItem>
#include <QList>
#include <QString>

class QNEPort;

// One element of the lock diagram: a rounded box with the element's define,
// an input port on the left for the locks that reach it and a labelled
// output port on the right for each value under which it locks others.
// Movable and selectable; a selected block is drawn in yellow.
class QNEBlock : public QGraphicsPathItem
{
public:
    enum { Type = QGraphicsItem::UserType + 3 };
    static constexpr int kWidth = 100;
    static constexpr int kHeight = 30;
    static constexpr int kPortSpacing = 14;

    explicit QNEBlock(const QString &name, QGraphicsItem *parent = nullptr);

    int type() const override { return Type; }

    QString name() const { return m_name; }

    // An output port for a lock value; one per name.
    QNEPort *addPort(const QString &name);
    QNEPort *port(const QString &name) const;
    QList<QNEPort *> outputPorts() const { return m_outputs; }
    // The port that wires into this block end on, made on first use.
    QNEPort *inputPort();

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    void layoutPorts();

    QString m_name;
    QGraphicsTextItem *m_label = nullptr;
    QNEPort *m_input = nullptr;
    QList<QNEPort *> m_outputs;
};
