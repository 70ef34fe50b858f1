#include "automation/RecordingControl.h"

#include "automation/AddScriptCommandDialog.h"
#include "automation/ScriptRecorder.h"
#include "elements/MessageSink.h"
#include "shell/Dialogs.h"

#include <QAction>
#include <QWidget>

RecordingControl::RecordingControl(QWidget *window, QAction *recordAction, QAction *addAction,
                                   std::function<QString()> folder, std::function<QString()> description)
    : QObject(window)
    , m_window(window)
    , m_record(recordAction)
    , m_add(addAction)
    , m_folder(std::move(folder))
    , m_description(std::move(description))
    , m_recorder(new ScriptRecorder(this))
{
    setObjectName(QStringLiteral("RecordingControl"));
    connect(m_recorder, SIGNAL(recordingChanged(bool)), this, SLOT(updateActions(bool)));
    if (m_add)
        m_add->setEnabled(false);
}

void RecordingControl::updateActions(bool recording)
{
    if (m_record)
        m_record->setText(recording ? tr("Stop recording") : tr("Record script..."));
    if (m_add)
        m_add->setEnabled(recording);
    if (!recording && m_dialog)
        m_dialog->hide();
}

void RecordingControl::startStop()
{
    if (m_recorder->isRecording()) {
        m_recorder->stop();
        return;
    }
    const QString name = Dialogs::saveFileName(m_window, tr("Record script"), m_folder ? m_folder() : QString(),
                                               tr("Script Files (*.script)"));
    if (name.isEmpty())
        return;
    start(name);
}

bool RecordingControl::start(const QString &fileName)
{
    return m_recorder->start(fileName, m_description ? m_description() : QString());
}

void RecordingControl::addCommand()
{
    if (!m_recorder->isRecording()) {
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Recording: </b></font>Script commands can only be "
                                    "added while recording.<br>"));
        return;
    }
    if (!m_dialog)
        m_dialog = new AddScriptCommandDialog(m_recorder, m_window);
    // Not modal: the user goes on working in the form between inserts.
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}
