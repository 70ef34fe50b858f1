#include "shell/WindowScriptHost.h"
#include "tooling/XmlGenerator.h"

#include "device/DataTasks.h"

#include "config/Checksum.h"
#include "elements/DefineAssignment.h"
#include "elements/SetDef.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "shell/Console.h"
#include "shell/Dialogs.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>
#include <QToolBar>

DocumentTables &WindowScriptHost::tables()
{
    return m_window.document()->tables();
}

bool WindowScriptHost::quiet() const
{
    return Dialogs::quiet();
}

QWidget *WindowScriptHost::hostWindow()
{
    return &m_window;
}

void WindowScriptHost::setOutputOptions(bool dialogs, bool echo, const QString &mirrorFile, bool changeMirror)
{
    Console *console = m_window.console();
    console->setDialogsOn(dialogs);
    Dialogs::setQuiet(!dialogs);
    console->setEchoOn(echo);
    if (!changeMirror)
        return;
    if (mirrorFile.isEmpty()) {
        console->closeMirror();
    } else {
        // The log starts empty.
        QFile::remove(mirrorFile);
        console->openMirror(mirrorFile);
    }
}

void WindowScriptHost::clearConsole()
{
    m_window.console()->clearConsole();
}

void WindowScriptHost::showConsole(bool shown)
{
    m_window.console()->dock()->setVisible(shown);
    m_window.console()->setHiddenByUser(!shown);
}

bool WindowScriptHost::loadConfiguration(const QString &path)
{
    return m_window.load(path);
}

bool WindowScriptHost::saveConfiguration(const QString &path, bool sorted)
{
    return m_window.saveConfiguration(path, sorted);
}

QString WindowScriptHost::configurationPath() const
{
    return m_window.configurationPath();
}

void WindowScriptHost::setConfigurationPath(const QString &path)
{
    m_window.setConfigurationPath(path);
}

void WindowScriptHost::exportHeaders()
{
    m_window.exportHeaderFiles(true);
}

void WindowScriptHost::setDefinePrefix(const QString &header, const QString &prefix)
{
    m_window.setDefinePrefix(header, prefix);
}

bool WindowScriptHost::signDescription(const QString &path)
{
    return Checksum::signFile(path);
}

void WindowScriptHost::resetForm()
{
    m_window.resetGUI();
}

void WindowScriptHost::applySetDef(const QString &text)
{
    if (m_window.metaObject()->indexOfMethod("setDef(QString)") >= 0)
        QMetaObject::invokeMethod(&m_window, "setDef", Q_ARG(QString, text));
}

void WindowScriptHost::logSetDefs(bool on)
{
    SetDef::setTrace(on);
}

QString WindowScriptHost::registerValue(const QString &define)
{
    if (!m_window.document())
        return QString();
    const HardwareModel &model = m_window.document()->model();
    const DefineText parts = DefineText::parse(define);
    const Register *reg = HardwareModel::findRegister(model.findPeripheral(parts.peripheral), parts.registerName);
    return reg ? model.composeRegisterValue(reg) : QString();
}

QString WindowScriptHost::workingDir() const
{
    return m_window.preferences().workingDir;
}

void WindowScriptHost::setWorkingDir(const QString &dir)
{
    m_window.preferences().setWorkingDir(dir);
}

void WindowScriptHost::setScriptsDir(const QString &dir)
{
    m_window.preferences().setScriptsDir(dir);
}

QString WindowScriptHost::scriptsDir() const
{
    return m_window.preferences().scriptsDir;
}

QString WindowScriptHost::descriptionPath() const
{
    return m_window.currentDescription();
}

QString WindowScriptHost::svdPath() const
{
    const QString name = m_window.document()->state().svdName;
    return name.isEmpty() ? QString() : QDir(m_window.document()->folder()).filePath(name);
}

QString WindowScriptHost::migrationPath() const
{
    return m_window.migrationPath();
}

void WindowScriptHost::raiseElement(QWidget *widget)
{
    DefineAssignment::raise(widget);
}

void WindowScriptHost::setFullScreen(bool on)
{
    m_window.setScriptFullScreen(on);
}

bool WindowScriptHost::isFullScreenMode() const
{
    return m_window.isFullScreen();
}

void WindowScriptHost::exitWithCode(int closeMode, int exitCode)
{
    m_window.setCloseMode(closeMode);
    m_window.close();
    // The process ends with the script's count, whatever the window said.
    m_window.requestExit(exitCode);
    QCoreApplication::exit(exitCode);
}

bool WindowScriptHost::exitRequested() const
{
    return m_window.exitRequested();
}

void WindowScriptHost::setStickLogging(quint16 mode, bool timestamps, const QString &fileName)
{
    m_window.dataTasks().setLogging(mode, timestamps, fileName);
}

void WindowScriptHost::setStickCheckMode(quint16 mode)
{
    m_window.dataTasks().ioCheckMode = mode;
}

quint8 WindowScriptHost::sendTask(const QString &fileName, quint8 task, quint16 arg2, quint8 arg3, quint16 arg4)
{
    return m_window.dataTasks().sendTask(fileName, task, arg2, arg3, arg4);
}

bool WindowScriptHost::generateXmlFromSvd(const QString &svdPath, bool tree)
{
    XmlGenerator generator(m_window.document() ? &m_window.document()->model() : nullptr);
    return generator.generateXMLFromSVD(svdPath, tree);
}
