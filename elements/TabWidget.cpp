#include "elements/TabWidget.h"

#include <QScrollArea>
#include <QVariant>

TabWidget::TabWidget(QWidget *parent)
    : QTabWidget(parent)
{
    // Connected before any page, so the state has moved on when the pages
    // see the change: the page left runs its unselectsetdef, the page
    // entered its selectsetdef, and pages in between nothing.
    connect(this, &QTabWidget::currentChanged, this, [this](int index) {
        lastSelected = selectedNow;
        selectedNow = index;
    });
    setResizePages(false);
}

void TabWidget::setResizePages(bool on)
{
    m_resizePages = on;
    disconnect(this, &QTabWidget::currentChanged, this, &TabWidget::updateSizes);
    disconnect(this, &QTabWidget::currentChanged, this, &TabWidget::changedTab);
    if (on)
        connect(this, &QTabWidget::currentChanged, this, &TabWidget::updateSizes);
    else
        connect(this, &QTabWidget::currentChanged, this, &TabWidget::changedTab);
}

void TabWidget::addWidget(QWidget *widget, const QString &label, int index)
{
    placeChild(widget, label, index);
}

void TabWidget::placeChild(QWidget *child, const QString &label, int index)
{
    if (index < 0)
        addTab(child, label);
    else
        insertTab(index, child, label);
    // With fitted pages, a page that is not shown must not size the others
    // from the start either: only a change of page would fit them otherwise.
    if (m_resizePages && child != currentWidget())
        child->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void TabWidget::updateSizes(int index)
{
    for (int i = 0; i < count(); ++i) {
        if (i != index)
            widget(i)->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    }
    if (QWidget *page = widget(index)) {
        page->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        QSize hint = page->sizeHint();
        if (auto *scroll = qobject_cast<QScrollArea *>(page)) {
            if (scroll->widget())
                hint = scroll->widget()->sizeHint();
        }
        page->resize(hint);
        page->adjustSize();
    }
    adjustSize();
    emit updateMathLabels();
}

void TabWidget::changedTab(int index)
{
    Q_UNUSED(index);
    emit updateMathLabels();
}

QStringList TabWidget::pageSetDefs(QWidget *page, int iPageNr)
{
    QStringList result;
    // A page's parent is the tab's internal stack; the tab is above it.
    QWidget *stack = page ? page->parentWidget() : nullptr;
    auto *tab = qobject_cast<TabWidget *>(stack ? stack->parentWidget() : nullptr);
    if (!tab)
        return result;
    const int pageIndex = tab->indexOf(page);
    auto run = [&result](const QVariant &texts) {
        for (const QString &text : texts.toString().split(QLatin1Char(';'))) {
            if (!text.isEmpty())
                result.append(text);
        }
    };
    if (pageIndex == tab->lastSelected && pageIndex != iPageNr)
        run(page->property("unselectsetdef"));
    else if (pageIndex == iPageNr)
        run(page->property("selectsetdef"));
    return result;
}
