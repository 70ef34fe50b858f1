#pragma once
#include <QString>

// settings.ini beside the executable: what this installation offers. Without
// the file every switch keeps its default and the program is a plain viewer
// and editor of configurations.
class IniSettings
{
public:
    // Reads <folder>/settings.ini. keilFlag is the -k flag, the default of
    // enablekeil. When fileName is empty, loadonstart fills it.
    void read(const QString &folder, bool keilFlag, QString &fileName);

    // Writes ScaleFactor into <folder>/settings.ini.
    static void writeScaleFactor(const QString &folder, const QString &factor);

    bool enableSign = false;
    bool enableValidate = false;
    bool enableShowLocks = false;
    bool enableShowSvdTree = false;
    int enableShowPortMapping = 0;
    bool enableEditGui = false;
    bool enableGenerateXmlFromSvd = false;
    bool enableKeil = false;
    QString integrateViaLantern;
    bool enableScriptRecording = false;
    bool enableFullscreen = false;
    bool checkFwVersionOnLoad = false;
    QString loadOnStart;
    QString externalEditor;
    bool disableProductStateStorage = false;
    QString scaleFactor;
    // The desktop integration: the launcher service's port (tests move it
    // off 50000) and the hosts of the two update sites ("name[:port]";
    // without them no update check runs).
    int lanternServicePort = 0;
    QString internalUpdateHost;
    QString publicUpdateHost;
};
