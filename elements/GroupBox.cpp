#include "elements/GroupBox.h"

#include "elements/TabWidget.h"

#include <QHBoxLayout>

GroupBox::GroupBox(QWidget *parent)
    : QGroupBox(parent)
{
    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(4, 4, 4, 4);
    setAutoFillBackground(true);
}

void GroupBox::addWidget(QWidget *widget, const QString &label, int index)
{
    placeChild(widget, label, index);
}

void GroupBox::placeChild(QWidget *child, const QString &label, int index)
{
    Q_UNUSED(label);
    if (index < 0)
        m_layout->addWidget(child, 0);
    else
        m_layout->insertWidget(index, child, 0);
}

void GroupBox::childSetDef(int iPageNr)
{
    for (const QString &setDef : TabWidget::pageSetDefs(this, iPageNr))
        emit selected_setDef(setDef);
}
