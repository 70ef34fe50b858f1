#include "shell/Preferences.h"

#include <QCoreApplication>
#include <QSettings>


QString Preferences::applicationKey()
{
    return QCoreApplication::applicationDirPath();
}

void Preferences::read()
{
    QSettings s(QCoreApplication::organizationName(), applicationKey());
    geometry = s.value(QStringLiteral("geometry")).toByteArray();
    workingDir = s.value(QStringLiteral("workingDir")).toString();
    scriptsDir = s.value(QStringLiteral("scriptsDir"),
                         QCoreApplication::applicationDirPath() + QStringLiteral("/scripts")).toString();
    tavLoggingMode = quint16(s.value(QStringLiteral("TavLoggingMode"), 0).toUInt());
    tavLoggingTimeStamps = s.value(QStringLiteral("TavLoggingTimeStamps"), false).toBool();
    tavLoggingFilename = s.value(QStringLiteral("TavLoggingFilename")).toString();
    toolbarEnabled = s.value(QStringLiteral("ToolbarEnabled"), 1).toInt();
    updatePeriod = s.value(QStringLiteral("UpdatePeriod"), 2).toInt();
    lastUpdate = s.value(QStringLiteral("LastUpdate")).toDateTime();
}

void Preferences::setWorkingDir(const QString &dir)
{
    workingDir = dir;
    QSettings s(QCoreApplication::organizationName(), applicationKey());
    s.setValue(QStringLiteral("workingDir"), dir);
}

void Preferences::setScriptsDir(const QString &dir)
{
    scriptsDir = dir;
    QSettings s(QCoreApplication::organizationName(), applicationKey());
    s.setValue(QStringLiteral("scriptsDir"), dir);
}

void Preferences::setGeometry(const QByteArray &g)
{
    geometry = g;
    QSettings s(QCoreApplication::organizationName(), applicationKey());
    s.setValue(QStringLiteral("geometry"), g);
}

void Preferences::write(quint16 mode, bool timestamps, const QString &fileName, int period, int toolbar)
{
    tavLoggingMode = mode;
    tavLoggingTimeStamps = timestamps;
    tavLoggingFilename = fileName;
    updatePeriod = period;
    toolbarEnabled = toolbar;
    QSettings s(QCoreApplication::organizationName(), applicationKey());
    s.setValue(QStringLiteral("TavLoggingMode"), uint(mode));
    s.setValue(QStringLiteral("TavLoggingTimeStamps"), timestamps);
    s.setValue(QStringLiteral("TavLoggingFilename"), fileName);
    s.setValue(QStringLiteral("UpdatePeriod"), period);
    s.setValue(QStringLiteral("ToolbarEnabled"), toolbar);
}

QStringList Preferences::scriptDirList()
{
    QSettings g(QCoreApplication::organizationName(), QStringLiteral("QuillonGlobal"));
    return g.value(QStringLiteral("ScriptDirList")).toStringList();
}

void Preferences::setScriptDirList(const QStringList &list)
{
    QSettings g(QCoreApplication::organizationName(), QStringLiteral("QuillonGlobal"));
    g.setValue(QStringLiteral("ScriptDirList"), list);
}
