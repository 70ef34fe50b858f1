#pragma once
#include <QGraphicsView>

// The view of the pin mapper: antialiased, dragged by the mouse, zoomed by
// the wheel around the cursor.
class QPostMappingGraphicsView : public QGraphicsView
{
    Q_OBJECT
public:
    explicit QPostMappingGraphicsView(QGraphicsScene *scene, QWidget *parent = nullptr);

    // One notch of the wheel zooms by this factor (out by its inverse).
    static constexpr double kZoomStep = 1.15;
    // Zoom stays within these bounds, so no number of notches can make the
    // drawing vanish or the painter work on huge coordinates.
    static constexpr double kMinScale = 0.05;
    static constexpr double kMaxScale = 20.0;

    double currentScale() const { return transform().m11(); }
    // Zooms by `notches` wheel notches (negative: out).
    void zoomBy(double notches);

protected:
    void wheelEvent(QWheelEvent *event) override;
};
