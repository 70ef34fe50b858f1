#include "shell/MainWindow.h"
#include "automation/PythonBridge.h"
#include "automation/RecordingControl.h"
#include "elements/SignalRelay.h"
#include "config/Migration.h"
#include "views/DiffDialog.h"
#include "views/UnresolvedDialog.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/SetDef.h"
#include "elements/DefineAssignment.h"
#include "elements/DisplayRefresh.h"
#include "model/MathCascade.h"
#include "elements/Reports.h"
#include "reader/DescriptionReader.h"
#include "config/Checksum.h"
#include "config/ConfigurationWriter.h"
#include "config/HeaderExporter.h"
#include "config/OldConfigurationLoader.h"
#include "device/DataTasks.h"
#include "device/StickFirmware.h"
#include "device/TerminalPort.h"
#include "elements/TimerLabel.h"
#include "automation/ScriptInterpreter.h"
#include "shell/ActionTable.h"
#include "integration/DesktopIntegration.h"
#include "shell/WindowScriptHost.h"
#include "tooling/DescriptionTools.h"
#include "shell/AppVersion.h"
#include "shell/CommandLine.h"
#include "shell/Console.h"
#include "shell/Dialogs.h"
#include "shell/ElementBlinker.h"
#include "shell/FindDialog.h"
#include "elements/PageRevealer.h"
#include "shell/Document.h"
#include "shell/SettingsDialog.h"
#include "elements/MathLabel.h"
#include "model/LockEngine.h"
#include "views/LockDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QProcess>
#include <QProgressDialog>
#include <QThread>
#include <QTimer>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QButtonGroup>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <QRegularExpression>
#include <QUrl>
#include "config/ParameterMap.h"
#include "views/PortMappingDialog.h"
#include "views/SelectFromCatalogDialog.h"
#include "views/GaugeFeed.h"
#include "device/TargetAccess.h"
#include "views/ShowSvdDialog.h"
#include "tooling/ShowXMLDialog.h"
#include "views/ViewContext.h"

namespace {

MainWindow *g_mainWindow = nullptr;

const ActionTable::Row kFileRows[] = {
    {"&Home...", "Back to main selection of XMLs.", "newProject", true},
    {nullptr, nullptr, nullptr, true},
    {"&Load...", "Load configuration file (values entered before and the matching hardware description).", "load", true},
    {nullptr, nullptr, nullptr, true},
    {"&Save...", "Save configuration file (the values entered by the user).", "save", true},
    {"&Save as...", "Save the configuration file (values entered) as...", "saveAs", true},
    {nullptr, nullptr, nullptr, true},
    {"E&xit", "Close the Quillon.", "close", true},
};

} // namespace

MainWindow *MainWindow::instance()
{
    return g_mainWindow;
}

MainWindow::MainWindow(const StartOptions &options, QWidget *parent)
    : QMainWindow(parent)
    , m_options(options)
{
    // 1. The one instance, and the message paths of the run mode.
    g_mainWindow = this;
    Dialogs::setQuiet(options.quiet);
    m_console = new Console(this, options.quiet);

    // 2. The mirror of the console.
    if (!options.consoleLogFile.isEmpty())
        m_console->openMirror(options.consoleLogFile);

    // 3. Preferences, then settings.ini beside the executable.
    m_preferences.read();
    QString fileName = m_options.fileName;
    m_ini.read(QCoreApplication::applicationDirPath(), options.keil, fileName);
    m_options.fileName = fileName;
    m_console->setExternalEditor(m_ini.externalEditor);

    // 4. Actions, menus, tool bars and the docked console.
    m_blinker = new ElementBlinker(this);
    m_scriptHost = new WindowScriptHost(*this);
    m_scripts = new ScriptInterpreter(*m_scriptHost, this);
    m_scripts->setOutputFileName(options.outputLogFile);
    m_document = new Document(this, this);
    connectConflictSources();
    m_traffic = new DataTasks(m_document->tables(), this);
    m_targetAccess = new TargetAccess(this);
    ViewContext::setModel(&m_document->model());
    ViewContext::setHost(this);
    ViewContext::setDataTasks(m_traffic);
    m_traffic->setDefaultLogging(m_preferences.tavLoggingMode, m_preferences.tavLoggingTimeStamps,
                                 m_preferences.tavLoggingFilename);
    m_firmware = new StickFirmware(*m_traffic, this, this);
    m_firmware->setTimersRunning = [this](bool running) {
        for (QObject *object : qAsConst(m_document->tables().timers)) {
            if (auto *timer = qobject_cast<TimerLabel *>(object))
                running ? timer->start() : timer->stop();
        }
    };
    m_terminal = new TerminalPort(this);
    connect(m_terminal, &TerminalPort::textReady, m_console, &Console::appendTerminal);
    m_document->tables().onModified = [this] { setWindowModified(true); };
    m_scroll = new QScrollArea(this);
    m_scroll->setWidgetResizable(true);
    m_scroll->setObjectName(QStringLiteral("formArea"));
    setCentralWidget(m_scroll);
    buildActions();
    buildToolBars();
    addDockWidget(Qt::BottomDockWidgetArea, m_console->dock());
    // The form comes first: the console starts low and can be pulled up.
    resizeDocks({m_console->dock()}, {140}, Qt::Vertical);
    connect(m_console, &Console::elementLinkClicked, this, &MainWindow::on_anchorClicked);
    m_unresolvedDialog = new UnresolvedDialog(this);
    connect(m_unresolvedDialog, &UnresolvedDialog::elementRequested, this, &MainWindow::on_anchorClicked);
    m_diffDialog = new DiffDialog(this);
    connect(m_diffDialog, &DiffDialog::elementRequested, this, &MainWindow::on_anchorClicked);
    setAcceptDrops(true);
    m_integration = new DesktopIntegration(m_ini, m_preferences, this);
    m_integration->decorateStatusBar(statusBar());

    // 5. The window title.
    setWindowTitle(QStringLiteral("Quillon [*]"));
    setDocumentActionsEnabled(false);

    // 6. The Keil tools menu (-k, or as the settings say).
    m_integration->keilAtStart(m_options.keil, m_options.quiet);

    // 7. The document of the command line.
    const QString file = m_options.fileName;
    if (file.endsWith(QLatin1String(".xml"))) {
        if (open(file))
            startUp(false);
        else
            newProject();
    } else if (file.endsWith(QLatin1String(".qlnp"))) {
        load(file);
    }

    // 8. The batch script, which may end the process itself (EXIT).
    if (!m_options.batchFile.isEmpty()) {
        runBatchfile(m_options.batchFile);
        if (m_exitRequested)
            return;
    }

    // 9.-11. The unattended flows end here, with 0 whatever happened: the
    // console mirror tells what went wrong.
    if (m_options.save) {
        QString target = m_options.saveFile;
        if (target.isEmpty()) {
            target = file;
            target.replace(QRegularExpression(QStringLiteral("\\.xml$"), QRegularExpression::CaseInsensitiveOption),
                           QStringLiteral(".qlnp"));
        }
        if (!m_lastDocument.isEmpty())
            saveConfiguration(target);
        requestExit(0);
        return;
    }
    if (m_options.generate) {
        if (!m_lastDocument.isEmpty())
            exportHeaderFiles(false);
        requestExit(0);
        return;
    }
    if (m_options.exitAfterKeil) {
        requestExit(0);
        return;
    }

    // 12. The home page when no file was named.
    if (file.isEmpty())
        newProject();

    // 13. Values given with -d.
    applyCommandLineDefines();
    // The update check once the window is up, so that its box has a parent.
    QTimer::singleShot(0, m_integration, &DesktopIntegration::checkForUpdates);
}

