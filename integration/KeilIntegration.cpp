#include "integration/KeilIntegration.h"

#include "elements/MessageSink.h"
#include "integration/KeilToolStore.h"
#include "shell/Dialogs.h"
#include "shell/Preferences.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <unistd.h>

namespace {

// Flags of a new entry, as Keil sets them for a tool that runs minimized
// with the project's variables expanded.
const int kNewEntryFlags = 0x900;

const char kEnableKeil[] = "EnableKeil";

} // namespace

const QString &KeilIntegration::dialogTitle()
{
    static const QString title = QStringLiteral("Keil \u00b5Vision 5 Integration");
    return title;
}

const QString &KeilIntegration::launcherExecutable()
{
    static const QString path = QStringLiteral("C:\\Norvane\\Lantern\\Norvane-Lantern.exe");
    return path;
}

KeilIntegration::KeilIntegration(KeilToolStore &store)
    : m_store(store)
{
    ask = [](const QString &title, const QString &text) {
        return Dialogs::question(nullptr, QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::No);
    };
    askRemember = [](const QString &title, const QString &text, const QString &checkText, bool *checked) {
        *checked = false;
        if (Dialogs::quiet())
            return QMessageBox::No;
        QMessageBox box(QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        auto *check = new QCheckBox(checkText, &box);
        box.setCheckBox(check);
        const auto answer = QMessageBox::StandardButton(box.exec());
        *checked = check->isChecked();
        return answer;
    };
    rememberDeclined = [] {
        QSettings prefs(QCoreApplication::organizationName(), Preferences::applicationKey());
        prefs.setValue(QLatin1String(kEnableKeil), 0);
    };
    report = [](const QString &text) { consolePrint(text.toHtmlEscaped() + QStringLiteral("<br>")); };
    m_programPath = QCoreApplication::applicationFilePath();
    m_version = QCoreApplication::applicationVersion();
}

void KeilIntegration::setLauncherForm(bool on, const QString &toolFeatureId)
{
    m_launcherForm = on;
    m_toolFeatureId = toolFeatureId;
}

QString KeilIntegration::menuText() const
{
    return QStringLiteral("Quillon V") + m_version;
}

QString KeilIntegration::entryExecutable() const
{
    return m_launcherForm ? launcherExecutable() : QDir::toNativeSeparators(m_programPath);
}

QString KeilIntegration::entryArguments() const
{
    if (m_launcherForm)
        return QStringLiteral("\"-clearPersistedState -dember.launcher.starttool %1 $PRTE\\Device\\$D\\config.qlnp\"")
            .arg(m_toolFeatureId);
    return QStringLiteral("\"$PRTE\\Device\\$D\\config.qlnp\"");
}

bool KeilIntegration::isFamily(const QString &menuText)
{
    return menuText.startsWith(QLatin1String("Quillon")) || menuText.startsWith(QLatin1String("NVXQuillon"));
}

void KeilIntegration::writeEntry(int index, const Entry &entry)
{
    m_store.setValue("Mex", index, entry.executable);
    m_store.setValue("Mag", index, entry.arguments);
    m_store.setValue("Mfg", index, entry.flags);
    m_store.setValue("Mtx", index, entry.text);
    m_store.setValue("Mid", index, entry.folder);
}

void KeilIntegration::addKeilEntry(int index)
{
    if (index < 0 || index >= KeilToolStore::kSlots)
        return;
    writeEntry(index, Entry{menuText(), kNewEntryFlags, entryExecutable(), entryArguments(), QString()});
    m_store.setValue("Mfg", index + 1, 0);
    if (!m_store.sync())
        report(QObject::tr("Cannot write the Keil \u00b5Vision tools menu %1.").arg(m_store.fileName()));
}

int KeilIntegration::removeStaleKeilEntries()
{
    if (!m_store.exists())
        return 0;
    QList<Entry> kept;
    int stale = 0;
    for (int i = 0; i < KeilToolStore::kSlots; ++i) {
        const QString text = m_store.text("Mtx", i);
        if (text.isEmpty())
            continue;
        bool isNumber = false;
        if (m_store.flags(i, &isNumber) == 0 && isNumber)
            break;
        const QString executable = m_store.text("Mex", i);
        if (isFamily(text) && !QFileInfo::exists(executable)) {
            ++stale;
            continue;
        }
        kept.append(Entry{text, m_store.value("Mfg", i), executable, m_store.text("Mag", i), m_store.text("Mid", i)});
    }
    if (stale == 0)
        return 0;
    const QString text = stale == 1
        ? QStringLiteral("There is a Quillon integrated into\nKeil \u00b5Vision5 that has been removed from disk.\n"
                         "Remove from Keil Tool menu also?")
        : QStringLiteral("There are %1 Quillon integrated into\nKeil \u00b5Vision5 that have been removed from disk.\n"
                         "Remove from Keil Tool menu also?")
              .arg(stale);
    if (ask(dialogTitle(), text) != QMessageBox::Yes)
        return 0;
    m_store.clear();
    for (int i = 0; i < kept.size(); ++i)
        writeEntry(i, kept.at(i));
    m_store.setValue("Mfg", kept.size(), 0);
    if (!m_store.sync())
        report(QObject::tr("Cannot write the Keil \u00b5Vision tools menu %1.").arg(m_store.fileName()));
    return stale;
}

int KeilIntegration::firstFreeSlot() const
{
    for (int i = 0; i < KeilToolStore::kSlots; ++i) {
        if (m_store.text("Mex", i).isEmpty())
            return i;
    }
    return -1;
}

QString KeilIntegration::otherCopiesQuestion(const QStringList &paths) const
{
    return QStringLiteral("Other Quillon(s) were integrated into Keil \u00b5Vision5.\n\nPaths:\n-%1\n\n"
                          "Should the running Quillon be also integrated?")
        .arg(paths.join(QStringLiteral("\n-")));
}

bool KeilIntegration::integrateKeil()
{
    if (!m_store.exists())
        return false;
    QString path = m_programPath;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    QStringList others;
    for (int i = 0; i < KeilToolStore::kSlots; ++i) {
        const QString executable = m_store.text("Mex", i);
        if (executable.isEmpty())
            continue;
        if (executable == path)
            return false;
        if (m_store.text("Mtx", i).startsWith(QLatin1String("Quillon")))
            others.append(executable);
    }
    const int slot = firstFreeSlot();
    if (slot < 0) {
        report(QObject::tr("The Keil \u00b5Vision tools menu has no free entry; Quillon was not added."));
        return false;
    }
    if (!others.isEmpty() && ask(dialogTitle(), otherCopiesQuestion(others)) != QMessageBox::Yes)
        return false;
    addKeilEntry(slot);
    return true;
}

bool KeilIntegration::integrateAtStart(bool quiet)
{
    if (!m_store.exists())
        return false;
    removeStaleKeilEntries();
    if (!m_hasEntry)
        return false;
    const QString executable = entryExecutable().toUpper();
    const QString arguments = entryArguments().toUpper();
    QStringList others;
    for (int i = 0; i < KeilToolStore::kSlots; ++i) {
        const QString mex = m_store.text("Mex", i);
        if (mex.isEmpty())
            continue;
        const QString mtx = m_store.text("Mtx", i);
        if (mex.toUpper() == executable && m_store.text("Mag", i).toUpper() == arguments) {
            // Entered already; an older copy's text is brought up to date.
            if (mtx != menuText()) {
                m_store.setValue("Mtx", i, menuText());
                m_store.sync();
            }
            return false;
        }
        if (isFamily(mtx))
            others.append(mex);
    }
    const int slot = firstFreeSlot();
    if (slot < 0) {
        report(QObject::tr("The Keil \u00b5Vision tools menu has no free entry; Quillon was not added."));
        return false;
    }
    if (!others.isEmpty()) {
        if (quiet)
            return false;
        const QString text = otherCopiesQuestion(others)
            + QStringLiteral("\n\nHint: Quillon can be removed in Keil by menu \"Tools -> Customize Tools Menu...\"");
        bool remember = false;
        const auto answer = askRemember(dialogTitle(), text, QStringLiteral("Remember my decision"), &remember);
        if (answer != QMessageBox::Yes) {
            if (remember)
                rememberDeclined();
            return false;
        }
    }
    addKeilEntry(slot);
    return true;
}

bool KeilIntegration::wantedAtStart(bool keilFlag, bool iniEnableKeil)
{
    if (keilFlag)
        return true;
    if (!iniEnableKeil)
        return false;
    QSettings prefs(QCoreApplication::organizationName(), Preferences::applicationKey());
    const QVariant stored = prefs.value(QLatin1String(kEnableKeil));
    bool ok = false;
    const int value = stored.toString().trimmed().toInt(&ok);
    return !(stored.isValid() && ok && value == 0);
}

QString KeilIntegration::parentProcessPath()
{
    return QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(qint64(::getppid())));
}

bool KeilIntegration::launcherStart(const QString &integrateViaLantern, const QString &parentPath)
{
    return !integrateViaLantern.isEmpty() && parentPath.contains(QLatin1String("msvsmon"));
}
