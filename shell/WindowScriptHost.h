#pragma once
#include "automation/ScriptHost.h"

class MainWindow;

// The window as scripts see it: forwards each script operation to the
// window and its document.
class WindowScriptHost : public ScriptHost
{
public:
    explicit WindowScriptHost(MainWindow &window) : m_window(window) {}

    DocumentTables &tables() override;
    bool quiet() const override;
    QWidget *hostWindow() override;
    void setOutputOptions(bool dialogs, bool echo, const QString &mirrorFile, bool changeMirror) override;
    void clearConsole() override;
    void showConsole(bool shown) override;
    bool loadConfiguration(const QString &path) override;
    bool saveConfiguration(const QString &path, bool sorted) override;
    QString configurationPath() const override;
    void setConfigurationPath(const QString &path) override;
    void exportHeaders() override;
    void setDefinePrefix(const QString &header, const QString &prefix) override;
    bool signDescription(const QString &path) override;
    void resetForm() override;
    void applySetDef(const QString &text) override;
    void logSetDefs(bool on) override;
    QString registerValue(const QString &define) override;
    QString workingDir() const override;
    void setWorkingDir(const QString &dir) override;
    void setScriptsDir(const QString &dir) override;
    QString scriptsDir() const override;
    QString descriptionPath() const override;
    QString svdPath() const override;
    QString migrationPath() const override;
    void setStickLogging(quint16 mode, bool timestamps, const QString &fileName) override;
    void setStickCheckMode(quint16 mode) override;
    quint8 sendTask(const QString &fileName, quint8 task, quint16 arg2, quint8 arg3, quint16 arg4) override;
    void raiseElement(QWidget *widget) override;
    void setFullScreen(bool on) override;
    bool isFullScreenMode() const override;
    void exitWithCode(int closeMode, int exitCode) override;
    bool exitRequested() const override;
    bool generateXmlFromSvd(const QString &svdPath, bool tree) override;

private:
    MainWindow &m_window;
};
