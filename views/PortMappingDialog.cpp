#include "views/PortMappingDialog.h"

#include "elements/MessageSink.h"
#include "views/PinMapperPane.h"
#include "views/PinMappingDocument.h"

PortMappingDialog::PortMappingDialog(std::shared_ptr<PinMappingDocument> document, QWidget *parent)
    : QDialog(parent)
    , m_pane(new PinMapperPane(std::move(document), this))
{
    setWindowTitle(tr("Port mapping"));
    setObjectName(QStringLiteral("PortMappingDialog"));
    resize(900, 900);
}

PortMappingDialog *PortMappingDialog::open(const std::shared_ptr<PinMappingDocument> &document, QWidget *parent)
{
    if (!document || document->isEmpty()) {
        consolePrint(QObject::tr("<font color=\"orange\"><b>Port mapping: </b></font>the description names no pin mapping.<br>"));
        return nullptr;
    }
    auto *dialog = new PortMappingDialog(document, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    return dialog;
}

void PortMappingDialog::showDetails()
{
    m_pane->showDetails();
}

void PortMappingDialog::exportMapping()
{
    m_pane->exportMapping();
}

void PortMappingDialog::onTimer()
{
    m_pane->refresh();
}

void PortMappingDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_pane->resume();
}
