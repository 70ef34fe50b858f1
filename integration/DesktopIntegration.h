#pragma once
#include <QObject>
#include <QString>

class IniSettings;
class LauncherClient;
class Preferences;
class QStatusBar;
class QWidget;

// What the main window does with the desktop around it: the launcher
// service, the update check and the Keil tools menu. The window forwards
// to it in a line each.
class DesktopIntegration : public QObject
{
    Q_OBJECT
public:
    DesktopIntegration(const IniSettings &ini, Preferences &preferences, QObject *parent = nullptr);

    LauncherClient *launcher() const { return m_launcher; }

    // The manifest's version text and "Ready" into the status bar.
    void decorateStatusBar(QStatusBar *bar);
    // The Keil step of the start: runs when -k or the settings ask for it.
    void keilAtStart(bool keilFlag, bool quiet);
    // The menu action.
    void integrateKeil();
    // After each opened document, the home page included.
    void documentOpened(const QString &description);
    // The update check of the start (blocking, bounded by a short time-out).
    void checkForUpdates();
    // Help lives in the launcher; without it the user is told so.
    void showHelp(QWidget *parent);

private:
    const IniSettings &m_ini;
    Preferences &m_preferences;
    LauncherClient *m_launcher;
};
