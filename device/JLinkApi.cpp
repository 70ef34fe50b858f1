#include "device/JLinkApi.h"

#include "shell/Dialogs.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QMetaObject>
#include <QMutex>
#include <QMutexLocker>
#include <QSettings>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <dlfcn.h>

namespace {

enum Function {
    SelectByUSBSN, SelectIP, OpenEx, ExecCommand, TIFSelect, SetSpeed, Connect, IsOpen, Close, ReadMem,
    WriteMem, Reset, Go, BeginDownload, DownloadFile, EndDownload, FunctionCount
};

const char *const kNames[FunctionCount] = {
    "JLINKARM_EMU_SelectByUSBSN", "JLINKARM_SelectIP", "JLINKARM_OpenEx", "JLINKARM_ExecCommand",
    "JLINKARM_TIF_Select", "JLINKARM_SetSpeed", "JLINKARM_Connect", "JLINKARM_IsOpen", "JLINKARM_Close",
    "JLINKARM_ReadMem", "JLINKARM_WriteMem", "JLINKARM_Reset", "JLINKARM_Go", "JLINKARM_BeginDownload",
    "JLINK_DownloadFile", "JLINKARM_EndDownload"};

// The state of the loader. The polling thread calls the wrappers too, so
// the lookups are guarded; once a pointer is known, a call takes no lock.
struct Loader
{
    QMutex mutex;
    bool tried = false;
    QLibrary *library = nullptr;
    QString file;
    std::atomic<QFunctionPointer> functions[FunctionCount] = {};
    bool looked[FunctionCount] = {};
};

Loader &loader()
{
    static Loader instance;
    return instance;
}

// The box of the loader; from another thread it is shown by the GUI thread.
// It does not block: a load or a headless run goes on with every target
// value 0 while the box waits for its reader.
void reportError(const QString &text)
{
    auto show = [text]() {
        if (Dialogs::quiet() || !qobject_cast<QApplication *>(QCoreApplication::instance())) {
            Dialogs::message(nullptr, QMessageBox::Critical, QStringLiteral("J-Link Error"), text);
            return;
        }
        auto *box = new QMessageBox(QMessageBox::Critical, QStringLiteral("J-Link Error"), text, QMessageBox::Ok);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->setWindowFlag(Qt::WindowStaysOnTopHint);
        // Shown from the event loop, so that it comes up over the window
        // whose load raised it.
        QTimer::singleShot(0, box, &QWidget::show);
    };
    QCoreApplication *app = QCoreApplication::instance();
    if (!app || QThread::currentThread() == app->thread())
        show();
    else
        QMetaObject::invokeMethod(app, show, Qt::QueuedConnection);
}

QString moduleFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void *>(&moduleFolder), &info) && info.dli_fname && *info.dli_fname)
        return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    return QString();
}

bool loadLocked(Loader &l)
{
    if (l.tried)
        return l.library != nullptr;
    l.tried = true;
    for (const QString &folder : JLinkApi::searchFolders()) {
        const QString path = QDir(folder).filePath(JLinkApi::libraryName());
        if (!QFileInfo::exists(path))
            continue;
        auto *library = new QLibrary(path);
        if (library->load()) {
            l.library = library;
            l.file = path;
            return true;
        }
        delete library;
    }
    reportError(QStringLiteral("Target DLL ") + JLinkApi::libraryName() + QStringLiteral(" not found !"));
    return false;
}

QFunctionPointer function(Function f)
{
    Loader &l = loader();
    if (QFunctionPointer known = l.functions[f].load(std::memory_order_acquire))
        return known;
    QMutexLocker lock(&l.mutex);
    if (!loadLocked(l) || l.looked[f])
        return l.functions[f].load();
    l.looked[f] = true;
    QFunctionPointer p = l.library->resolve(kNames[f]);
    if (!p)
        reportError(QStringLiteral("DLL function ") + QLatin1String(kNames[f]) + QStringLiteral("(...) not found !"));
    l.functions[f].store(p, std::memory_order_release);
    return p;
}

template <class Signature>
Signature resolved(Function f)
{
    return reinterpret_cast<Signature>(function(f));
}

} // namespace

QString JLinkApi::libraryName()
{
    return QStringLiteral("libjlinkarm.so");
}

