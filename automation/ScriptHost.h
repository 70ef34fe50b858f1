#pragma once
#include <QString>

class DocumentTables;
class QWidget;

// What scripts drive: the open document and the window around it. The main
// window implements it; tests can run scripts against a window that is
// never shown.
class ScriptHost
{
public:
    virtual ~ScriptHost() = default;

    virtual DocumentTables &tables() = 0;
    virtual bool quiet() const = 0;
    virtual QWidget *hostWindow() = 0;

    // Message paths: boxes on/off, console echo on/off, mirror file
    // (empty: off).
    virtual void setOutputOptions(bool dialogs, bool echo, const QString &mirrorFile, bool changeMirror) = 0;
    virtual void clearConsole() = 0;
    virtual void showConsole(bool shown) = 0;

    // Documents, configurations, headers.
    virtual bool loadConfiguration(const QString &path) = 0;
    virtual bool saveConfiguration(const QString &path, bool sorted) = 0;
    virtual QString configurationPath() const = 0;
    virtual void setConfigurationPath(const QString &path) = 0;
    virtual void exportHeaders() = 0;
    virtual void setDefinePrefix(const QString &header, const QString &prefix) = 0;
    virtual bool signDescription(const QString &path) = 0;
    virtual void resetForm() = 0;
    virtual void applySetDef(const QString &text) = 0;
    virtual void logSetDefs(bool on) = 0;
    // The value of the register the define is bound to, composed from every
    // element that claims bits of it (what header export writes); empty
    // when the define names no register of the model.
    virtual QString registerValue(const QString &define) = 0;

    // Folders and files the VERSION dump and relative paths use.
    virtual QString workingDir() const = 0;
    virtual void setWorkingDir(const QString &dir) = 0;
    virtual void setScriptsDir(const QString &dir) = 0;
    virtual QString scriptsDir() const = 0;
    virtual QString descriptionPath() const = 0;
    virtual QString svdPath() const = 0;
    virtual QString migrationPath() const = 0;

    // The stick link: its traffic log, the check mode of replies and the
    // task download (1 on success).
    virtual void setStickLogging(quint16 mode, bool timestamps, const QString &fileName) = 0;
    virtual void setStickCheckMode(quint16 mode) = 0;
    virtual quint8 sendTask(const QString &fileName, quint8 task, quint16 arg2, quint8 arg3, quint16 arg4) = 0;

    // The window.
    virtual void raiseElement(QWidget *widget) = 0;
    virtual void setFullScreen(bool on) = 0;
    virtual bool isFullScreenMode() const = 0;
    // Closes with a close mode and ends the process with the exit code.
    virtual void exitWithCode(int closeMode, int exitCode) = 0;
    // True once an exit was asked for: the script must stop.
    virtual bool exitRequested() const = 0;

    // Writes a first description from an SVD file, filling the document's
    // hardware model on the way; tree: branches rather than group boxes.
    virtual bool generateXmlFromSvd(const QString &svdPath, bool tree) = 0;
};
