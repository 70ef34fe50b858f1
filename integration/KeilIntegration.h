#pragma once
#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>

class KeilToolStore;

// Puts this program into the Keil µVision 5 tools menu, so that a project's
// configuration opens with one click, and cleans entries that point to a
// copy that was removed from disk. The menu lives in a KeilToolStore; the
// questions go through replaceable functions so that the logic runs without
// a window.
class KeilIntegration
{
public:
    // A slot of the tools menu as read from the store.
    struct Entry
    {
        QString text;
        QVariant flags;
        QString executable;
        QString arguments;
        QString folder;
    };

    static const QString &dialogTitle();
    // Where the launcher lives on the machines Keil runs on.
    static const QString &launcherExecutable();

    explicit KeilIntegration(KeilToolStore &store);

    // Who is entered: this program's path and version, and whether the
    // launcher form of the entry is used (with the tool's feature id).
    void setProgramPath(const QString &path) { m_programPath = path; }
    void setVersion(const QString &version) { m_version = version; }
    void setLauncherForm(bool on, const QString &toolFeatureId);
    // false: this start has nothing to enter (the launcher form is configured
    // but the program was not started the way it needs).
    void setHasEntry(bool on) { m_hasEntry = on; }

    // "Quillon V2.5.0"
    QString menuText() const;
    QString entryExecutable() const;
    QString entryArguments() const;

    // Writes this program's entry into slot index and marks the end of the
    // list behind it.
    void addKeilEntry(int index);
    // Drops the entries of this family whose executable is gone, after
    // asking. Returns the number removed.
    int removeStaleKeilEntries();
    // The menu action: enters this program unless it is there already.
    // Returns true when an entry was added.
    bool integrateKeil();
    // The start-up form: clean, refresh an existing entry's text, or add one,
    // asking (with "Remember my decision") only when other copies are
    // entered. In quiet mode nothing is asked and, with other copies
    // entered, nothing is added. Returns true when an entry was added.
    bool integrateAtStart(bool quiet);

    // The questions. ask returns the button pressed; askRemember also
    // reports the state of the check box. Defaults show message boxes.
    std::function<QMessageBox::StandardButton(const QString &title, const QString &text)> ask;
    std::function<QMessageBox::StandardButton(const QString &title, const QString &text, const QString &checkText,
                                              bool *checked)>
        askRemember;
    // Called when the user declined and asked to be remembered
    // (default: stores EnableKeil = 0 in the preferences).
    std::function<void()> rememberDeclined;
    // A line for the console (default: the console).
    std::function<void(const QString &)> report;

    // Whether the start-up form runs: with -k, or when the preference
    // EnableKeil is not 0 and settings.ini enables Keil.
    static bool wantedAtStart(bool keilFlag, bool iniEnableKeil);
    // The image path of the process that started this one (empty when it
    // can't be read).
    static QString parentProcessPath();
    // The launcher form: integratevialantern is set and the program runs
    // under the remote debug monitor.
    static bool launcherStart(const QString &integrateViaLantern, const QString &parentPath);

private:
    static bool isFamily(const QString &menuText);
    void writeEntry(int index, const Entry &entry);
    // First slot whose Mex is empty, -1 when all are taken.
    int firstFreeSlot() const;
    QString otherCopiesQuestion(const QStringList &paths) const;

    KeilToolStore &m_store;
    QString m_programPath;
    QString m_version;
    bool m_launcherForm = false;
    QString m_toolFeatureId;
    bool m_hasEntry = true;
};