MainWindow::~MainWindow()
{
    if (ViewContext::dataTasks() == m_traffic)
        ViewContext::clear();
    stopWorkers();
    m_traffic->closeDocument();
    delete m_actions;
    delete m_scriptHost;
    if (g_mainWindow == this)
        g_mainWindow = nullptr;
}

// Display refreshes: the work is the cascade's and DisplayRefresh's.

MathCascade &MainWindow::mathCascade()
{
    if (!m_mathCascade)
        m_mathCascade.reset(new MathCascade(nullptr));
    return *m_mathCascade;
}

void MainWindow::on_updateMathLabel()
{
    mathCascade().update(signalSender());
}

void MainWindow::on_updateLED()
{
    DisplayRefresh::leds(&m_document->tables(), DisplayRefresh::senderDefine(signalSender()));
}

void MainWindow::on_updateSvgImage()
{
    DisplayRefresh::svgImages(&m_document->tables(), DisplayRefresh::senderDefine(signalSender()));
}

void MainWindow::on_updateLog()
{
    DisplayRefresh::logs(&m_document->tables(), DisplayRefresh::senderDefine(signalSender()));
}

void MainWindow::on_updateCurve()
{
    GaugeFeed::curves(&m_document->tables(), signalSender());
}

void MainWindow::on_updateDial()
{
    GaugeFeed::dials(&m_document->tables(), signalSender());
}

void MainWindow::on_updateThermo()
{
    GaugeFeed::thermos(&m_document->tables(), signalSender());
}

ActiveElement *MainWindow::element(const QString &name)
{
    return m_document->tables().element(name);
}

DataClass *MainWindow::dataValue(const QString &name)
{
    return m_document->tables().dataValue(name);
}

void MainWindow::consolePrint(const QString &html)
{
    m_console->consolePrint(html);
}

void MainWindow::showError(const QString &text)
{
    m_console->showError(text);
}

void MainWindow::requestExit(int code)
{
    m_exitRequested = true;
    m_exitCode = code;
}

bool MainWindow::setDefineValue(const QString &name, const QString &value)
{
    const auto result = DefineAssignment::setDefineValue(m_document->tables(), name, value);
    if (result == DefineAssignment::UnknownDefine) {
        consolePrint(DefineAssignment::unknownDefineText(name, name + QLatin1Char('=') + value, QString(), 0));
        return false;
    }
    return result == DefineAssignment::Done;
}

void MainWindow::applyCommandLineDefines()
{
    if (m_options.defines.isEmpty())
        return;
    const auto items = CommandLine::defineItems(m_options.defines);
    for (const auto &item : items) {
        qDebug().noquote() << item.first << " / " << item.second;
        setDefineValue(item.first, item.second);
    }
}

