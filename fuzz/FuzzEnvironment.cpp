#include "FuzzEnvironment.h"

#include "shell/Dialogs.h"
#include "shell/MainWindow.h"
#include "shell/StartOptions.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

namespace {
FuzzEnvironment *g_environment = nullptr;
}

FuzzEnvironment &FuzzEnvironment::start(int *argc, char ***argv)
{
    if (!g_environment)
        g_environment = new FuzzEnvironment(argc, argv);
    return *g_environment;
}

FuzzEnvironment &FuzzEnvironment::instance()
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char *args[] = {name, nullptr};
    static char **argv = args;
    return start(&argc, &argv);
}

FuzzEnvironment::FuzzEnvironment(int *argc, char ***argv)
{
    // No display, and settings written by the window go to the scratch
    // folder rather than the user's configuration.
    m_dir = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/quillon-fuzz-XXXXXX"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir->filePath(QStringLiteral("config"))));
    // QApplication keeps a reference to argc: it must outlive the
    // application, which the caller's storage does.
    m_app = std::make_unique<QApplication>(*argc, *argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillon fuzz"));
    Dialogs::setQuiet(true);
    MessageSink::install(this);

    const QDir example(QStringLiteral(QUILLON_SOURCE_DIR "/examples/nrf52840"));
    for (const QString &name : example.entryList(QDir::Files)) {
        if (!QFile::copy(example.filePath(name), m_dir->filePath(name))) {
            std::fprintf(stderr, "fuzz: cannot copy %s to %s\n", qPrintable(example.filePath(name)),
                         qPrintable(m_dir->path()));
            std::abort();
        }
    }
    QDir::setCurrent(m_dir->path());
}

QString FuzzEnvironment::folder() const
{
    return m_dir->path();
}

QString FuzzEnvironment::writeFile(const QString &name, const QByteArray &bytes) const
{
    const QString path = m_dir->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "fuzz: cannot write %s\n", qPrintable(path));
        std::abort();
    }
    return path;
}

QString FuzzEnvironment::examplePath() const
{
    return m_dir->filePath(QStringLiteral("nrf52840_board.xml"));
}

MainWindow &FuzzEnvironment::window()
{
    if (!m_window) {
        StartOptions options;
        options.quiet = true;
        m_window = new MainWindow(options);
        // The console installs itself as the sink; its text would only grow.
        MessageSink::install(this);
    }
    if (QFileInfo(m_window->currentDescription()) != QFileInfo(examplePath())) {
        if (!m_window->open(examplePath())) {
            std::fprintf(stderr, "fuzz: cannot open the example %s\n", qPrintable(examplePath()));
            std::abort();
        }
        m_window->startUp(false);
        MessageSink::install(this);
    }
    // Scripts and loads may move the current folder.
    QDir::setCurrent(m_dir->path());
    Dialogs::setQuiet(true);
    return *m_window;
}
