#pragma once

class QTreeWidgetItem;
class QWidget;

// Brings a widget of the form into view: every tab page that holds it is
// made the current page, from the outermost inwards, and every tree row
// above it is unfolded. Console links, the search dialog, the differences
// dialog and the scripts' RAISE and SET all go through here, so an element
// on another page or inside a folded tree is reached the same way by each.
class PageRevealer
{
public:
    // Opens the tab pages that hold the widget.
    static void raisePages(QWidget *widget);
    // Opens the pages and unfolds the tree rows above the widget; returns
    // the tree row that holds it, or null when it sits in no tree.
    static QTreeWidgetItem *reveal(QWidget *widget);
    // The tree row whose cell holds the widget or one of its parents.
    static QTreeWidgetItem *containingRow(QWidget *widget);
};
