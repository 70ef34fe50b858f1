#include "elements/GridWidget.h"

#include "elements/TabWidget.h"

#include <QGridLayout>
#include <QMap>

GridWidget::GridWidget(QWidget *parent)
    : QFrame(parent)
{
    m_layout = new QGridLayout(this);
    m_layout->setContentsMargins(4, 4, 4, 4);
    setAutoFillBackground(true);
}

void GridWidget::addWidget(QWidget *widget, const QString &label, int index)
{
    Q_UNUSED(label);
    if (index >= 0) {
        // An explicit position counts cells line by line; the children from
        // there on move one cell further.
        QList<QWidget *> widgets = orderedChildren();
        widgets.removeAll(widget);
        widgets.insert(qMin(index, widgets.size()), widget);
        placeInOrder(widgets);
        return;
    }
    // Every child takes the cursor's cell, lines and spacers included, so
    // the grid fills line by line.
    m_layout->addWidget(widget, m_row, m_column);
    if (++m_column >= m_columns) {
        m_column = 0;
        ++m_row;
    }
}

void GridWidget::placeChild(QWidget *child, const QString &label, int index)
{
    addWidget(child, label, index);
}

void GridWidget::childSetDef(int iPageNr)
{
    for (const QString &setDef : TabWidget::pageSetDefs(this, iPageNr))
        emit selected_setDef(setDef);
}

QList<QWidget *> GridWidget::orderedChildren() const
{
    QMap<QPair<int, int>, QWidget *> cells;
    for (int i = 0; i < m_layout->count(); ++i) {
        QWidget *w = m_layout->itemAt(i)->widget();
        if (!w)
            continue;
        int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
        m_layout->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        cells.insert(qMakePair(row, column), w);
    }
    return cells.values();
}

void GridWidget::removeChild(QWidget *child)
{
    QList<QWidget *> widgets = orderedChildren();
    if (!widgets.removeAll(child))
        return;
    m_layout->removeWidget(child);
    placeInOrder(widgets);
}

void GridWidget::relayout(int columns)
{
    const QList<QWidget *> widgets = orderedChildren();
    setColumns(columns);
    placeInOrder(widgets);
}

void GridWidget::placeInOrder(const QList<QWidget *> &widgets)
{
    for (QWidget *w : widgets)
        m_layout->removeWidget(w);
    m_row = 0;
    m_column = 0;
    for (QWidget *w : widgets)
        addWidget(w, QString(), -1);
}
