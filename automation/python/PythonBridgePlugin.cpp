#pragma push_macro("slots")
#undef slots
#include <pybind11/embed.h>
#pragma pop_macro("slots")

#include "PythonBridgePlugin.h"
#include "QtObjectBinding.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <chrono>

namespace py = pybind11;

namespace {

// The one plug-in instance; the Python objects reach it through here.
PythonBridgePlugin *g_bridge = nullptr;

// Output that reaches the console per run; beyond it lines are counted and
// dropped, so a loop that prints cannot bury the program in text.
constexpr qint64 kOutputLimit = 1 << 20;

struct OutputStream
{
    int channel = 0;
};

int pendingPump(void *)
{
    return g_bridge ? g_bridge->pump() : 0;
}

} // namespace

PYBIND11_EMBEDDED_MODULE(quillon, m)
{
    QtObjectBinding::define(m);
    py::class_<OutputStream>(m, "Output")
        .def(py::init<int>(), py::arg("channel"))
        .def("write",
             [](OutputStream &self, const std::string &text) {
                 if (g_bridge)
                     g_bridge->write(self.channel, QString::fromStdString(text));
                 return text.size();
             })
        .def("flush", [](OutputStream &) {})
        .def("isatty", [](OutputStream &) { return false; })
        .def_property_readonly("encoding", [](OutputStream &) { return std::string("utf-8"); });
}

PythonBridgePlugin::PythonBridgePlugin()
{
    g_bridge = this;
}

PythonBridgePlugin::~PythonBridgePlugin()
{
    m_quit = true;
    if (m_watchdog.joinable())
        m_watchdog.join();
    // The interpreter is not finalized: objects of the program may still be
    // bound in it, and finalizing at process end gains nothing.
    g_bridge = nullptr;
}

bool PythonBridgePlugin::initialize(QString *error)
{
    if (m_initialized)
        return true;
    if (Py_IsInitialized()) {
        if (error)
            *error = QStringLiteral("Python was started by someone else in this process.");
        return false;
    }
    PyConfig config;
    PyConfig_InitPythonConfig(&config);
    // No site module (as the bridge always did: a description's Python
    // does not depend on what the machine installed), no signal handlers
    // of Python's own (Qt owns the process), no argument parsing.
    config.site_import = 0;
    config.install_signal_handlers = 0;
    config.parse_argv = 0;
    config.write_bytecode = 0;
    PyStatus status = PyConfig_SetString(&config, &config.program_name, L"quillon");
    if (!PyStatus_Exception(status))
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    if (PyStatus_Exception(status)) {
        if (error)
            *error = QStringLiteral("Python could not be started: %1")
                         .arg(QString::fromUtf8(status.err_msg ? status.err_msg : "unknown reason"));
        return false;
    }
    try {
        py::module_ sys = py::module_::import("sys");
        py::module_ quillon = py::module_::import("quillon");
        sys.attr("stdout") = quillon.attr("Output")(0);
        sys.attr("stderr") = quillon.attr("Output")(1);
        py::module_::import("__main__");
    } catch (const std::exception &e) {
        if (error)
            *error = QStringLiteral("Python could not be prepared: %1").arg(QString::fromUtf8(e.what()));
        return false;
    }
    m_initialized = true;
    // The main thread gives the interpreter lock back; each call takes it.
    PyEval_SaveThread();
    m_watchdog = std::thread([this] { watch(); });
    return true;
}

QString PythonBridgePlugin::pythonVersion() const
{
    return QStringLiteral("%1.%2.%3").arg(PY_MAJOR_VERSION).arg(PY_MINOR_VERSION).arg(PY_MICRO_VERSION);
}

void PythonBridgePlugin::addObject(const QString &name, QObject *object)
{
    if (!m_initialized || name.isEmpty())
        return;
    py::gil_scoped_acquire gil;
    try {
        py::module_ main = py::module_::import("__main__");
        main.attr(name.toStdString().c_str()) = QtObjectBinding::wrap(object);
    } catch (py::error_already_set &e) {
        write(1, QStringLiteral("%1 could not be bound: %2\n").arg(name, QString::fromStdString(e.what())));
    }
}

void PythonBridgePlugin::evalFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        write(1, QStringLiteral("Python file %1 can't be read: %2\n").arg(fileName, file.errorString()));
        flush(1, true);
        return;
    }
    run(QString::fromUtf8(file.readAll()), QFileInfo(fileName).absoluteFilePath());
}

void PythonBridgePlugin::evalScript(const QString &text)
{
    run(text, QString());
}

