#pragma once
#include <QByteArray>
#include <QString>
#include <memory>

#include "elements/MessageSink.h"

class MainWindow;
class QApplication;
class QTemporaryDir;

// What every fuzz target shares: one offscreen QApplication for the whole
// run, a scratch folder holding a private copy of the bundled example (so
// that nothing an input makes the program write can reach the source tree),
// and a message sink that drops the program's messages instead of filling a
// console for millions of inputs.
//
// Targets that need a loaded form get a quiet MainWindow with the example
// open, made once and kept: loading the example for every input would cost
// more than the input itself.
class FuzzEnvironment : public MessageSink
{
public:
    // Sets up the application once; call from LLVMFuzzerInitialize.
    static FuzzEnvironment &start(int *argc, char ***argv);
    static FuzzEnvironment &instance();

    // The scratch folder (also the current folder).
    QString folder() const;
    // Writes bytes to a file of the scratch folder; returns its path.
    QString writeFile(const QString &name, const QByteArray &bytes) const;
    // The example's description inside the scratch folder.
    QString examplePath() const;

    // The window with the example loaded; reopened when an input made it
    // load something else.
    MainWindow &window();

    void consolePrint(const QString &) override {}
    void showError(const QString &) override {}

private:
    FuzzEnvironment(int *argc, char ***argv);

    std::unique_ptr<QApplication> m_app;
    std::unique_ptr<QTemporaryDir> m_dir;
    MainWindow *m_window = nullptr;
};
