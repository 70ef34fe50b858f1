#include "views/ViewContext.h"

#include "config/ConfigurationReader.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"

#include <QStringList>

namespace {
HardwareModel *g_model = nullptr;
ConfigurationHost *g_host = nullptr;
DataTasks *g_tasks = nullptr;
} // namespace

void ViewContext::setModel(HardwareModel *model)
{
    g_model = model;
}

HardwareModel *ViewContext::model()
{
    return g_model;
}

void ViewContext::setHost(ConfigurationHost *host)
{
    g_host = host;
}

QString ViewContext::descriptionFile()
{
    return g_host ? g_host->currentDescription() : QString();
}

QString ViewContext::descriptionVersion()
{
    return g_host ? g_host->descriptionVersion() : QString();
}

void ViewContext::setDataTasks(DataTasks *tasks)
{
    g_tasks = tasks;
}

DataTasks *ViewContext::dataTasks()
{
    return g_tasks;
}

void ViewContext::splitRegisterName(const QString &name, QString *module, QString *reg)
{
    const QStringList tokens = name.split(QLatin1Char('.'));
    *module = tokens.value(0);
    QString r = tokens.value(1);
    const int bracket = r.indexOf(QLatin1Char('['));
    if (bracket >= 0)
        r = r.left(bracket);
    *reg = r;
}

Register *ViewContext::findRegister(const QString &name)
{
    if (!g_model)
        return nullptr;
    QString module;
    QString reg;
    splitRegisterName(name, &module, &reg);
    Peripheral *peripheral = g_model->findPeripheral(module);
    return peripheral ? HardwareModel::findRegister(peripheral, reg) : nullptr;
}

void ViewContext::clear()
{
    g_model = nullptr;
    g_host = nullptr;
    g_tasks = nullptr;
}
