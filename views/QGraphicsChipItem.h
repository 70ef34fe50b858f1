#pragma once
#include <QGraphicsObject>
#include <memory>

class DocumentTables;
class PinMappingDocument;

// The chip of the pin mapper: body, pins around its four sides and, beyond
// each pin, a box per function the current form routes to it. Everything
// is painted from the document and the form's values at paint time, so a
// scene update is all a refresh needs.
class QGraphicsChipItem : public QGraphicsObject
{
    Q_OBJECT
public:
    explicit QGraphicsChipItem(std::shared_ptr<PinMappingDocument> document, QGraphicsItem *parent = nullptr);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    // The pin whose last drawn box holds the point (item coordinates); -1
    // for none.
    int pinAt(const QPointF &pos) const;
    // The hover text of a pin: its name, then each function that may sit on
    // it with its conditions, info and links. `html` chooses "<br> - " or
    // "\n - " in front of each function.
    static QString toolTipText(const PinMappingDocument &document, int pin, bool html, DocumentTables *tables = nullptr);

    // Tables the conditions are read from (null: the current document).
    void setTables(DocumentTables *tables) { m_tables = tables; }

public slots:
    // Goes to the element a tool tip link names.
    void on_linkActivated(QString link);

protected:
    void hoverMoveEvent(QGraphicsSceneHoverEvent *event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    std::shared_ptr<PinMappingDocument> m_document;
    DocumentTables *m_tables = nullptr;
    // Beyond the chip's square: where the last paint reached (pin labels
    // and function boxes stick out).
    QRectF m_extent;
    int m_lastTipPin = -1;
};
