#pragma once
#include <QFrame>

#include "elements/Container.h"

class QGridLayout;

// A grid filled line by line: each new child takes the cursor's cell, and
// the cursor moves to the next column, wrapping after `columns`. A child
// put in at a position of that line order pushes the ones behind it on by
// one cell, so the grid stays dense.
class GridWidget : public QFrame, public Container
{
    Q_OBJECT
public:
    explicit GridWidget(QWidget *parent = nullptr);

    void addWidget(QWidget *widget, const QString &label = QString(), int index = -1) override;
    QString objectName() const override { return QObject::objectName(); }
    QWidget *containerWidget() override { return this; }

    void setColumns(int columns) { m_columns = columns > 0 ? columns : 1; }
    int columns() const { return m_columns; }
    int currentRow() const { return m_row; }
    int currentColumn() const { return m_column; }
    QGridLayout *gridLayout() const { return m_layout; }

    // The children in line order (row by row, left to right).
    QList<QWidget *> orderedChildren() const;
    // Takes a child out and closes the gap behind it.
    void removeChild(QWidget *child);
    // Lays the children out again in `columns` columns, in line order.
    void relayout(int columns);

signals:
    void selected_setDef(const QString &data);

public slots:
    void childSetDef(int iPageNr);

protected:
    QWidget *childParent() override { return this; }
    void placeChild(QWidget *child, const QString &label, int index) override;

private:
    void placeInOrder(const QList<QWidget *> &widgets);

    int m_row = 0;
    int m_column = 0;
    int m_columns = 4;
    QGridLayout *m_layout = nullptr;
};
