#include "views/PinMapperPane.h"

#include "shell/MainWindow.h"
#include "views/ChipGeometry.h"
#include "views/PinMappingDocument.h"
#include "views/PinMappingExport.h"
#include "views/PinMappingState.h"
#include "views/PortMappingDetailsDialog.h"
#include "views/QGraphicsChipItem.h"
#include "views/QPostMappingGraphicsView.h"

#include <QDir>
#include <QFileInfo>
#include <QGraphicsPixmapItem>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QPixmap>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

PinMapperPane::PinMapperPane(std::shared_ptr<PinMappingDocument> document, QWidget *host)
    : QObject(host)
    , m_document(std::move(document))
    , m_host(host)
{
    auto *layout = new QVBoxLayout(host);
    layout->setContentsMargins(2, 2, 2, 2);
    m_scene = new QGraphicsScene(this);
    m_scene->setBackgroundBrush(m_document->backgroundColor);
    m_view = new QPostMappingGraphicsView(m_scene, host);
    layout->addWidget(m_view);

    m_chip = new QGraphicsChipItem(m_document);
    m_scene->addItem(m_chip);
    for (const PinImage &image : qAsConst(m_document->images)) {
        const QString path = QFileInfo(image.file).isAbsolute()
            ? image.file
            : QDir(m_document->descriptionFolder).filePath(image.file);
        QPixmap pixmap(path);
        if (pixmap.isNull())
            continue;
        QGraphicsPixmapItem *item = m_scene->addPixmap(pixmap);
        item->setPos(image.pos);
        if (image.moveable)
            item->setFlag(QGraphicsItem::ItemIsMovable);
    }

    m_details = new QPushButton(tr("&Details..."));
    m_details->setObjectName(QStringLiteral("pinMapperDetails"));
    m_scene->addWidget(m_details)->setPos(m_document->detailsButtonPos);
    m_export = new QPushButton(tr("&Export..."));
    m_export->setObjectName(QStringLiteral("pinMapperExport"));
    m_scene->addWidget(m_export)->setPos(m_document->exportButtonPos);
    connect(m_details, SIGNAL(clicked()), host, SLOT(showDetails()));
    connect(m_export, SIGNAL(clicked()), host, SLOT(exportMapping()));

    // In a window of its own the Find key searches the form as in the main
    // window; embedded, the main window's own shortcut already does (a
    // second one would make the key ambiguous).
    if (host->isWindow()) {
        auto *find = new QShortcut(QKeySequence::Find, host);
        connect(find, &QShortcut::activated, this, [] {
            if (MainWindow *window = MainWindow::instance())
                QMetaObject::invokeMethod(window, "searchForGUIElement");
        });
    }

    m_timer = new QTimer(this);
    m_timer->setSingleShot(true);
    m_timer->setInterval(kRefreshInterval);
    connect(m_timer, SIGNAL(timeout()), host, SLOT(onTimer()));
}

bool PinMapperPane::refresh()
{
    // Evaluating the conditions is cheap next to a repaint of the scene:
    // an idle form costs one pass over the conditions per interval.
    const PinMappingState state = PinMappingState::evaluate(*m_document);
    const bool changed = !m_painted || state.holding() != m_lastHolding;
    if (changed) {
        m_lastHolding = state.holding();
        m_painted = true;
        m_scene->update();
        ++m_repaints;
    }
    if (m_host->isVisible())
        m_timer->start();
    return changed;
}

void PinMapperPane::resume()
{
    if (!m_timer->isActive())
        m_timer->start();
    if (!m_fitted) {
        // The whole chip in view at first sight; after the layout has given
        // the view its size.
        m_fitted = true;
        QTimer::singleShot(0, this, [this] {
            const QRectF chip = ChipGeometry(*m_document).bounds();
            m_view->fitInView(chip, Qt::KeepAspectRatio);
        });
    }
}

void PinMapperPane::showDetails()
{
    auto *dialog = new PortMappingDetailsDialog(m_document, m_host);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void PinMapperPane::exportMapping()
{
    PinMappingExport::exportToFile(*m_document, m_host);
}
