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
        // An explicit position counts cells line by line.
        m_layout->addWidget(widget, index / m_columns, index % m_columns);
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

void GridWidget::relayout(int columns)
{
    // Cells in reading order: line first, then column.
    QMap<QPair<int, int>, QLayoutItem *> cells;
    for (int i = 0; i < m_layout->count(); ++i) {
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        m_layout->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        cells.insert(qMakePair(row, column), m_layout->itemAt(i));
    }
    QList<QLayoutItem *> items;
    while (m_layout->count() > 0)
        m_layout->takeAt(0);
    items = cells.values();
    setColumns(columns);
    m_row = 0;
    m_column = 0;
    for (QLayoutItem *item : qAsConst(items)) {
        m_layout->addItem(item, m_row, m_column);
        if (++m_column >= m_columns) {
            m_column = 0;
            ++m_row;
        }
    }
}
