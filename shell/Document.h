#pragma once
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QString>
#include <QWidget>
#include <memory>

#include "elements/DocumentTables.h"
#include "reader/DocumentState.h"

class HardwareModel;
class LockEngine;
class QWidget;
struct ReaderOptions;

// One open description: its tables, its root-level settings and its form.
// The main window holds one and forwards its document slots here, so the
// life of a document can run and be tested without a window.
class Document : public QObject
{
    Q_OBJECT
public:
    // slotHost receives the elements' and records' signals (the window).
    explicit Document(QObject *slotHost, QObject *parent = nullptr);
    ~Document() override;

    DocumentTables &tables() { return m_tables; }
    DocumentState &state() { return m_state; }
    HardwareModel &model() { return *m_model; }
    // The locks between the elements and the conflicts they cause.
    LockEngine &locks() { return *m_locks; }
    const DocumentState &state() const { return m_state; }

    QString path() const { return m_path; }
    // Where the elements' signals end (the window; null without one).
    QObject *slotHost() const { return m_slotHost; }
    QString folder() const { return m_folder; }
    bool isLoading() const { return m_tables.loading; }
    void setLoading(bool loading) { m_tables.loading = loading; }

    // Reads a description (the open file) into a new form. On failure the
    // text for "Cannot read file" is in errorText() and the form is empty.
    bool read(const QString &fileName, const ReaderOptions &options);
    QString errorText() const { return m_errorText; }

    // The form's root widget; the caller parents it (the scroll area).
    QWidget *root() const { return m_root; }

    // Deletes the form and empties the tables.
    void clear();

    // Reads the SVD file the description names: in the document's folder,
    // else in the home folder, else where the user points (a dialog, which
    // counts as cancelled in quiet mode). False when the document can't go
    // on; an empty name is not an error worth a message.
    bool readSvd(const QString &homeFolder, QWidget *dialogParent);

    // The names every document has: dummy_define, $ADDRESS$, $VALUE$,
    // $FUNC$ and $DIR$ (a hidden line edit outside the form).
    void createReservedDefines();

    // Defaults of records and elements, then the elements' signals: in this
    // order, so that no default causes an action. Prints the configuration
    // line when the document has headers to write.
    void startUp(bool afterLoad, const QString &configurationName);

    // Kicks the first refresh of every display.
    void refreshDisplays();
    // Every source announces the locks of the value it holds now, on a
    // clean slate: after values were set with signals blocked (a loaded
    // configuration), the locks of the defaults no longer fit.
    void reapplyLocks();
    // Every tree branch follows its control again.
    void applyBranchSwitches();
    // Reports the names that formulas read but nothing defines.
    void checkFormulaOperands();

private:
    QObject *m_slotHost;
    DocumentTables m_tables;
    DocumentState m_state;
    std::unique_ptr<HardwareModel> m_model;
    LockEngine *m_locks;
    QPointer<QWidget> m_root;
    QString m_path;
    QString m_folder;
    QString m_errorText;
};
