#include "integration/DesktopIntegration.h"

#include "integration/KeilIntegration.h"
#include "integration/KeilToolStore.h"
#include "integration/LauncherClient.h"
#include "integration/UpdateCheck.h"
#include "shell/Dialogs.h"
#include "shell/IniSettings.h"
#include "elements/MessageSink.h"

#include <QCoreApplication>
#include <QDir>

DesktopIntegration::DesktopIntegration(const IniSettings &ini, Preferences &preferences, QObject *parent)
    : QObject(parent)
    , m_ini(ini)
    , m_preferences(preferences)
    , m_launcher(new LauncherClient(this))
{
    m_launcher->readManifestOf(QCoreApplication::applicationDirPath());
    m_launcher->disableProductStateStorage = ini.disableProductStateStorage;
    if (ini.lanternServicePort > 0)
        m_launcher->setServicePort(ini.lanternServicePort);
}

void DesktopIntegration::decorateStatusBar(QStatusBar *bar)
{
    m_launcher->decorateStatusBar(bar);
}

void DesktopIntegration::keilAtStart(bool keilFlag, bool quiet)
{
    if (!KeilIntegration::wantedAtStart(keilFlag, m_ini.enableKeil))
        return;
    KeilToolStore store;
    KeilIntegration keil(store);
    if (!m_ini.integrateViaLantern.isEmpty()) {
        // Through the launcher only when started under the remote debug
        // monitor; any other start has nothing to enter.
        const bool viaLauncher = KeilIntegration::launcherStart(m_ini.integrateViaLantern,
                                                                KeilIntegration::parentProcessPath());
        keil.setLauncherForm(viaLauncher, m_launcher->toolFeatureId);
        keil.setHasEntry(viaLauncher);
    }
    keil.integrateAtStart(quiet);
}

void DesktopIntegration::integrateKeil()
{
    KeilToolStore store;
    KeilIntegration keil(store);
    if (keil.integrateKeil())
        consolePrint(tr("Quillon was added to the Keil \u00b5Vision tools menu (%1).<br>")
                         .arg(QDir::toNativeSeparators(store.fileName()).toHtmlEscaped()));
}

void DesktopIntegration::documentOpened(const QString &description)
{
    m_launcher->checkRegisteredTools(description);
}

void DesktopIntegration::checkForUpdates()
{
    UpdateCheck check(m_preferences);
    check.setSites(UpdateCheck::sites(m_ini.internalUpdateHost, m_ini.publicUpdateHost));
    check.run();
}

void DesktopIntegration::showHelp(QWidget *parent)
{
    if (!m_launcher->startHelp(QCoreApplication::applicationDirPath()))
        Dialogs::message(parent, QMessageBox::Information, tr("Quillon Help"),
                         tr("Help is available within Norvane Lantern only."));
}
