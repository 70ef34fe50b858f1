#pragma once
#include <QDialog>

class QCheckBox;
class QGridLayout;
class QLineEdit;
struct DocumentState;

// "Edit XML properties": the description's header (version, firmware
// range, the files it names, I/O port, load/save, info source). Each row
// has a check box that enables its editors; accept() writes the rows back
// into the document's state, which the form editor's writer reads. A row
// left unticked clears what it stands for; reject() changes nothing.
//
// The editors carry object names ("version", "fwMin", "fwMax", "svd",
// "migration", "disclaimer", "ioPort", "ioSettings", "loadSave", "forumUrl"
// and "<name>Row" for the row check boxes), so that scripts and tests can
// find them.
class XMLPropertiesDialog : public QDialog
{
    Q_OBJECT
public:
    XMLPropertiesDialog(DocumentState &state, QWidget *parent = nullptr);

    QCheckBox *rowCheck(const QString &name) const;
    QLineEdit *editor(const QString &name) const;

public slots:
    void accept() override;

private:
    QCheckBox *addRow(QGridLayout *grid, const QString &title, const QString &name, bool on);
    QLineEdit *addEditor(QGridLayout *grid, QCheckBox *row, int column, const QString &label, const QString &name,
                         const QString &text);

    DocumentState &m_state;
    QCheckBox *m_loadSave = nullptr;
};
