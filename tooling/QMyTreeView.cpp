#include "tooling/QMyTreeView.h"

#include "tooling/FormEditor.h"

#include <QDropEvent>

QMyTreeView::QMyTreeView(QWidget *parent)
    : QTreeView(parent)
{
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHeaderHidden(true);
}

bool QMyTreeView::dropRows(const QModelIndex &target, int position, const QModelIndexList &selection)
{
    return m_editor && m_editor->drop(target, position, selection);
}

void QMyTreeView::dropEvent(QDropEvent *event)
{
    if (event->source() != this) {
        QTreeView::dropEvent(event);
        return;
    }
    const QModelIndex target = indexAt(event->pos());
    const int position = dropIndicatorPosition();
    // The editor moves the rows with the elements, so the base class's own
    // row move must not run as well.
    dropRows(target, position, selectionModel() ? selectionModel()->selectedIndexes() : QModelIndexList());
    event->setDropAction(Qt::IgnoreAction);
    event->accept();
}
