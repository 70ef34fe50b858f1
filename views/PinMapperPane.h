#pragma once
#include <QObject>
#include <QVector>
#include <memory>

class PinMappingDocument;
class QGraphicsChipItem;
class QGraphicsScene;
class QPostMappingGraphicsView;
class QPushButton;
class QTimer;
class QWidget;

// What the embedded mapper and the port mapping window share: the scene
// with the chip and the pictures, the Details and Export buttons on it, the
// Find shortcut and the refresh timer. The host widget owns the pane and
// has the slots showDetails(), exportMapping() and onTimer().
class PinMapperPane : public QObject
{
    Q_OBJECT
public:
    PinMapperPane(std::shared_ptr<PinMappingDocument> document, QWidget *host);

    // Time between two looks at the form, in milliseconds.
    static constexpr int kRefreshInterval = 500;

    QGraphicsScene *scene() const { return m_scene; }
    QPostMappingGraphicsView *view() const { return m_view; }
    QGraphicsChipItem *chip() const { return m_chip; }
    QTimer *timer() const { return m_timer; }
    QPushButton *detailsButton() const { return m_details; }
    QPushButton *exportButton() const { return m_export; }
    const std::shared_ptr<PinMappingDocument> &document() const { return m_document; }

    // The timer's work: repaints when a condition changed since the last
    // look, then waits for the next (only while the host is visible, so a
    // hidden mapper costs nothing). True when it repainted.
    bool refresh();
    // Starts the timer again (the host became visible).
    void resume();
    // How many repaints refresh() asked for so far.
    int repaintCount() const { return m_repaints; }

    // The details table and the CSV export, for the host's slots.
    void showDetails();
    void exportMapping();

private:
    std::shared_ptr<PinMappingDocument> m_document;
    QWidget *m_host;
    QGraphicsScene *m_scene;
    QPostMappingGraphicsView *m_view;
    QGraphicsChipItem *m_chip;
    QTimer *m_timer;
    QPushButton *m_details = nullptr;
    QPushButton *m_export = nullptr;
    QVector<bool> m_lastHolding;
    bool m_painted = false;
    bool m_fitted = false;
    int m_repaints = 0;
};
