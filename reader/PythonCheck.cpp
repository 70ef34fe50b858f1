#include "reader/PythonCheck.h"

#include "automation/PythonBridge.h"
#include "shell/MainWindow.h"

QString PythonCheck::bridgePath()
{
    return PythonBridge::pluginPath();
}

bool PythonCheck::startBridge()
{
    return PythonBridge::start(MainWindow::instance());
}