void MainWindow::buildActions()
{
    m_actions = new ActionTable(this);

    auto *fileMenu = new QMenu(tr("File"), this);
    fileMenu->setObjectName(QStringLiteral("fileMenu"));
    m_actions->fill(fileMenu, kFileRows, int(sizeof kFileRows / sizeof kFileRows[0]));

    const ActionTable::Row extrasRows[] = {
        {"&Export header files", "Export header files describing a certain hardware configuration.", "exportHeaderFiles", true},
        {"&Settings...", "Edit global settings for Quillon.", "showSettingsDialog", true},
        {nullptr, nullptr, nullptr, true},
        {"&Open XML...", "Open a XML describing a hardware.", "open", true},
        {"&Reopen XML", "Reopen last XML (all elements are set back to their initial values).", "reopen", true},
        {nullptr, nullptr, nullptr, true},
        {"&Search GUI element...", "Search for a GUI element in the current loaded XML. Opens the element.", "searchForGUIElement", true},
        {"&Show differences...", "Show differences of values compared to an qlnp file.", "showDifferences", true},
        {"&Expand branch", "Expand branch and sub-branches currently marked.", "expandBranch", true},
        {"&Collapse branch", "Collapse branch and sub-branches currently marked.", "collapseBranch", true},
        {nullptr, nullptr, nullptr, true},
        {"Get Tav &version", "Get the firmware version of the currently plugged in Tav.", "getTAVFWVersion", true},
        {"&Update Tav...", "Update the firmware of the currently plugged in Tav. A valid firmware file is neccessary to do this.", "updateTAVFW", true},
        {nullptr, nullptr, nullptr, true},
        {"&Run script file...", "Run a script file to automate operation.", "runBatchfile", true},
        {"&Record script...", "Record user actions to Script file.", "startStopRecording", m_ini.enableScriptRecording},
        {"&Add script command...", "Add a command to Script file.", "addRecordCmd", m_ini.enableScriptRecording},
        {"&Sign configuration file...", "Calculate the checksum for a given XML description file and save it to this file.", "signFile", m_ini.enableSign},
        {"&Validate XML...", "Check a given XML description file for correct syntax.", "validateDefines", m_ini.enableValidate},
        {"&Show locks", "Show all locks existing in current XML (for development of XMLs only).", "showLocks", m_ini.enableShowLocks},
        {"&Show SVD tree", "Show the SVD as a tree", "showSvdTree", m_ini.enableShowSvdTree},
        {"&Show Port mapping", "Show how the ports of the device are mapped.", "showPortMapping", m_ini.enableShowPortMapping != 0},
        {"Fullscreen", "Switch to/from fullscreen mode.", "switchFullscreenMode", m_ini.enableFullscreen},
        {nullptr, nullptr, nullptr, m_ini.enableGenerateXmlFromSvd},
        {"Generate XML from SVD", "Generate an XML file from SVD as base for a GUI.", "generateXMLFromSVD", m_ini.enableGenerateXmlFromSvd},
        {"Complete SVD file...", "Write a completed copy of a vendor SVD file, in which every register and field binds.", "completeSvdFile", m_ini.enableGenerateXmlFromSvd},
        {nullptr, nullptr, nullptr, m_ini.enableEditGui},
        {"Edit the GUI", "Edit the GUI.", "editGUI", m_ini.enableEditGui},
        {"&Integrate into Keil \u00b5Vision...", "Integrate Quillon into Keil \u00b5Vision.", "integrateKeil", m_ini.enableKeil},
    };
    auto *extrasMenu = new QMenu(tr("Extras"), this);
    extrasMenu->setObjectName(QStringLiteral("extrasMenu"));
    m_actions->fill(extrasMenu, extrasRows, int(sizeof extrasRows / sizeof extrasRows[0]));
    m_recording = new RecordingControl(this, m_actions->action(QStringLiteral("startStopRecording")),
                                       m_actions->action(QStringLiteral("addRecordCmd")),
                                       [this] { return m_preferences.scriptsDir; }, [this] { return m_lastDocument; });

    auto shortcut = [this](const char *slot, QKeySequence::StandardKey key) {
        if (QAction *a = m_actions->action(QLatin1String(slot)))
            a->setShortcut(QKeySequence(key));
    };
    shortcut("newProject", QKeySequence::New);
    shortcut("open", QKeySequence::Open);
    shortcut("save", QKeySequence::Save);
    shortcut("saveAs", QKeySequence::SaveAs);
    shortcut("close", QKeySequence::Quit);
    shortcut("searchForGUIElement", QKeySequence::Find);

    // The menus hang on tool bar buttons; the menu bar stays empty.
    m_toolBar = new QToolBar(tr("Tool bar"), this);
    m_toolBar->setObjectName(QStringLiteral("toolBar"));
    m_toolBar->setMovable(false);
    m_toolBar->setFloatable(false);
    for (QMenu *menu : {fileMenu, extrasMenu}) {
        auto *button = new QToolButton(m_toolBar);
        button->setObjectName(menu->objectName());
        button->setText(menu->title());
        button->setMenu(menu);
        button->setPopupMode(QToolButton::InstantPopup);
        m_toolBar->addWidget(button);
    }
    auto *spacer = new QWidget(m_toolBar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(spacer);
    m_toolBar->addWidget(new QLabel(tr("Quillon - Version %1").arg(AppVersion::text()), m_toolBar));
}

void MainWindow::buildToolBars()
{
    if (m_preferences.toolbarEnabled) {
        m_lanternToolBar = new QToolBar(tr("Lantern"), this);
        m_lanternToolBar->setObjectName(QStringLiteral("lanternToolBar"));
        m_lanternToolBar->setMovable(false);
        m_lanternToolBar->setFloatable(false);
        auto *logo = new QLabel(m_lanternToolBar);
        logo->setPixmap(QPixmap(QStringLiteral(":/images/lantern.png")));
        m_lanternToolBar->addWidget(logo);
        auto *name = new QLabel(QStringLiteral("Quillon"), m_lanternToolBar);
        name->setStyleSheet(QStringLiteral("font-size: 30px; color: grey;"));
        m_lanternToolBar->addWidget(name);
        auto *spacer = new QWidget(m_lanternToolBar);
        spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        m_lanternToolBar->addWidget(spacer);
        struct Button { const char *text; const char *icon; void (MainWindow::*slot)(); const char *name; };
        const Button buttons[] = {
            {"App Notes", ":/images/document.png", &MainWindow::showAppNotes, "appNotesButton"},
            {"Help", ":/images/help.png", &MainWindow::showHelp, "helpButton"},
            {"Forum", ":/images/Forum.png", &MainWindow::showForum, "forumButton"},
        };
        for (const Button &b : buttons) {
            auto *button = new QPushButton(QIcon(QLatin1String(b.icon)), tr(b.text), m_lanternToolBar);
            button->setObjectName(QLatin1String(b.name));
            connect(button, &QPushButton::clicked, this, b.slot);
            m_lanternToolBar->addWidget(button);
        }
        addToolBar(Qt::TopToolBarArea, m_lanternToolBar);
        addToolBarBreak(Qt::TopToolBarArea);
    }
    addToolBar(Qt::TopToolBarArea, m_toolBar);
}

void MainWindow::setDocumentActionsEnabled(bool enabled)
{
    const bool loadSave = enabled && m_document->state().loadSaveAllowed;
    for (const char *slot : {"save", "saveAs", "exportHeaderFiles", "showDifferences"})
        m_actions->setEnabled(QLatin1String(slot), loadSave);
    m_actions->setEnabled(QStringLiteral("reopen"), enabled);
    m_actions->setEnabled(QStringLiteral("getTAVFWVersion"), enabled);
    m_actions->setEnabled(QStringLiteral("updateTAVFW"), enabled);
}

void MainWindow::stopWorkers()
{
    m_targetAccess->stop();
    m_traffic->stopPolling();
}

void MainWindow::openTerminal()
{
    m_terminal->close();
    const DocumentState &state = m_document->state();
    if (state.terminalPort.isEmpty())
        return;
    m_console->showTerminal();
    if (!m_terminal->open(state.terminalPort, state.terminalSettings))
        Report::cannotOpenFile(state.terminalPort, m_terminal->errorString());
}

// Board traffic: forwarded to the document's data tasks and the firmware.

void MainWindow::sendUSB(const QString &s)
{
    m_traffic->sendUSB(s);
}

void MainWindow::recData(const QString &s)
{
    QObject *origin = signalSender();
    m_traffic->recData(s, origin ? origin->objectName() : QString());
}

void MainWindow::getTAVFWVersion()
{
    checkFirmwareVersion(false);
}

int MainWindow::checkFirmwareVersion(bool quiet)
{
    return m_firmware->checkFirmwareVersion(quiet);
}

void MainWindow::updateTAVFW()
{
    m_firmware->updateTAVFW();
}

void MainWindow::placeRoot()
{
    QWidget *root = m_document->root();
    if (root)
        m_scroll->setWidget(root);
}

bool MainWindow::readDocument(const QString &fileName, bool homePage)
{
    ReaderOptions options;
    options.defines = m_options.defines;
    options.includePaths = m_options.includePaths;
    options.homePage = QDir(m_preferences.scriptsDir).filePath(QStringLiteral("index.xml"));
    options.slotHost = this;
    m_homePage = homePage;

    // The form leaves the scroll area before the document deletes it.
    if (m_scroll->widget())
        m_scroll->takeWidget();
    m_document->setLoading(true);
    const bool ok = m_document->read(fileName, options);
    if (!ok) {
        m_document->setLoading(false);
        return false;
    }
    m_document->createReservedDefines();
    placeRoot();
    m_document->setLoading(false);
    return true;
}

void MainWindow::open()
{
    if (!maybeSave())
        return;
    setProperty("loaded", false);
    const QString name = Dialogs::openFileName(this, tr("Open XML File"), m_preferences.workingDir,
                                               tr("XML Files (*.xml)"));
    if (name.isEmpty())
        return;
    m_preferences.setWorkingDir(QFileInfo(name).absolutePath());
    if (!open(name)) {
        newProject();
        return;
    }
    startUp(false);
    m_document->refreshDisplays();
}

bool MainWindow::open(const QString &fName)
{
    stopWorkers();
    m_traffic->closeDocument();
    m_terminal->close();
    QString fileName = fName;
    if (!QFileInfo::exists(fileName)) {
        fileName = Dialogs::openFileName(this, tr("Could not find %1!").arg(QFileInfo(fName).fileName()),
                                         m_preferences.workingDir, QStringLiteral("*.xml (*.xml)"));
        if (fileName.isEmpty())
            return false;
    }
    QFile probe(fileName);
    if (!probe.open(QIODevice::ReadOnly)) {
        Report::cannotOpenFile(fileName, probe.errorString());
        return false;
    }
    probe.close();

    // The old form goes now, and with it the configuration it was saved to:
    // Save must not write this form into another form's file.
    m_configurationPath.clear();
    if (!readDocument(fileName, false)) {
        Report::cannotReadFile(fileName, m_document->errorText());
        const QString retry = Dialogs::openFileName(this, tr("Could not read %1!").arg(QFileInfo(fileName).fileName()),
                                                    QFileInfo(fileName).absolutePath(), QStringLiteral("*.xml (*.xml)"));
        if (retry.isEmpty())
            return false;
        raise();
        activateWindow();
        if (!readDocument(retry, false)) {
            Report::cannotReadFile(retry, m_document->errorText());
            return false;
        }
        fileName = retry;
    }
    if (!m_document->readSvd(m_preferences.scriptsDir, this)) {
        if (m_scroll->widget())
            m_scroll->takeWidget();
        m_document->clear();
        return false;
    }

    m_lastDocument = QFileInfo(fileName).absoluteFilePath();
    const DocumentState &state = m_document->state();
    m_traffic->openDocument(state.ioPort, state.ioSettings, state.iocheckMode, state.usesStick);
    m_firmware->setRange(state.fwVersionMin, state.fwVersionMax);
    openTerminal();
    m_document->tables().changedHeaders.clear();
    setDocumentActionsEnabled(true);
    setWindowTitle(QStringLiteral("Quillon ") + QDir::toNativeSeparators(m_lastDocument) + QStringLiteral("[*]"));
    setWindowModified(false);
    m_preferences.workingDir = QFileInfo(fileName).absolutePath();
    m_integration->documentOpened(m_lastDocument);
    return true;
}

void MainWindow::reopen()
{
    if (!maybeSave() || m_lastDocument.isEmpty())
        return;
    setProperty("loaded", false);
    if (!open(m_lastDocument)) {
        newProject();
        return;
    }
    startUp(false);
    m_document->refreshDisplays();
}

void MainWindow::newProject()
{
    if (!maybeSave())
        return;
    stopWorkers();
    m_traffic->closeDocument();
    m_terminal->close();
    const QString index = QDir(m_preferences.scriptsDir).filePath(QStringLiteral("index.xml"));
    if (!QFileInfo::exists(index)) {
        if (m_scroll->widget())
            m_scroll->takeWidget();
        m_document->clear();
        Report::notFoundIn(QStringLiteral("index.xml"), QDir::toNativeSeparators(m_preferences.scriptsDir));
    } else if (!readDocument(index, true)) {
        Report::cannotReadFile(index, m_document->errorText());
    }
    m_homePage = true;
    setWindowModified(false);
    setWindowTitle(QStringLiteral("Quillon [*]"));
    setDocumentActionsEnabled(false);
    m_integration->documentOpened(index);
}

void MainWindow::startUp(bool afterLoad)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_traffic->choosePort(this);
    m_traffic->checkStick(this);
    m_document->setLoading(true);
    m_document->startUp(afterLoad, m_configurationPath);
    m_document->setLoading(false);
    if (m_ini.checkFwVersionOnLoad && m_traffic->usesStick)
        checkFirmwareVersion(true);
    setWindowModified(false);
    m_targetAccess->open(m_document->tables());
    m_traffic->startPolling();
    QApplication::restoreOverrideCursor();
}

