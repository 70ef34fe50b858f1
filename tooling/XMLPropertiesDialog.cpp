#include "tooling/XMLPropertiesDialog.h"

#include "reader/DocumentState.h"

XMLPropertiesDialog::XMLPropertiesDialog(DocumentState &state, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
{
    setWindowTitle(tr("Edit XML properties"));
}

void XMLPropertiesDialog::accept()
{
    QDialog::accept();
}
