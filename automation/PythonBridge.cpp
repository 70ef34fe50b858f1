#include "automation/PythonBridge.h"

#include "automation/python/PythonBridgeInterface.h"
#include "elements/MessageSink.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QPluginLoader>
#include <QPointer>

namespace {

struct BridgeState
{
    QString pluginPath;
    QString error;
    QPluginLoader *loader = nullptr;
    PythonBridgeInterface *bridge = nullptr;
    bool started = false;
    QPointer<QObject> application;
};

BridgeState &state()
{
    static BridgeState s;
    return s;
}

// Closing the window or quitting stops a Python run that is in progress, so
// that code which loops can never keep the program from ending.
class InterruptOnClose : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if ((event->type() == QEvent::Close || event->type() == QEvent::Quit) && PythonBridge::running())
            PythonBridge::interrupt();
        return QObject::eventFilter(watched, event);
    }
};

QString missingText(const QString &reason)
{
    return QStringLiteral("WARNING: \nThis script uses Python but this is not installed correctly.\n"
                          "Please ensure that Python 3 (the system's libpython3) is installed correctly and that the\n"
                          "Python bridge of this program is found at\n%1\n(%2)\n\n"
                          "The script can not be executed.")
        .arg(PythonBridge::pluginPath(), reason);
}

void warn(const QString &reason)
{
    state().error = reason;
    const QString text = missingText(reason);
    if (Dialogs::quiet()) {
        consolePrint(QStringLiteral("<font color=\"red\"><b>Python integration: </b></font>%1<br>")
                         .arg(text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"))));
        return;
    }
    Dialogs::message(nullptr, QMessageBox::Warning, QStringLiteral("Python integration"), text);
}

PythonBridgeInterface *load(QString *reason)
{
    BridgeState &s = state();
    if (s.bridge)
        return s.bridge;
    const QString path = PythonBridge::pluginPath();
    if (!QFileInfo::exists(path)) {
        *reason = QStringLiteral("the bridge library does not exist");
        return nullptr;
    }
    delete s.loader;
    s.loader = new QPluginLoader(path);
    // Python's own extension modules (lib-dynload) need the interpreter's
    // symbols visible process-wide.
    s.loader->setLoadHints(QLibrary::ExportExternalSymbolsHint);
    QObject *root = s.loader->instance();
    auto *bridge = qobject_cast<PythonBridgeInterface *>(root);
    if (!bridge) {
        *reason = root ? QStringLiteral("the library is not a Python bridge") : s.loader->errorString();
        return nullptr;
    }
    s.bridge = bridge;
    return bridge;
}

} // namespace

QString PythonBridge::pluginPath()
{
    const QString &p = state().pluginPath;
    if (!p.isEmpty())
        return p;
    // An installation keeps the plug-in beside the executable; the variable
    // serves builds whose programs live elsewhere (the tests).
    const QString fromEnvironment = qEnvironmentVariable("QUILLON_PYTHON_BRIDGE");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    return QCoreApplication::applicationDirPath() + QStringLiteral("/libquillon_python.so");
}

void PythonBridge::setPluginPath(const QString &path)
{
    state().pluginPath = path;
}

PythonBridgeInterface *PythonBridge::plugin()
{
    return state().bridge;
}

bool PythonBridge::active()
{
    return state().started;
}

QString PythonBridge::lastError()
{
    return state().error;
}

bool PythonBridge::running()
{
    return state().started && state().bridge->isRunning();
}

void PythonBridge::interrupt()
{
    if (state().started)
        state().bridge->requestInterrupt();
}

QString PythonBridge::pythonVersion()
{
    return state().bridge ? state().bridge->pythonVersion() : QString();
}

bool PythonBridge::start(QObject *application)
{
    BridgeState &s = state();
    if (!s.started) {
        QString reason;
        PythonBridgeInterface *bridge = load(&reason);
        if (!bridge) {
            warn(reason);
            return false;
        }
        if (!bridge->initialize(&reason)) {
            warn(reason);
            return false;
        }
        s.started = true;
        s.error.clear();
        const int limit = qEnvironmentVariableIntValue("QUILLON_PYTHON_TIMEOUT");
        bridge->setTimeLimit(limit > 0 ? limit * 1000 : 0);
    }
    // A later document may come with another window: output and the name
    // `application` follow the window that reads it.
    if (application && s.application != application) {
        QObject *output = s.bridge->outputObject();
        if (s.application)
            QObject::disconnect(output, nullptr, s.application, nullptr);
        QObject::connect(output, SIGNAL(pythonStdOut(QString)), application, SLOT(PythonStdOut(QString)));
        QObject::connect(output, SIGNAL(pythonStdErr(QString)), application, SLOT(PythonStdErr(QString)));
        application->installEventFilter(new InterruptOnClose(application));
        s.application = application;
        s.bridge->addObject(QStringLiteral("application"), application);
    }
    return true;
}

QString PythonBridge::pythonName(const QString &define)
{
    QString name = define;
    name.replace(QLatin1Char('.'), QLatin1Char('_'));
    return name;
}

void PythonBridge::expose(const QString &define, QObject *object)
{
    if (!state().started || define.isEmpty() || !object)
        return;
    state().bridge->addObject(pythonName(define), object);
}

void PythonBridge::run(const QString &text, const QString &baseFolder)
{
    // Without usesPython the text has no reader, and says nothing.
    if (!state().started)
        return;
    const QString code = text.trimmed();
    if (code.endsWith(QLatin1String(".py"), Qt::CaseInsensitive)) {
        QString file = code;
        if (QFileInfo(file).isRelative() && !QFileInfo::exists(file) && !baseFolder.isEmpty())
            file = QDir(baseFolder).filePath(code);
        state().bridge->evalFile(file);
    } else {
        state().bridge->evalScript(text);
    }
}

void PythonBridge::print(const QString &prefix, const QString &text)
{
    if (text == QLatin1String("\n"))
        return;
    QString html = text.toHtmlEscaped();
    html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    consolePrint(prefix + html + QStringLiteral("<br>"));
}
