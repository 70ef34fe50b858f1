#include "views/QPostMappingGraphicsView.h"

#include <QWheelEvent>
#include <QtMath>

QPostMappingGraphicsView::QPostMappingGraphicsView(QGraphicsScene *scene, QWidget *parent)
    : QGraphicsView(scene, parent)
{
    setRenderHint(QPainter::Antialiasing);
    setRenderHint(QPainter::TextAntialiasing);
    setDragMode(QGraphicsView::ScrollHandDrag);
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    // The chip item paints its function boxes beyond the chip's square.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
}

void QPostMappingGraphicsView::zoomBy(double notches)
{
    const double current = currentScale();
    if (current <= 0)
        return;
    const double wanted = qBound(kMinScale, current * qPow(kZoomStep, notches), kMaxScale);
    const double factor = wanted / current;
    if (!qFuzzyCompare(factor, 1.0))
        scale(factor, factor);
}

void QPostMappingGraphicsView::wheelEvent(QWheelEvent *event)
{
    const double notches = event->angleDelta().y() / 120.0;
    if (notches == 0.0) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    zoomBy(notches);
    event->accept();
}
