#pragma once
#include <QString>

class ConfigurationHost;
class DataTasks;
class HardwareModel;
class Register;

// What the complex views reach beyond their own widget: the SVD model of the
// open document, the description it came from (table files record it), and
// the board traffic (a table's send). The main window sets them once; tests
// set them directly, so the views run without a window.
class ViewContext
{
public:
    static void setModel(HardwareModel *model);
    static HardwareModel *model();
    static void setHost(ConfigurationHost *host);
    // File name and `version` of the loaded description; empty without host.
    static QString descriptionFile();
    static QString descriptionVersion();
    static void setDataTasks(DataTasks *tasks);
    static DataTasks *dataTasks();
    // Forgets all three (the window that set them goes).
    static void clear();

    // "module.register" split the way defines are: token 0 is the module,
    // token 1 cut at the first "[" the register.
    static void splitRegisterName(const QString &name, QString *module, QString *reg);
    // The register named "module.register" in the model, or null.
    static Register *findRegister(const QString &name);
};
