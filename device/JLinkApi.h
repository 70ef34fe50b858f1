#pragma once
#include <QString>
#include <QStringList>

class QLibrary;

// The SEGGER J-Link library, loaded at run time on the first call of any
// wrapper so that the program runs on machines without a probe. On Linux the
// library is "libjlinkarm.so" with the same function names as on Windows.
// It is looked for in the folder of the module that holds this code, then
// in the executable's folder, then in the folder of the `InstallPath` entry
// of the user's store "SEGGER/J-Link" (~/.config/SEGGER/J-Link.conf, the
// stand-in for the Windows registry key Software\SEGGER\J-Link).
//
// Every wrapper returns 0 when the library or the function is missing; each
// missing piece is reported once, in a box titled "J-Link Error" (on the
// console in quiet mode). The wrappers are static members, not free
// functions of the library's names: those would interpose on the library's
// own symbols once it is loaded.
class JLinkApi
{
public:
    using LogCallback = void (*)(const char *text);

    static QString libraryName();
    // The folders searched, in order (empty entries left out).
    static QStringList searchFolders();
    // The folder named by the InstallPath entry of the user's store.
    static QString installPath();
    // Loads on first need; true when the library is loaded.
    static bool load();
    static bool isLoaded();
    // Where the loaded library came from.
    static QString loadedFile();
    // Forgets the library and every function (a document or test that
    // wants a fresh search). The library itself stays mapped.
    static void unload();

    static int JLINKARM_EMU_SelectByUSBSN(unsigned serialNumber);
    static int JLINKARM_SelectIP(const char *host, int port);
    static const char *JLINKARM_OpenEx(LogCallback log, LogCallback error);
    static int JLINKARM_ExecCommand(const char *command, char *error, int size);
    static int JLINKARM_TIF_Select(int interface);
    static void JLINKARM_SetSpeed(unsigned kHz);
    static int JLINKARM_Connect();
    static int JLINKARM_IsOpen();
    static void JLINKARM_Close();
    static int JLINKARM_ReadMem(quint32 address, quint32 count, void *buffer);
    static int JLINKARM_WriteMem(quint32 address, quint32 count, const void *buffer);
    static void JLINKARM_Reset();
    static void JLINKARM_Go();
    static void JLINKARM_BeginDownload(unsigned flags);
    static int JLINK_DownloadFile(const char *fileName, quint32 address);
    static int JLINKARM_EndDownload();
};
