#include "elements/PageRevealer.h"

#include <QStackedWidget>
#include <QTabWidget>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVector>

void PageRevealer::raisePages(QWidget *widget)
{
    // A tab page's parent is the tab widget's inner stack, not the tab widget
    // itself. Pages are opened outermost first, so that a nested tab widget
    // is on screen by the time its own page is chosen.
    QVector<QPair<QTabWidget *, QWidget *>> pages;
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        auto *stack = qobject_cast<QStackedWidget *>(w->parentWidget());
        auto *tabs = stack ? qobject_cast<QTabWidget *>(stack->parentWidget()) : nullptr;
        if (tabs && tabs->indexOf(w) >= 0)
            pages.prepend(qMakePair(tabs, w));
    }
    for (const auto &page : qAsConst(pages))
        page.first->setCurrentWidget(page.second);
}

QTreeWidgetItem *PageRevealer::containingRow(QWidget *widget)
{
    for (QWidget *w = widget; w; w = w->parentWidget()) {
        // A cell widget lives in the tree's viewport.
        QWidget *viewport = w->parentWidget();
        auto *tree = qobject_cast<QTreeWidget *>(viewport ? viewport->parentWidget() : nullptr);
        if (!tree || tree->viewport() != viewport)
            continue;
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            for (int column = 0; column < tree->columnCount(); ++column) {
                if (tree->itemWidget(*it, column) == w)
                    return *it;
            }
        }
    }
    return nullptr;
}

QTreeWidgetItem *PageRevealer::reveal(QWidget *widget)
{
    raisePages(widget);
    QTreeWidgetItem *row = containingRow(widget);
    // Rows are unfolded from the top, and each tree's own pages were opened
    // above: a tree inside a tree row is handled by walking up from its row.
    for (QTreeWidgetItem *r = row ? row->parent() : nullptr; r; r = r->parent())
        r->setExpanded(true);
    return row;
}
