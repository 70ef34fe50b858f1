#pragma once
#include <QtPlugin>
#include <QString>

class QObject;

// What the program asks of the Python plug-in. The plug-in embeds the
// interpreter; the program binds it late (QPluginLoader), so that a machine
// without Python or without the plug-in runs every description that does
// not ask for it.
//
// All calls come from the main thread. The object behind outputObject()
// has the signals pythonStdOut(QString) and pythonStdErr(QString).
class PythonBridgeInterface
{
public:
    virtual ~PythonBridgeInterface() = default;

    // Starts the interpreter once. False with the reason when it can't.
    virtual bool initialize(QString *error) = 0;
    // The version of the embedded interpreter, as "3.11.2".
    virtual QString pythonVersion() const = 0;
    virtual QObject *outputObject() = 0;

    // Binds the object in the main module under the name; its invokable
    // slots and its properties are reached through Qt's meta-object data.
    virtual void addObject(const QString &name, QObject *object) = 0;
    // Runs a file, or text in file-input mode, in the main module. Errors
    // come out on pythonStdErr; nothing is thrown.
    virtual void evalFile(const QString &fileName) = 0;
    virtual void evalScript(const QString &text) = 0;

    // True while an evaluation runs.
    virtual bool isRunning() const = 0;
    // Asks the running evaluation to stop at its next step, raising
    // KeyboardInterrupt in it.
    virtual void requestInterrupt() = 0;
    // Interrupts a run that takes longer than this (0: no limit).
    virtual void setTimeLimit(int milliseconds) = 0;
};

#define PythonBridgeInterface_iid "com.norvane.Quillon.PythonBridgeInterface/1.0"
Q_DECLARE_INTERFACE(PythonBridgeInterface, PythonBridgeInterface_iid)
