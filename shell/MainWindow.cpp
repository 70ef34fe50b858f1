#include "shell/MainWindow.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DefineAssignment.h"
#include "elements/Reports.h"
#include "reader/DescriptionReader.h"
#include "shell/ActionTable.h"
#include "shell/AppVersion.h"
#include "shell/CommandLine.h"
#include "shell/Console.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "shell/SettingsDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QUrl>

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
    m_document = new Document(this, this);
    m_scroll = new QScrollArea(this);
    m_scroll->setWidgetResizable(true);
    m_scroll->setObjectName(QStringLiteral("formArea"));
    setCentralWidget(m_scroll);
    buildActions();
    buildToolBars();
    addDockWidget(Qt::BottomDockWidgetArea, m_console->dock());
    connect(m_console, &Console::elementLinkClicked, this, &MainWindow::on_anchorClicked);
    setAcceptDrops(true);
    statusBar();

    // 5. The window title.
    setWindowTitle(QStringLiteral("Quillon [*]"));
    setDocumentActionsEnabled(false);

    // 7. The document of the command line.
    const QString file = m_options.fileName;
    if (file.endsWith(QLatin1String(".xml"))) {
        if (open(file))
            startUp(false);
        else
            newProject();
    }

    // 9.-11. The unattended flows end here.
    if (m_options.save || m_options.generate || m_options.exitAfterKeil) {
        requestExit(0);
        return;
    }

    // 12. The home page when no file was named.
    if (file.isEmpty())
        newProject();

    // 13. Values given with -d.
    applyCommandLineDefines();
}

MainWindow::~MainWindow()
{
    stopWorkers();
    delete m_actions;
    if (g_mainWindow == this)
        g_mainWindow = nullptr;
}

DocumentTables &MainWindow::tables()
{
    return m_document->tables();
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
        {nullptr, nullptr, nullptr, m_ini.enableEditGui},
        {"Edit the GUI", "Edit the GUI.", "editGUI", m_ini.enableEditGui},
        {"&Integrate into Keil \u00b5Vision...", "Integrate Quillon into Keil \u00b5Vision.", "integrateKeil", m_ini.enableKeil},
    };
    auto *extrasMenu = new QMenu(tr("Extras"), this);
    extrasMenu->setObjectName(QStringLiteral("extrasMenu"));
    m_actions->fill(extrasMenu, extrasRows, int(sizeof extrasRows / sizeof extrasRows[0]));

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
    // The serial and J-Link workers join here once they exist; nothing runs
    // in the background without them.
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

    m_lastDocument = QFileInfo(fileName).absoluteFilePath();
    m_document->tables().changedHeaders.clear();
    setDocumentActionsEnabled(true);
    setWindowTitle(QStringLiteral("Quillon ") + QDir::toNativeSeparators(m_lastDocument) + QStringLiteral("[*]"));
    setWindowModified(false);
    m_preferences.workingDir = QFileInfo(fileName).absolutePath();
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
}

void MainWindow::startUp(bool afterLoad)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_document->setLoading(true);
    m_document->startUp(afterLoad, m_configurationPath);
    m_document->setLoading(false);
    setWindowModified(false);
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
    ActiveElement *element = asActiveElement(sender());
    if (!element)
        return;
    if (element->typeInfo() == QLatin1String("TimerLabel"))
        return;
    DocumentTables &t = m_document->tables();
    t.elementList.moveToEnd(element);
    const QString header = element->property("header").toString();
    if (!header.isEmpty())
        t.changedHeaders.insert(header, true);
    setWindowModified(true);
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
    for (ActiveElement *element : t.elementList) {
        element->setElementEnabled(true);
        element->applyDefault();
        element->widget()->repaint();
        element->connectSignals();
        element->emitLocks();
        element->updateMathLabels();
    }
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
}

void MainWindow::showHelp()
{
    const QString folder = QDir(m_document->folder()).filePath(m_document->state().documentsFolder);
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

void MainWindow::showAppNotes()
{
    showHelp();
}

void MainWindow::showForum()
{
    if (!m_document->state().forumUrl.isEmpty())
        QDesktopServices::openUrl(QUrl(m_document->state().forumUrl));
}

void MainWindow::switchFullscreenMode()
{
    if (isFullScreen())
        showMaximized();
    else
        showFullScreen();
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
    QWidget *widget = element->widget();
    DefineAssignment::raise(widget);
    if (widget->isEnabled())
        widget->setFocus();
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
        bool saved = false;
        if (metaObject()->indexOfMethod("save()") >= 0)
            QMetaObject::invokeMethod(this, "save", Q_RETURN_ARG(bool, saved));
        return saved;
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
    const int mode = m_closeMode;
    m_closeMode = 0;
    bool accept = false;
    switch (mode) {
    case 1: {
        bool saved = true;
        if (metaObject()->indexOfMethod("save()") >= 0)
            QMetaObject::invokeMethod(this, "save", Q_RETURN_ARG(bool, saved));
        accept = saved;
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
    if (m_preferences.geometry.isEmpty() || !restoreGeometry(m_preferences.geometry))
        showMaximized();
    else
        show();
}
