#include "views/PinMapping.h"

#include "views/PinMapperPane.h"

PinMapping::PinMapping(std::shared_ptr<PinMappingDocument> document, QWidget *parent)
    : QWidget(parent)
    , m_pane(new PinMapperPane(std::move(document), this))
{
    setMinimumSize(300, 300);
}

void PinMapping::showDetails()
{
    m_pane->showDetails();
}

void PinMapping::exportMapping()
{
    m_pane->exportMapping();
}

void PinMapping::onTimer()
{
    m_pane->refresh();
}

void PinMapping::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_pane->resume();
}