QString JLinkApi::installPath()
{
    QSettings store(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("SEGGER"), QStringLiteral("J-Link"));
    return store.value(QStringLiteral("InstallPath")).toString();
}

QStringList JLinkApi::searchFolders()
{
    QStringList folders;
    for (const QString &folder : {moduleFolder(), QCoreApplication::applicationDirPath(), installPath()}) {
        if (!folder.isEmpty())
            folders << folder;
    }
    return folders;
}

bool JLinkApi::load()
{
    QMutexLocker lock(&loader().mutex);
    return loadLocked(loader());
}

bool JLinkApi::isLoaded()
{
    QMutexLocker lock(&loader().mutex);
    return loader().library != nullptr;
}

QString JLinkApi::loadedFile()
{
    QMutexLocker lock(&loader().mutex);
    return loader().file;
}

void JLinkApi::unload()
{
    Loader &l = loader();
    QMutexLocker lock(&l.mutex);
    for (int i = 0; i < FunctionCount; ++i) {
        l.functions[i].store(nullptr);
        l.looked[i] = false;
    }
    // Not unloaded: a thread may still be inside one of its functions.
    delete l.library;
    l.library = nullptr;
    l.file.clear();
    l.tried = false;
}

int JLinkApi::JLINKARM_EMU_SelectByUSBSN(unsigned serialNumber)
{
    auto f = resolved<int (*)(unsigned)>(SelectByUSBSN);
    return f ? f(serialNumber) : 0;
}

int JLinkApi::JLINKARM_SelectIP(const char *host, int port)
{
    auto f = resolved<int (*)(const char *, int)>(SelectIP);
    return f ? f(host, port) : 0;
}

const char *JLinkApi::JLINKARM_OpenEx(LogCallback log, LogCallback error)
{
    auto f = resolved<const char *(*)(LogCallback, LogCallback)>(OpenEx);
    return f ? f(log, error) : nullptr;
}

int JLinkApi::JLINKARM_ExecCommand(const char *command, char *error, int size)
{
    auto f = resolved<int (*)(const char *, char *, int)>(ExecCommand);
    return f ? f(command, error, size) : 0;
}

int JLinkApi::JLINKARM_TIF_Select(int interface)
{
    auto f = resolved<int (*)(int)>(TIFSelect);
    return f ? f(interface) : 0;
}

void JLinkApi::JLINKARM_SetSpeed(unsigned kHz)
{
    if (auto f = resolved<void (*)(unsigned)>(SetSpeed))
        f(kHz);
}

int JLinkApi::JLINKARM_Connect()
{
    auto f = resolved<int (*)()>(Connect);
    return f ? f() : 0;
}

int JLinkApi::JLINKARM_IsOpen()
{
    auto f = resolved<char (*)()>(IsOpen);
    return f ? int(f()) : 0;
}

void JLinkApi::JLINKARM_Close()
{
    if (auto f = resolved<void (*)()>(Close))
        f();
}

int JLinkApi::JLINKARM_ReadMem(quint32 address, quint32 count, void *buffer)
{
    auto f = resolved<int (*)(quint32, quint32, void *)>(ReadMem);
    return f ? f(address, count, buffer) : 0;
}

int JLinkApi::JLINKARM_WriteMem(quint32 address, quint32 count, const void *buffer)
{
    auto f = resolved<int (*)(quint32, quint32, const void *)>(WriteMem);
    return f ? f(address, count, buffer) : 0;
}

void JLinkApi::JLINKARM_Reset()
{
    if (auto f = resolved<int (*)()>(Reset))
        f();
}

void JLinkApi::JLINKARM_Go()
{
    if (auto f = resolved<void (*)()>(Go))
        f();
}

void JLinkApi::JLINKARM_BeginDownload(unsigned flags)
{
    if (auto f = resolved<void (*)(unsigned)>(BeginDownload))
        f(flags);
}

int JLinkApi::JLINK_DownloadFile(const char *fileName, quint32 address)
{
    auto f = resolved<int (*)(const char *, quint32)>(DownloadFile);
    return f ? f(fileName, address) : 0;
}

int JLinkApi::JLINKARM_EndDownload()
{
    auto f = resolved<int (*)()>(EndDownload);
    return f ? f() : 0;
}
