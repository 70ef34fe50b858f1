#pragma once
#include <QString>

class QObject;
class PythonBridgeInterface;

// The program's side of the Python bridge. The interpreter lives in a
// plug-in (libquillon_python.so beside the executable) that is loaded only
// when a description asks for Python with `usesPython`; until then, and on
// a machine without the plug-in or without Python, nothing of Python is
// touched and every other description runs.
//
// After start() the window is bound as `application`, and every element
// and `var` read afterwards under its define ("." replaced by "_").
class PythonBridge
{
public:
    // usesPython: loads and starts the bridge once; a second call finds it
    // running. Shows the warning and returns false when it can't start.
    static bool start(QObject *application);
    // Whether the bridge runs (the main module exists).
    static bool active();
    // Why the last start failed; empty after a good one.
    static QString lastError();

    // Binds an object under its define; nothing before start().
    static void expose(const QString &define, QObject *object);
    static QString pythonName(const QString &define);

    // The text after "python:" of an action or a script: a file when it ends
    // in ".py" (ignoring case), relative names against baseFolder when they
    // are not found as they stand; Python text otherwise. Nothing happens
    // when the bridge does not run.
    static void run(const QString &text, const QString &baseFolder = QString());

    // PythonStdOut/PythonStdErr: a lone line end is dropped, the rest goes
    // to the console behind the prefix, line ends as "<br>".
    static void print(const QString &prefix, const QString &text);

    // Stops a running evaluation at its next step.
    static void interrupt();
    static bool running();
    static QString pythonVersion();

    // Where the plug-in is looked for; tests point elsewhere.
    static QString pluginPath();
    static void setPluginPath(const QString &path);

    // The loaded plug-in, or null.
    static PythonBridgeInterface *plugin();
};