void MainWindow::documentWasModified(bool modified)
{
    setWindowModified(modified);
}

void MainWindow::changed()
{
    if (m_document->isLoading())
        return;
    ActiveElement *element = asActiveElement(signalSender());
    if (!element)
        return;
    if (element->typeInfo() == QLatin1String("TimerLabel"))
        return;
    DocumentTables &t = m_document->tables();
    t.elementList.moveToEnd(element);
    t.markHeaderChanged(element);
}

void MainWindow::resetGUI()
{
    resetGUI(QString());
}

void MainWindow::resetGUI(const QString &s)
{
    Q_UNUSED(s);
    DocumentTables &t = m_document->tables();
    m_document->setLoading(true);
    // Defaults are set with signals blocked, so a list that leaves a
    // locking item would never say so: start the locks from scratch.
    m_document->locks().releaseAll();
    for (ActiveElement *element : t.elementList) {
        element->setElementEnabled(true);
        element->applyDefault();
        element->widget()->repaint();
        element->connectSignals();
        element->emitLocks();
        element->updateMathLabels();
    }
    // Each element was enabled in turn, also those under a branch switched
    // off before them in the list.
    m_document->applyBranchSwitches();
    for (DataClass *data : qAsConst(t.dataValues))
        data->applyDefault();
    m_document->setLoading(false);
    setWindowModified(false);
}