void PythonBridgePlugin::run(const QString &code, const QString &fileName)
{
    if (!m_initialized)
        return;
    if (m_inPump) {
        // A click while a run waits for its turn: Python doesn't take
        // pending calls inside pending calls, so a second run would block
        // the first one's stop.
        write(1, QStringLiteral("Python is still running another script; this one was not started.\n"));
        flush(1, true);
        return;
    }
    py::gil_scoped_acquire gil;
    if (m_depth++ == 0) {
        m_interrupt = false;
        m_lastRaise = -1;
        m_written = 0;
        m_dropped = 0;
        m_runTime.start();
        m_running = true;
    }
    try {
        py::module_ main = py::module_::import("__main__");
        py::dict globals = main.attr("__dict__");
        py::module_ builtins = py::module_::import("builtins");
        const std::string name = fileName.isEmpty() ? std::string("<script>") : fileName.toStdString();
        if (!fileName.isEmpty()) {
            // A file's neighbours can be imported, as when Python runs it.
            py::list path = py::module_::import("sys").attr("path");
            const py::str folder(QFileInfo(fileName).absolutePath().toStdString());
            if (!path.contains(folder))
                path.insert(0, folder);
            globals["__file__"] = py::str(name);
        }
        py::object compiled = builtins.attr("compile")(py::str(code.toStdString()), py::str(name), "exec");
        builtins.attr("exec")(compiled, globals);
    } catch (py::error_already_set &e) {
        if (e.matches(PyExc_SystemExit)) {
            // sys.exit() ends the script, never the program.
            write(1, QStringLiteral("SystemExit: %1\n").arg(QString::fromStdString(py::str(e.value()).cast<std::string>())));
        } else {
            e.restore();
            PyErr_Print();
        }
    } catch (const std::exception &e) {
        write(1, QStringLiteral("%1\n").arg(QString::fromUtf8(e.what())));
    }
    if (--m_depth == 0) {
        m_running = false;
        m_interrupt = false;
        // A stop that came as the code ended must not hit the next run.
        PyThreadState_SetAsyncExc(PyThreadState_Get()->thread_id, nullptr);
        if (m_dropped > 0)
            write(1, QStringLiteral("Output of this Python run was cut after %1 characters; %2 more were not shown.\n")
                         .arg(kOutputLimit)
                         .arg(m_dropped));
    }
    flush(0, true);
    flush(1, true);
}

void PythonBridgePlugin::write(int channel, const QString &text)
{
    if (channel != 0 && channel != 1)
        return;
    if (m_depth > 0 && m_written + text.size() > kOutputLimit) {
        m_dropped += text.size();
        return;
    }
    m_written += text.size();
    m_pending[channel] += text;
    flush(channel, false);
}

void PythonBridgePlugin::flush(int channel, bool all)
{
    // Whole lines go out, each write of print() would otherwise be a line of
    // its own on the console.
    QString &pending = m_pending[channel];
    int end = all ? pending.size() : pending.lastIndexOf(QLatin1Char('\n')) + 1;
    if (end <= 0)
        return;
    QString text = pending.left(end);
    pending.remove(0, end);
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    if (text.isEmpty() && !all)
        text = QStringLiteral("\n");
    if (text.isEmpty())
        return;
    if (channel == 0)
        Q_EMIT pythonStdOut(text);
    else
        Q_EMIT pythonStdErr(text);
}

void PythonBridgePlugin::requestInterrupt()
{
    if (m_running)
        m_interrupt = true;
}

void PythonBridgePlugin::watch()
{
    using namespace std::chrono_literals;
    while (!m_quit) {
        std::this_thread::sleep_for(50ms);
        if (m_running && !m_callQueued.exchange(true)) {
            // The lock is taken for the call: the main thread, when it takes
            // the lock back, sees the pending call (a call added from a thread
            // that does not hold the lock does not wake the evaluation loop).
            PyGILState_STATE gil = PyGILState_Ensure();
            if (Py_AddPendingCall(&pendingPump, nullptr) != 0)
                m_callQueued = false;
            PyGILState_Release(gil);
        }
    }
}

int PythonBridgePlugin::pump()
{
    m_callQueued = false;
    if (!m_running)
        return 0;
    if (m_timeLimit > 0 && m_runTime.elapsed() > m_timeLimit)
        m_interrupt = true;
    if (!m_interrupt && !m_inPump) {
        m_inPump = true;
        // The window repaints, a close or a script's wait is handled; the
        // lock is released meanwhile so that Python threads go on too.
        PyThreadState *state = PyEval_SaveThread();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 30);
        PyEval_RestoreThread(state);
        m_inPump = false;
        if (m_timeLimit > 0 && m_runTime.elapsed() > m_timeLimit)
            m_interrupt = true;
    }
    // Raised once, then again only after a grace time: code may catch the
    // interrupt to clean up, but not to go on for ever.
    if (m_interrupt && (m_lastRaise < 0 || m_runTime.elapsed() - m_lastRaise > 1000)) {
        m_lastRaise = m_runTime.elapsed();
        write(1, m_timeLimit > 0 && m_runTime.elapsed() > m_timeLimit
                     ? QStringLiteral("The Python run took longer than its time limit of %1 ms and is stopped.\n").arg(m_timeLimit)
                     : QStringLiteral("The Python run is stopped.\n"));
        flush(1, true);
        // As an asynchronous exception it behaves as a user's Ctrl+C: raised
        // at the next step of the code, and catchable there.
        PyThreadState_SetAsyncExc(PyThreadState_Get()->thread_id, PyExc_KeyboardInterrupt);
    }
    return 0;
}
