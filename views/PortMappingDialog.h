#pragma once
#include <QDialog>
#include <memory>

class PinMapperPane;
class PinMappingDocument;

// "Port mapping": the chip drawing in a window of its own, beside the form.
class PortMappingDialog : public QDialog
{
    Q_OBJECT
public:
    PortMappingDialog(std::shared_ptr<PinMappingDocument> document, QWidget *parent = nullptr);

    PinMapperPane *pane() const { return m_pane; }

    // Opens the window on the description's mapping (non-modal, so quiet
    // runs don't wait). A description without a mapping says so on the
    // console. Returns the window, or null.
    static PortMappingDialog *open(const std::shared_ptr<PinMappingDocument> &document, QWidget *parent);

public slots:
    void showDetails();
    void exportMapping();
    void onTimer();

protected:
    void showEvent(QShowEvent *event) override;

private:
    PinMapperPane *m_pane;
};
