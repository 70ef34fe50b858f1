#include "shell/IniSettings.h"

#include <QDir>
#include <QSettings>

namespace {

QString iniPath(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("settings.ini"));
}

} // namespace

void IniSettings::read(const QString &folder, bool keilFlag, QString &fileName)
{
    *this = IniSettings();
    enableKeil = keilFlag;

    QSettings ini(iniPath(folder), QSettings::IniFormat);
    // Every key is visited; keys are matched without regard to case, and
    // those the program does not know are ignored.
    const QStringList keys = ini.allKeys();
    for (const QString &key : keys) {
        const QVariant v = ini.value(key);
        const QString k = key.toLower();
        if (k == QLatin1String("enablesign")) enableSign = v.toBool();
        else if (k == QLatin1String("enablevalidate")) enableValidate = v.toBool();
        else if (k == QLatin1String("enableshowlocks")) enableShowLocks = v.toBool();
        else if (k == QLatin1String("enableshowsvdtree")) enableShowSvdTree = v.toBool();
        else if (k == QLatin1String("enableshowportmapping")) enableShowPortMapping = v.toInt();
        else if (k == QLatin1String("enableeditgui")) enableEditGui = v.toBool();
        else if (k == QLatin1String("enablegeneratexmlfromsvd")) enableGenerateXmlFromSvd = v.toBool();
        else if (k == QLatin1String("enablekeil")) enableKeil = v.toBool();
        else if (k == QLatin1String("integratevialantern")) integrateViaLantern = v.toString();
        else if (k == QLatin1String("enablescriptrecording")) enableScriptRecording = v.toBool();
        else if (k == QLatin1String("enablefullscreen")) enableFullscreen = v.toBool();
        else if (k == QLatin1String("checkfwversiononload")) checkFwVersionOnLoad = v.toBool();
        else if (k == QLatin1String("loadonstart")) loadOnStart = v.toString();
        else if (k == QLatin1String("externaleditor")) externalEditor = v.toString();
        else if (k == QLatin1String("disableproductstatestorage")) disableProductStateStorage = v.toBool();
        else if (k == QLatin1String("scalefactor")) scaleFactor = v.toString();
        else if (k == QLatin1String("lanternserviceport")) lanternServicePort = v.toInt();
        else if (k == QLatin1String("internalupdatehost")) internalUpdateHost = v.toString();
        else if (k == QLatin1String("publicupdatehost")) publicUpdateHost = v.toString();
    }
    if (fileName.isEmpty())
        fileName = loadOnStart;
}

void IniSettings::writeScaleFactor(const QString &folder, const QString &factor)
{
    QSettings ini(iniPath(folder), QSettings::IniFormat);
    ini.setValue(QStringLiteral("ScaleFactor"), factor);
}
