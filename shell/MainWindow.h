#pragma once
#include <QMainWindow>
#include <QMap>
#include <QPointer>
#include <QString>
#include <memory>

#include "config/ConfigurationReader.h"
#include "shell/IniSettings.h"
#include "shell/Preferences.h"
#include "shell/StartOptions.h"

class ActionTable;
class RecordingControl;
class DataTasks;
class TargetAccess;
class StickFirmware;
class TerminalPort;
class ScriptInterpreter;
class WindowScriptHost;
class MathCascade;
class ElementBlinker;
class ActiveElement;
class Console;
class DataClass;
class DesktopIntegration;
class Document;
class DocumentTables;
class QLabel;
class QScrollArea;
class QToolBar;

// The one coordinator: it holds the open document, the console and the
// settings, builds the frame (tool bars, menus, console dock) and offers
// the slots that the elements' signals end in. The work itself is done by
// the classes it forwards to.
//
// All work of the unattended flows (-g, -s, -x, -b) runs inside the
// constructor; when it asks the process to end, exitRequested() is true and
// the window is never shown.
class DiffDialog;
class UnresolvedDialog;
class MainWindow : public QMainWindow, public ConfigurationHost
{
    Q_OBJECT
public:
    explicit MainWindow(const StartOptions &options, QWidget *parent = nullptr);
    ~MainWindow() override;

    // The one instance, through which elements reach the window.
    static MainWindow *instance();

    bool exitRequested() const { return m_exitRequested; }
    int exitCode() const { return m_exitCode; }
    // Ends the process after the current step (or at once from the event
    // loop) with this code.
    void requestExit(int code);

    Console *console() const { return m_console; }
    Document *document() const { return m_document; }
    const IniSettings &iniSettings() const { return m_ini; }
    IniSettings &iniSettings() { return m_ini; }
    Preferences &preferences() { return m_preferences; }
    bool quiet() const { return m_options.quiet; }

    ActiveElement *element(const QString &name);
    DataClass *dataValue(const QString &name);

    // The assignment of -d and of the script command SET.
    bool setDefineValue(const QString &name, const QString &value);

    void consolePrint(const QString &html);
    void showError(const QString &text);

    // The close mode a script sets for the next close: 0 asks, 1 saves,
    // 2 closes at once, 3 refuses.
    void setCloseMode(int mode) { m_closeMode = mode; }

    // Shows the window as the preferences say: at its stored geometry, or
    // maximized the first time.
    void showAsStored();

    // A file dropped on the window: a description opens, a configuration
    // loads; other files are left alone.
    void openDropped(const QString &fileName);

    // Opens the tab pages and tree rows that hold the element and gives it
    // the focus.
    void showElement(ActiveElement *element);

public slots:
    void open();
    bool open(const QString &fName);
    void reopen();
    void newProject();
    void documentWasModified(bool modified);
    void resetGUI();
    void resetGUI(const QString &s);
    void changed();
    void tabSelected();
    void showSettingsDialog();
    void showHelp();
    void integrateKeil();
    void showForum();
    void showAppNotes();
    void switchFullscreenMode();
    void searchForGUIElement();
    void expandBranch();
    void collapseBranch();
    void clearConsole();
    void on_anchorClicked(const QString &define);

    // The start-up step of a document; afterLoad after a configuration load.
    void startUp(bool afterLoad);

    // Configuration files and headers.
    bool save();
    bool saveAs();
    void load();
    bool load(const QString &fileName);
    bool loadOld(const QString &fileName);
    bool saveConfiguration(const QString &fileName, bool sorted = false);
    void exportHeaderFiles();
    void exportHeaderFiles(bool writeAll);
    void signFile();
    // Tools for description authors (tooling/DescriptionTools).
    void validateDefines();
    void generateXMLFromSVD();
    void completeSvdFile();
    // The form against a saved configuration, without changing anything.
    void showDifferences();
    void showDifferences(const QString &fileName);

public slots:
    // The commands of the elements' actions (resetGUI is above).
    void setDef(const QString &text);
    void loadFile(const QString &name);
    // fixFolder: make the current document's folder the working folder
    // before the name is resolved against it.
    void loadFile(const QString &name, bool fixFolder);
    void startProgram(const QString &command);
    void runScript(const QString &text);
    // Output of the Python bridge, shown on the console.
    void PythonStdOut(QString s);
    void PythonStdErr(QString s);
    // Recording of scripts from the user's hand.
    void startStopRecording();
    void addRecordCmd();

public:
    // What reading a configuration needs from the window.
    bool openDescription(const QString &path, const QString &configuration) override;
    QString currentDescription() const override { return m_lastDocument; }
    QString homeFolder() const override;
    QString descriptionVersion() const override;
    void resetToDefaults() override { resetGUI(); }
    DocumentTables &tables() override;
    QString migrationPath() const override;
    UnresolvedDialog *unresolvedDialog() const { return m_unresolvedDialog; }
    DiffDialog *diffDialog() const { return m_diffDialog; }

