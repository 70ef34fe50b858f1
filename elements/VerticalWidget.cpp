#include "elements/VerticalWidget.h"

#include "elements/TabWidget.h"

#include <QVBoxLayout>

VerticalWidget::VerticalWidget(QWidget *parent)
    : QWidget(parent)
{
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(4, 4, 4, 4);
}

void VerticalWidget::addWidget(QWidget *widget, const QString &label, int index)
{
    placeChild(widget, label, index);
}

void VerticalWidget::placeChild(QWidget *child, const QString &label, int index)
{
    Q_UNUSED(label);
    if (index < 0)
        m_layout->addWidget(child, 0);
    else
        m_layout->insertWidget(index, child, 0);
}

void VerticalWidget::childSetDef(int iPageNr)
{
    for (const QString &setDef : TabWidget::pageSetDefs(this, iPageNr))
        emit selected_setDef(setDef);
}