void MainWindow::tabSelected()
{
    if (QWidget *page = m_console->tabs()->currentWidget())
        page->setFocus();
}

void MainWindow::showSettingsDialog()
{
    SettingsDialog dialog(m_preferences, QCoreApplication::applicationDirPath(), this);
    connect(&dialog, &SettingsDialog::toolbarHeaderChanged, this, [this](bool shown) {
        if (m_lanternToolBar)
            m_lanternToolBar->setVisible(shown);
    });
    if (Dialogs::quiet())
        return;
    dialog.exec();
    m_traffic->setDefaultLogging(m_preferences.tavLoggingMode, m_preferences.tavLoggingTimeStamps,
                                 m_preferences.tavLoggingFilename);
    // A link that is already open logs the new way from now on.
    if (m_traffic->existingLink())
        m_traffic->setLogging(m_preferences.tavLoggingMode, m_preferences.tavLoggingTimeStamps,
                              m_preferences.tavLoggingFilename);
}

void MainWindow::showHelp()
{
    m_integration->showHelp(this);
}

void MainWindow::showAppNotes()
{
    const QString folder = QDir(m_document->folder()).filePath(m_document->state().documentsFolder);
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void MainWindow::integrateKeil()
{
    m_integration->integrateKeil();
}

void MainWindow::showForum()
{
    if (!m_document->state().forumUrl.isEmpty())
        QDesktopServices::openUrl(QUrl(m_document->state().forumUrl));
}

void MainWindow::switchFullscreenMode()
{
    if (isFullScreen()) {
        if (m_wasMaximized)
            showMaximized();
        else
            showNormal();
    } else {
        m_wasMaximized = isMaximized();
        showFullScreen();
    }
}

void MainWindow::searchForGUIElement()
{
    QList<QPair<QString, QString>> entries;
    for (ActiveElement *element : m_document->tables().elementList) {
        const QString define = element->define();
        if (define.isEmpty() || define.contains(QLatin1String("$DIR$")))
            continue;
        const QString label = element->property("my_label").toString();
        entries.append({define, label.isEmpty() ? define : define + QStringLiteral("  (") + label + QLatin1Char(')')});
    }
    std::sort(entries.begin(), entries.end());
    if (Dialogs::quiet())
        return;
    FindDialog dialog(entries, this);
    connect(&dialog, &FindDialog::elementChosen, this, &MainWindow::on_anchorClicked);
    dialog.exec();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty())
        return;
    openDropped(urls.first().toLocalFile());
    event->acceptProposedAction();
}

void MainWindow::openDropped(const QString &name)
{
    if (name.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive)) {
        if (open(name)) {
            startUp(false);
            m_document->refreshDisplays();
        } else {
            newProject();
        }
    } else if (name.endsWith(QLatin1String(".qlnp"), Qt::CaseInsensitive)) {
        load(name);
    } else if (name.endsWith(QLatin1String(".script"), Qt::CaseInsensitive)) {
        runBatchfile(name);
    }
}

void MainWindow::expandBranch()
{
    if (auto *tree = qobject_cast<QTreeWidget *>(QApplication::focusWidget())) {
        if (QTreeWidgetItem *item = tree->currentItem()) {
            tree->expandItem(item);
            for (int i = 0; i < item->childCount(); ++i)
                tree->expandItem(item->child(i));
        }
    }
}

void MainWindow::collapseBranch()
{
    if (auto *tree = qobject_cast<QTreeWidget *>(QApplication::focusWidget())) {
        if (QTreeWidgetItem *item = tree->currentItem())
            tree->collapseItem(item);
    }
}

void MainWindow::clearConsole()
{
    m_console->clearConsole();
}

void MainWindow::on_anchorClicked(const QString &define)
{
    if (ActiveElement *element = m_document->tables().element(define))
        showElement(element);
}

