#pragma once
#include <QString>

class ActiveElement;
class QWidget;

// Builds an element's tool tip from the lines the `tooltipconfig` mask
// switches on: value, the four lock lists, enumerated values, the pages
// above the element, header, default, range and the description's text.
class ElementToolTip
{
public:
    // range: "min..max" for numeric elements, empty for the others.
    static QString build(ActiveElement *element, const QString &range = QString());
    // Builds and sets it on the element's widget.
    static void apply(ActiveElement *element, const QString &range = QString());
    // The names of the tab pages that hold the widget, outermost first.
    static QString containerPath(QWidget *widget);
};
