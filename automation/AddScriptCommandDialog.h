#pragma once
#include <QDialog>
#include <QVector>

class QButtonGroup;
class QLineEdit;
class QRadioButton;
class ScriptRecorder;

// Inserts into a running recording the lines that no element can write:
// a message box, a comment, wait times, single step, clearing the console.
// The top field holds the comment that the following element lines carry.
// The dialog stays open for several inserts and keeps its texts.
class AddScriptCommandDialog : public QDialog
{
    Q_OBJECT
public:
    // The commands in the order of their radio buttons.
    enum Command { MessageBox, Comment, SetWaitTime, Wait, SetSingleStep, Clear };

    explicit AddScriptCommandDialog(ScriptRecorder *recorder, QWidget *parent = nullptr);

    // The line that Insert writes for a command and its text, and the
    // console's form of it.
    static QString fileLine(Command command, const QString &text);
    static QString consoleLine(Command command, const QString &text);

    // For tests and the keyboard: the parts of the form.
    QLineEdit *commentEdit() const { return m_comment; }
    QLineEdit *edit(Command command) const { return m_edits.value(command); }
    QRadioButton *radio(Command command) const { return m_radios.value(command); }
    Command selected() const;

public slots:
    void insertCommand();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    ScriptRecorder *m_recorder;
    QLineEdit *m_comment = nullptr;
    QButtonGroup *m_group = nullptr;
    QVector<QRadioButton *> m_radios;
    QVector<QLineEdit *> m_edits;
};