void MainWindow::showElement(ActiveElement *element)
{
    // A radio group is no widget of its own: its checked button (or its
    // first) stands for it.
    QWidget *widget = element->widget();
    if (auto *group = dynamic_cast<QButtonGroup *>(element); group && !group->buttons().isEmpty())
        widget = group->checkedButton() ? group->checkedButton() : group->buttons().first();
    QTreeWidgetItem *row = PageRevealer::reveal(widget);
    if (widget->isEnabled())
        widget->setFocus();
    m_blinker->start(widget, row);
}

// Commands of the elements' actions.

void MainWindow::setDef(const QString &text)
{
    SetDef::run(text, &m_document->tables());
}

void MainWindow::loadFile(const QString &name)
{
    loadFile(name, true);
}

void MainWindow::loadFile(const QString &name, bool fixFolder)
{
    const QString folder = m_lastDocument.isEmpty() ? QDir::currentPath() : QFileInfo(m_lastDocument).absolutePath();
    if (fixFolder)
        QDir::setCurrent(folder);
    const QString path = QFileInfo(name).isAbsolute() ? name : QDir(folder).filePath(name);

    if (path.endsWith(QLatin1String(".qlnp"), Qt::CaseInsensitive)) {
        load(path);
        return;
    }
    if (path.endsWith(QLatin1String(".script"), Qt::CaseInsensitive)) {
        if (!QMetaObject::invokeMethod(this, "runBatchfile", Q_ARG(QString, path)))
            consolePrint(QStringLiteral("<font color=\"red\"><b>Script Error: </b></font>This build has no script interpreter to run %1<br>")
                             .arg(path.toHtmlEscaped()));
        return;
    }
    auto openDocument = [this, path]() {
        if (!open(path)) {
            newProject();
            return;
        }
        startUp(false);
        m_document->refreshDisplays();
    };
    // An element's action must not delete the element while it still runs
    // its actions: the new document comes once the event loop is back.
    if (signalSender())
        QTimer::singleShot(0, this, openDocument);
    else
        openDocument();
}

void MainWindow::startProgram(const QString &command)
{
    QStringList words = command.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return;
    const QString program = words.takeFirst();
    QProcess process;
    process.start(program, words);

    QProgressDialog *progress = nullptr;
    if (!quiet() && !Dialogs::quiet()) {
        progress = new QProgressDialog(tr("Executing command..."), tr("Abort"), 0, 500 / 3, this);
        progress->setCancelButton(nullptr);
        progress->setWindowModality(Qt::WindowModal);
        progress->setMinimumDuration(0);
        progress->show();
    }
    setEnabled(false);
    int counter = 0;
    while (process.state() != QProcess::NotRunning) {
        QCoreApplication::processEvents();
        QThread::msleep(100);
        counter = (counter + 1) % 500;
        if (progress)
            progress->setValue(counter / 3);
        process.waitForFinished(0);
    }
    setEnabled(true);
    delete progress;

    QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
    output.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    output.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    if (!output.isEmpty())
        consolePrint(output);
}

void MainWindow::runScript(const QString &text)
{
    if (text.startsWith(QLatin1String("python:"), Qt::CaseInsensitive)) {
        PythonBridge::run(text.mid(7), QFileInfo(m_lastDocument).absolutePath());
        return;
    }
    // Every line runs, whatever the one before it answered.
    const QStringList lines = text.split(QLatin1Char(';'));
    for (int i = 0; i < lines.size(); ++i)
        execScriptLine(lines.at(i), unsigned(i));
}

void MainWindow::PythonStdOut(QString s) { PythonBridge::print(QStringLiteral("Python stdOut: "), s); }
void MainWindow::PythonStdErr(QString s) { PythonBridge::print(QStringLiteral("Python stdErr: "), s); }
void MainWindow::startStopRecording() { m_recording->startStop(); }
void MainWindow::addRecordCmd() { m_recording->addCommand(); }

// Locks: forwarded to the document's engine with the element that sent them.

void MainWindow::on_sendLock(const QString &lock)
{
    m_document->locks().lock(signalSender(), lock);
}

void MainWindow::on_sendUnlock(const QString &lock)
{
    m_document->locks().unlock(signalSender(), lock);
}

