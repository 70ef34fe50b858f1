#pragma once
#include <QDialog>

struct DocumentState;

// "Edit XML properties": the description's header (version, firmware
// range, the files it names, I/O port, load/save, info source). Each row
// has a check box that enables its editors; accept() writes the rows back
// into the document's state, which the form editor's writer reads.
class XMLPropertiesDialog : public QDialog
{
    Q_OBJECT
public:
    XMLPropertiesDialog(DocumentState &state, QWidget *parent = nullptr);

public slots:
    void accept() override;

private:
    DocumentState &m_state;
};
