#include "automation/AddScriptCommandDialog.h"

#include "automation/ScriptRecorder.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {
struct Row
{
    const char *title;
    const char *placeholder;
    bool hasEdit;
};

const Row kRows[] = {
    {"MessageBox", "text", true},
    {"Comment", "text", true},
    {"SetWaitTime", "milliseconds", true},
    {"Wait", "milliseconds", true},
    {"SetSingleStep", "0 or 1", true},
    {"Clear", "", false},
};
} // namespace

AddScriptCommandDialog::AddScriptCommandDialog(ScriptRecorder *recorder, QWidget *parent)
    : QDialog(parent)
    , m_recorder(recorder)
{
    setWindowTitle(tr("Add script command"));

    auto *commentBox = new QGroupBox(tr("Comment for next line"), this);
    auto *commentForm = new QFormLayout(commentBox);
    m_comment = new QLineEdit(commentBox);
    m_comment->setObjectName(QStringLiteral("recordComment"));
    if (m_recorder)
        m_comment->setText(m_recorder->comment());
    commentForm->addRow(tr("Comment: "), m_comment);

    auto *commandBox = new QGroupBox(tr("Command"), this);
    auto *grid = new QGridLayout(commandBox);
    m_group = new QButtonGroup(this);
    int row = 0;
    for (const Row &r : kRows) {
        auto *radio = new QRadioButton(QLatin1String(r.title), commandBox);
        radio->setObjectName(QLatin1String(r.title));
        m_group->addButton(radio, row);
        m_radios.append(radio);
        grid->addWidget(radio, row, 0);
        QLineEdit *edit = nullptr;
        if (r.hasEdit) {
            edit = new QLineEdit(commandBox);
            edit->setObjectName(QLatin1String(r.title) + QStringLiteral("Text"));
            edit->setPlaceholderText(tr(r.placeholder));
            // Numbers only where the command reads a number.
            if (row == SetWaitTime || row == Wait)
                edit->setValidator(new QIntValidator(0, 86400000, edit));
            else if (row == SetSingleStep)
                edit->setValidator(new QIntValidator(0, 1, edit));
            // Giving the field the cursor chooses its command.
            edit->installEventFilter(this);
            grid->addWidget(edit, row, 1);
        }
        m_edits.append(edit);
        ++row;
    }
    m_radios.first()->setChecked(true);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *insert = buttons->addButton(tr("Insert"), QDialogButtonBox::ActionRole);
    insert->setObjectName(QStringLiteral("insert"));
    insert->setDefault(true);
    QPushButton *close = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    close->setObjectName(QStringLiteral("close"));
    connect(insert, SIGNAL(clicked()), this, SLOT(insertCommand()));
    connect(close, SIGNAL(clicked()), this, SLOT(reject()));

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(commentBox);
    layout->addWidget(commandBox);
    layout->addWidget(buttons);
}

bool AddScriptCommandDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        const int at = m_edits.indexOf(qobject_cast<QLineEdit *>(watched));
        if (at >= 0)
            m_radios.at(at)->setChecked(true);
    }
    return QDialog::eventFilter(watched, event);
}

AddScriptCommandDialog::Command AddScriptCommandDialog::selected() const
{
    const int id = m_group->checkedId();
    return id < 0 ? MessageBox : Command(id);
}

QString AddScriptCommandDialog::fileLine(Command command, const QString &text)
{
    switch (command) {
    case Comment: return QStringLiteral("//%1\n").arg(text);
    case Clear: return QStringLiteral("Clear()\n");
    default: break;
    }
    return QStringLiteral("%1(%2)\n").arg(QLatin1String(kRows[command].title), text);
}

QString AddScriptCommandDialog::consoleLine(Command command, const QString &text)
{
    QString line = fileLine(command, text);
    line.chop(1);
    return line.toHtmlEscaped() + QStringLiteral("<br>");
}

void AddScriptCommandDialog::insertCommand()
{
    if (!m_recorder)
        return;
    // The comment travels with the element lines that follow, stream or not.
    m_recorder->setComment(m_comment->text());
    const Command command = selected();
    const QLineEdit *edit = m_edits.value(command);
    const QString text = edit ? edit->text() : QString();
    m_recorder->writeRaw(fileLine(command, text), consoleLine(command, text));
}
