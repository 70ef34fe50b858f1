#pragma once
#include <QObject>
#include <QPointer>
#include <functional>

#include "automation/AddScriptCommandDialog.h"
class QAction;
class QWidget;
class ScriptRecorder;

// The menu side of recording: the two actions, the save dialog that starts
// a recording and the dialog that adds commands to it. The window's slots
// startStopRecording() and addRecordCmd() forward here.
class RecordingControl : public QObject
{
    Q_OBJECT
public:
    // folder: where the save dialog starts; description: the path of the
    // form written in the script's header.
    RecordingControl(QWidget *window, QAction *recordAction, QAction *addAction, std::function<QString()> folder,
                     std::function<QString()> description);

    ScriptRecorder &recorder() { return *m_recorder; }
    AddScriptCommandDialog *dialog() const { return m_dialog; }

    // Asks for a file and starts, or stops a running recording.
    void startStop();
    // Starts a recording into this file, without asking.
    bool start(const QString &fileName);
    // Opens the dialog of added commands (only while recording).
    void addCommand();

private slots:
    void updateActions(bool recording);

private:
    QWidget *m_window;
    QPointer<QAction> m_record;
    QPointer<QAction> m_add;
    std::function<QString()> m_folder;
    std::function<QString()> m_description;
    ScriptRecorder *m_recorder;
    QPointer<AddScriptCommandDialog> m_dialog;
};
