#pragma once
#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class Preferences;

// Edits the scripts and working folders, the Tav logging, the update period,
// the scaling factor and the tool bar header.
class SettingsDialog : public QDialog
{
    Q_OBJECT
public:
    SettingsDialog(Preferences &preferences, const QString &iniFolder, QWidget *parent = nullptr);

    QComboBox *scriptsDirBox() const { return m_scriptsDir; }
    QLineEdit *workingDirLine() const { return m_workingDir; }
    QCheckBox *timestampsBox() const { return m_timestamps; }
    QCheckBox *consoleBox() const { return m_console; }
    QCheckBox *fileBox() const { return m_file; }
    QLineEdit *logFileLine() const { return m_logFile; }
    QComboBox *periodBox() const { return m_period; }
    QLineEdit *scalingLine() const { return m_scaling; }
    QCheckBox *showHeaderBox() const { return m_showHeader; }

public slots:
    void browseDir();
    void browseWorkingDir();
    void browseLogFile();
    void accept() override;

signals:
    // The tool bar header is to be shown or hidden.
    void toolbarHeaderChanged(bool shown);
    // Logging values to pass on to the stick link.
    void loggingChanged(quint16 mode, bool timestamps, const QString &fileName);

private:
    Preferences &m_preferences;
    QString m_iniFolder;
    QComboBox *m_scriptsDir = nullptr;
    QLineEdit *m_workingDir = nullptr;
    QCheckBox *m_timestamps = nullptr;
    QCheckBox *m_console = nullptr;
    QCheckBox *m_file = nullptr;
    QLineEdit *m_logFile = nullptr;
    QComboBox *m_period = nullptr;
    QLineEdit *m_scaling = nullptr;
    QCheckBox *m_showHeader = nullptr;
};
