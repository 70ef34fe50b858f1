#include "shell/SettingsDialog.h"

#include "shell/Dialogs.h"
#include "shell/IniSettings.h"
#include "shell/Preferences.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

SettingsDialog::SettingsDialog(Preferences &preferences, const QString &iniFolder, QWidget *parent)
    : QDialog(parent)
    , m_preferences(preferences)
    , m_iniFolder(iniFolder)
{
    setWindowTitle(tr("Settings"));
    auto *layout = new QVBoxLayout(this);

    auto *folders = new QFormLayout;
    m_scriptsDir = new QComboBox(this);
    m_scriptsDir->setEditable(true);
    m_scriptsDir->addItems(Preferences::scriptDirList());
    m_scriptsDir->setCurrentText(preferences.scriptsDir);
    auto *browseScripts = new QPushButton(tr("Browse..."), this);
    auto *scriptsRow = new QHBoxLayout;
    scriptsRow->addWidget(m_scriptsDir, 1);
    scriptsRow->addWidget(browseScripts);
    folders->addRow(tr("Scripts Directory: "), scriptsRow);

    m_workingDir = new QLineEdit(preferences.workingDir, this);
    auto *browseWorking = new QPushButton(tr("Browse..."), this);
    auto *workingRow = new QHBoxLayout;
    workingRow->addWidget(m_workingDir, 1);
    workingRow->addWidget(browseWorking);
    folders->addRow(tr("Working Directory: "), workingRow);
    layout->addLayout(folders);

    auto *logging = new QGroupBox(tr("Tav Logging"), this);
    auto *loggingLayout = new QVBoxLayout(logging);
    m_timestamps = new QCheckBox(tr("Log with timestamps"), logging);
    m_console = new QCheckBox(tr("Console"), logging);
    m_file = new QCheckBox(tr("File"), logging);
    m_timestamps->setChecked(preferences.tavLoggingTimeStamps);
    m_console->setChecked(preferences.tavLoggingMode & 1);
    m_file->setChecked(preferences.tavLoggingMode & 2);
    m_logFile = new QLineEdit(preferences.tavLoggingFilename, logging);
    auto *browseLog = new QPushButton(tr("Browse..."), logging);
    auto *fileRow = new QHBoxLayout;
    fileRow->addWidget(m_file);
    fileRow->addWidget(m_logFile, 1);
    fileRow->addWidget(browseLog);
    loggingLayout->addWidget(m_timestamps);
    loggingLayout->addWidget(m_console);
    loggingLayout->addLayout(fileRow);
    layout->addWidget(logging);

    auto *updates = new QGroupBox(tr("Check for updates"), this);
    auto *updatesLayout = new QFormLayout(updates);
    m_period = new QComboBox(updates);
    m_period->addItems({tr("Never"), tr("Every day"), tr("Every week"), tr("Every month")});
    m_period->setCurrentIndex(qBound(0, preferences.updatePeriod, 3));
    updatesLayout->addRow(tr("Checking timespan: "), m_period);
    layout->addWidget(updates);

    auto *scaling = new QGroupBox(tr("Scaling"), this);
    auto *scalingLayout = new QFormLayout(scaling);
    m_scaling = new QLineEdit(scaling);
    IniSettings ini;
    QString unused = QStringLiteral("-");
    ini.read(iniFolder, false, unused);
    m_scaling->setText(ini.scaleFactor);
    scalingLayout->addRow(tr("Scaling factor: "), m_scaling);
    scalingLayout->addRow(new QLabel(tr("Setting will only take effect after restart of Quillon."), scaling));
    layout->addWidget(scaling);

    auto *header = new QGroupBox(tr("Norvane Lantern Header"), this);
    auto *headerLayout = new QVBoxLayout(header);
    m_showHeader = new QCheckBox(tr("Show"), header);
    m_showHeader->setChecked(preferences.toolbarEnabled != 0);
    headerLayout->addWidget(m_showHeader);
    layout->addWidget(header);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons);

    connect(browseScripts, &QPushButton::clicked, this, &SettingsDialog::browseDir);
    connect(browseWorking, &QPushButton::clicked, this, &SettingsDialog::browseWorkingDir);
    connect(browseLog, &QPushButton::clicked, this, &SettingsDialog::browseLogFile);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
}

void SettingsDialog::browseDir()
{
    const QString dir = Dialogs::existingDirectory(this, tr("Select scripts folder..."), m_scriptsDir->currentText());
    if (!dir.isEmpty())
        m_scriptsDir->setCurrentText(dir);
}

void SettingsDialog::browseWorkingDir()
{
    const QString dir = Dialogs::existingDirectory(this, tr("Working Directory: ").trimmed(), m_workingDir->text());
    if (!dir.isEmpty())
        m_workingDir->setText(dir);
}

void SettingsDialog::browseLogFile()
{
    const QString file = Dialogs::saveFileName(this, tr("Select Tav Logging file..."), m_logFile->text(), QString());
    if (!file.isEmpty())
        m_logFile->setText(file);
}

void SettingsDialog::accept()
{
    const QString scripts = m_scriptsDir->currentText();
    QStringList list = Preferences::scriptDirList();
    if (!list.contains(scripts)) {
        list.append(scripts);
        Preferences::setScriptDirList(list);
    }
    m_preferences.setScriptsDir(scripts);
    m_preferences.setWorkingDir(m_workingDir->text());

    quint16 mode = 0;
    if (m_console->isChecked())
        mode |= 1;
    if (m_file->isChecked())
        mode |= 2;
    m_preferences.write(mode, m_timestamps->isChecked(), m_logFile->text(), m_period->currentIndex(),
                        m_showHeader->isChecked() ? 1 : 0);
    emit toolbarHeaderChanged(m_showHeader->isChecked());
    emit loggingChanged(mode, m_timestamps->isChecked(), m_logFile->text());

    // Factors below 1.0 are dropped without a word.
    const QString factor = m_scaling->text().trimmed();
    bool ok = false;
    const double value = factor.toDouble(&ok);
    if (!factor.isEmpty() && ok && value >= 1.0) {
        IniSettings::writeScaleFactor(m_iniFolder, factor);
        qputenv("QT_SCALE_FACTOR", factor.toLocal8Bit());
    }
    QDialog::accept();
}