    QString configurationPath() const { return m_configurationPath; }
    // Folder the headers go to; by default that of the configuration.
    void setExportFolder(const QString &folder) { m_exportFolder = folder; }

    // Scripts.
    ScriptInterpreter &scriptInterpreter() { return *m_scripts; }
    // The current configuration name (SETFILENAME): title and working folder.
    void setConfigurationPath(const QString &path);
    // Prefix written before the names of one header's registers.
    void setDefinePrefix(const QString &header, const QString &prefix) { m_definePrefixes.insert(header, prefix); }
    // Full screen for scripts: menus and tool bars go away with it.
    void setScriptFullScreen(bool on);

public slots:
    void runBatchfile();
    void runBatchfile(const QString &fileName);
    // One script line, as actions and the Python bridge run them.
    bool execScriptLine(const QString &line, unsigned lineNumber);

public slots:
    // Refreshes of the displays that follow the sender's define: math labels
    // (and the labels that read them in turn), LEDs, embedded SVG pictures
    // and logs.
    void on_updateMathLabel();
    void on_updateLED();
    void on_updateSvgImage();
    void on_updateLog();
    // Plots, dials and thermometers fed by the sender's define.
    void on_updateCurve();
    void on_updateDial();
    void on_updateThermo();

public:
    MathCascade &mathCascade();

    // Board traffic over the stick link; the work is DataTasks' and
    // StickFirmware's.
public slots:
    void sendUSB(const QString &s);
    void recData(const QString &s);
    void getTAVFWVersion();
    void updateTAVFW();
    int checkFirmwareVersion(bool quiet);

public:
    DataTasks &dataTasks() { return *m_traffic; }
    StickFirmware &stickFirmware() { return *m_firmware; }
    TerminalPort *terminalPort() const { return m_terminal; }

    // Locks between elements and the conflicts they cause; the work is
    // the document's LockEngine.
public slots:
    void on_sendLock(const QString &lock);
    void on_sendUnlock(const QString &lock);
    void showLocks();
    // The SVD model as a tree, in a window of its own.
    void showSvdTree();
    // The form editor on the open form, in a window of its own.
    void editGUI();
    // The chip drawing in a window of its own (menu and SHOWPINMAPPER), and
    // a catalog record picked into the form (SELECTDATA).
    void showPortMapping();
    void selectData(const QString &catalogPath);

public:
    // Waiting lock sources plus labels out of range; header export refuses
    // while it is not 0.
    int conflictCount() const;

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    // The element whose signal is handled now, also when it came through a
    // SignalRelay (where QObject::sender() is null).
    QObject *signalSender() const;

private:
    void buildActions();
    void buildToolBars();
    void setDocumentActionsEnabled(bool enabled);
    bool readDocument(const QString &fileName, bool homePage);
    void placeRoot();
    bool maybeSave();
    void storePreferences();
    void applyCommandLineDefines();
    void stopWorkers();
    void connectConflictSources();
    // Moves what the migration file knows, then shows what is left; false
    // when the migration file can't be read.
    bool resolveLeftovers(const QStringList &unresolved, const QStringList &unseen);
    // The common end of both load paths: locks, leftovers, title.
    bool finishLoad(const QString &fileName, const QStringList &unresolved, const QStringList &unseen);
    void openTerminal();
    QString disclaimerPath();

    StartOptions m_options;
    Console *m_console = nullptr;
    UnresolvedDialog *m_unresolvedDialog = nullptr;
    DiffDialog *m_diffDialog = nullptr;
    Document *m_document = nullptr;
    IniSettings m_ini;
    Preferences m_preferences;
    ActionTable *m_actions = nullptr;
    ElementBlinker *m_blinker = nullptr;
    bool m_wasMaximized = false;
    QScrollArea *m_scroll = nullptr;
    QToolBar *m_lanternToolBar = nullptr;
    QToolBar *m_toolBar = nullptr;
    QString m_lastDocument;
    QString m_configurationPath;
    QString m_exportFolder;
    QMap<QString, QString> m_definePrefixes;
    WindowScriptHost *m_scriptHost = nullptr;
    ScriptInterpreter *m_scripts = nullptr;
    int m_closeMode = 0;
    bool m_exitRequested = false;
    int m_exitCode = 0;
    bool m_homePage = false;
    std::unique_ptr<MathCascade> m_mathCascade;
    DataTasks *m_traffic = nullptr;
    TargetAccess *m_targetAccess = nullptr;
    StickFirmware *m_firmware = nullptr;
    TerminalPort *m_terminal = nullptr;
    DesktopIntegration *m_integration = nullptr;
    RecordingControl *m_recording = nullptr;
};