void MainWindow::showLocks()
{
    if (Dialogs::quiet())
        return;
    auto *dialog = new LockDialog(m_document->locks().graph(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void MainWindow::showSvdTree()
{
    auto *dialog = new ShowSvdDialog([this](ActiveElement *element) { showElement(element); }, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void MainWindow::editGUI()
{
    auto *dialog = new ShowXMLDialog(*m_document, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &ShowXMLDialog::statusText, statusBar(), [this](const QString &text) { statusBar()->showMessage(text); });
    connect(dialog, &ShowXMLDialog::formChanged, this, [this] { documentWasModified(true); });
    dialog->show();
}

void MainWindow::showPortMapping()
{
    if (m_ini.enableShowPortMapping != 0)
        PortMappingDialog::open(m_document->state().pinMapping, this);
    else
        consolePrint(tr("Port mapping is switched off (enableshowportmapping in settings.ini).<br>"));
}

void MainWindow::selectData(const QString &catalogPath)
{
    const auto map = m_document->state().parameterMap;
    SelectFromCatalogDialog::run(catalogPath, map ? map->parameters : QList<Parameter>(), &m_document->tables(), this);
}

int MainWindow::conflictCount() const
{
    return m_document->locks().conflictCount();
}

void MainWindow::connectConflictSources()
{
    // The math cascade keeps its labels out of range itself; both kinds of
    // conflict count in each other's messages.
    m_document->locks().setOverflowSource([this] {
        QStringList names;
        for (const QObject *label : mathCascade().overflowLabels())
            names << label->objectName();
        return names;
    });
    mathCascade().conflictCount = [this] { return conflictCount(); };
}

bool MainWindow::maybeSave()
{
    if (!isWindowModified() || !m_document->state().loadSaveAllowed)
        return true;
    const QString title = QStringLiteral("Quillon") + QFileInfo(m_configurationPath).baseName();
    const auto answer = Dialogs::question(this, QMessageBox::Warning, title,
                                          tr("The document has been modified.\nDo you want to save changes?"),
                                          QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                          QMessageBox::Cancel);
    if (answer == QMessageBox::Cancel)
        return false;
    if (answer == QMessageBox::Save) {
        return save();
    }
    return true;
}

void MainWindow::storePreferences()
{
    if (!isFullScreen())
        m_preferences.setGeometry(saveGeometry());
    m_preferences.setWorkingDir(m_preferences.workingDir);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // A running script ends with the window.
    if (m_scripts && m_scripts->isRunning())
        m_scripts->requestStop();
    const int mode = m_closeMode;
    m_closeMode = 0;
    bool accept = false;
    switch (mode) {
    case 1: {
        accept = save();
        break;
    }
    case 2:
        event->accept();
        stopWorkers();
        return;
    case 3:
        event->ignore();
        return;
    default:
        accept = maybeSave();
        break;
    }
    if (accept) {
        storePreferences();
        stopWorkers();
        event->accept();
    } else {
        event->ignore();
    }
}

void MainWindow::showAsStored()
{
    if (m_preferences.geometry.isEmpty() || !restoreGeometry(m_preferences.geometry)) {
        // Without a window manager "maximized" means nothing: take the
        // screen's size first.
        if (QScreen *screen = QGuiApplication::primaryScreen())
            setGeometry(screen->availableGeometry());
        showMaximized();
    }
    else
        show();
}

DocumentTables &MainWindow::tables()
{
    return m_document->tables();
}

QString MainWindow::homeFolder() const
{
    return m_preferences.scriptsDir;
}

QString MainWindow::descriptionVersion() const
{
    return m_document->state().rootVersion;
}

bool MainWindow::openDescription(const QString &path, const QString &configuration)
{
    setProperty("loaded", false);
    if (!open(path))
        return false;
    // The start-up step announces the configuration that is being loaded.
    m_configurationPath = configuration;
    startUp(true);
    return true;
}

bool MainWindow::save()
{
    if (m_configurationPath.isEmpty())
        return saveAs();
    return saveConfiguration(m_configurationPath);
}

bool MainWindow::saveAs()
{
    const QString name = Dialogs::saveFileName(this, tr("Save Configuration"), m_preferences.workingDir,
                                               tr("Configuration Files (*.qlnp)"));
    if (name.isEmpty())
        return false;
    return saveConfiguration(name);
}

bool MainWindow::saveConfiguration(const QString &fileName, bool sorted)
{
    if (m_lastDocument.isEmpty())
        return false;
    const QString path = QFileInfo(fileName).absoluteFilePath();
    m_preferences.workingDir = QFileInfo(path).absolutePath();
    const QByteArray bytes = ConfigurationWriter::build(m_document->tables(), m_lastDocument,
                                                        m_document->state().rootVersion, sorted);
    if (!ConfigurationWriter::writeAtomically(path, bytes))
        return false;
    const bool renamed = path != m_configurationPath;
    m_configurationPath = path;
    m_exportFolder.clear();
    exportHeaderFiles(renamed);
    setWindowTitle(QStringLiteral("Quillon ") + QDir::toNativeSeparators(path) + QStringLiteral("[*]"));
    consolePrint(QStringLiteral("<font color=\"blue\"><b>Saved project: </font></b>%2<br>").arg(path));
    setWindowModified(false);
    return true;
}

void MainWindow::load()
{
    if (!maybeSave())
        return;
    const QString name = Dialogs::openFileName(this, tr("Open Configuration File"), m_preferences.workingDir,
                                               tr("Configuration Files (*.qlnp)"));
    if (!name.isEmpty())
        load(name);
}

bool MainWindow::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(QFileInfo(fileName).absoluteFilePath(), file.errorString());
        return false;
    }
    const QByteArray firstLine = file.readLine();
    file.seek(0);
    if (!ConfigurationReader::isXmlConfiguration(firstLine)) {
        file.close();
        return loadOld(fileName);
    }
    m_preferences.workingDir = QFileInfo(fileName).absolutePath();
    ConfigurationReader reader(*this);
    m_document->setLoading(true);
    const bool ok = reader.read(&file, fileName, false);
    m_document->setLoading(false);
    if (!ok) {
        Report::cannotReadFile(QFileInfo(fileName).absoluteFilePath(), reader.errorString());
        newProject();
        return false;
    }
    return finishLoad(fileName, reader.unresolved, reader.unseen);
}

bool MainWindow::loadOld(const QString &fileName)
{
    OldConfigurationLoader loader(*this, m_document->model());
    m_document->setLoading(true);
    const bool ok = loader.load(fileName);
    m_document->setLoading(false);
    if (!ok) {
        newProject();
        return false;
    }
    return finishLoad(fileName, loader.unresolved, loader.unseen);
}

bool MainWindow::finishLoad(const QString &fileName, const QStringList &unresolved, const QStringList &unseen)
{
    m_configurationPath = QFileInfo(fileName).absoluteFilePath();
    m_document->reapplyLocks();
    if (!resolveLeftovers(unresolved, unseen)) {
        newProject();
        return false;
    }
    setWindowTitle(QStringLiteral("Quillon ") + QDir::toNativeSeparators(m_configurationPath) + QStringLiteral("[*]"));
    m_document->refreshDisplays();
    setWindowModified(false);
    return true;
}

bool MainWindow::resolveLeftovers(const QStringList &unresolved, const QStringList &unseen)
{
    Migration migration;
    QString reason;
    const QString migrationFile = migrationPath();
    if (!migration.read(migrationFile, &reason)) {
        Report::cannotOpenFile(migrationFile, reason);
        return false;
    }
    const Migration::Leftovers left = migration.resolve(m_document->model(), unresolved, unseen);
    if (left.isEmpty())
        return true;
    m_unresolvedDialog->setLists(left.unresolved.join(QLatin1Char('\n')), left.anchors().join(QString()));
    if (Dialogs::quiet()) {
        // Unattended runs keep the lists in the log instead.
        consolePrint(tr("<font color=\"orange\"><b>Found in QLNP but not in XML (potential loss of data):</b></font><br>"));
        for (const QString &line : left.unresolved)
            consolePrint(line.toHtmlEscaped() + QStringLiteral("<br>"));
        consolePrint(tr("<font color=\"orange\"><b>Found in XML but not in QLNP (not critical):</b></font><br>"));
        for (const QString &anchor : left.anchors())
            consolePrint(anchor);
    } else {
        m_unresolvedDialog->show();
        m_unresolvedDialog->raise();
    }
    return true;
}

QString MainWindow::migrationPath() const
{
    const QString name = m_document->state().migrationFile;
    return name.isEmpty() ? QString() : QDir(m_document->folder()).filePath(name);
}

void MainWindow::showDifferences()
{
    const QString name = Dialogs::openFileName(this, tr("Open Configuration File"), m_preferences.workingDir,
                                               tr("Configuration Files (*.qlnp)"));
    if (!name.isEmpty())
        showDifferences(name);
}

void MainWindow::showDifferences(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(QFileInfo(name).absoluteFilePath(), file.errorString());
        return;
    }
    ConfigurationReader reader(*this);
    if (!reader.read(&file, name, true)) {
        Report::cannotReadFile(QFileInfo(name).absoluteFilePath(), reader.errorString());
        return;
    }
    m_diffDialog->setFileName(QFileInfo(name).fileName());
    m_diffDialog->setDifferences(reader.differences.isEmpty() ? QString()
                                                              : QLatin1Char('\n') + reader.differences.join(QLatin1Char('\n')));
    if (!Dialogs::quiet())
        m_diffDialog->show();
}

QString MainWindow::disclaimerPath()
{
    const DocumentState &state = m_document->state();
    const bool own = state.disclaimerSet;
    QString path = own ? QDir(m_document->folder()).filePath(state.disclaimerName)
                       : QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("disclaimer.txt"));
    if (!QFileInfo::exists(path)) {
        const QString bare = QFileInfo(path).fileName();
        const QString chosen = Dialogs::openFileName(this, tr("Could not find disclaimer file %1!").arg(bare),
                                                     QFileInfo(path).absolutePath(), QStringLiteral("%1 (%1)").arg(bare));
        if (!chosen.isEmpty())
            path = chosen;
    }
    return path;
}

void MainWindow::exportHeaderFiles()
{
    exportHeaderFiles(true);
}

void MainWindow::exportHeaderFiles(bool writeAll)
{
    if (m_lastDocument.isEmpty())
        return;
    HeaderExporter::Options options;
    options.exportFolder = !m_exportFolder.isEmpty() ? m_exportFolder
        : !m_configurationPath.isEmpty()             ? QFileInfo(m_configurationPath).absolutePath()
                                                     : m_document->folder();
    options.disclaimerPath = disclaimerPath();
    options.versionText = m_document->state().versionText;
    options.definePrefixes = m_definePrefixes;
    HeaderExporter exporter(m_document->model(), options);
    exporter.exportHeaders(writeAll, m_document->tables().changedHeaders,
                           m_document->locks().conflictedElements());
}

void MainWindow::validateDefines()
{
    DescriptionTools(this).validateFromMenu(m_preferences.workingDir);
}

void MainWindow::generateXMLFromSVD()
{
    DescriptionTools tools(this);
    connect(&tools, &DescriptionTools::openRequested, this, [this](const QString &file) { open(file); });
    tools.generateFromMenu(m_preferences.workingDir, m_document ? &m_document->model() : nullptr);
}

void MainWindow::completeSvdFile()
{
    DescriptionTools(this).completeFromMenu(m_preferences.workingDir);
}

void MainWindow::signFile()
{
    const QStringList names = Dialogs::openFileNames(this, tr("Sign XML File"), m_preferences.workingDir,
                                                     tr("XML Files (*.xml)"));
    if (names.isEmpty())
        return;
    QStringList signedNames;
    for (const QString &name : names) {
        if (Checksum::signFile(name))
            signedNames << name;
    }
    const QString text = QStringLiteral("Successfully signed %1 files\n\n%2").arg(signedNames.size()).arg(names.join(QLatin1Char('\n')));
    if (Dialogs::quiet())
        consolePrint(text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>")) + QStringLiteral("<br>"));
    else
        QMessageBox::information(this, QStringLiteral("Quillon"), text);
}

void MainWindow::runBatchfile()
{
    const QString name = Dialogs::openFileName(this, tr("Open Script File"), m_preferences.scriptsDir,
                                               tr("Script Files (*.script)"));
    if (!name.isEmpty())
        runBatchfile(name);
}

void MainWindow::runBatchfile(const QString &fileName)
{
    m_scripts->runBatchfile(fileName);
}

bool MainWindow::execScriptLine(const QString &line, unsigned lineNumber)
{
    return m_scripts->execScriptLine(line, lineNumber);
}

void MainWindow::setConfigurationPath(const QString &path)
{
    m_configurationPath = path;
    setWindowTitle(QStringLiteral("Quillon ") + QDir::toNativeSeparators(path) + QStringLiteral("[*]"));
}

void MainWindow::setScriptFullScreen(bool on)
{
    if (on == isFullScreen())
        return;
    if (on) {
        m_wasMaximized = isMaximized();
        for (QToolBar *bar : findChildren<QToolBar *>())
            bar->hide();
        showFullScreen();
    } else {
        for (QToolBar *bar : findChildren<QToolBar *>())
            bar->show();
        if (m_wasMaximized)
            showMaximized();
        else
            showNormal();
    }
}

QObject *MainWindow::signalSender() const
{
    if (QObject *origin = SignalRelay::origin(this))
        return origin;
    return sender();
}
