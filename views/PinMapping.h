#pragma once
#include <QWidget>
#include <memory>

class PinMapperPane;
class PinMappingDocument;

// The `pinmapper` element: the chip drawing embedded in the form, live with
// the form's values. At most one per description.
class PinMapping : public QWidget
{
    Q_OBJECT
public:
    PinMapping(std::shared_ptr<PinMappingDocument> document, QWidget *parent = nullptr);

    PinMapperPane *pane() const { return m_pane; }

public slots:
    void showDetails();
    void exportMapping();
    void onTimer();

protected:
    void showEvent(QShowEvent *event) override;

private:
    PinMapperPane *m_pane;
};
