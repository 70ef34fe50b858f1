#include "shell/AppVersion.h"
#include "shell/CommandLine.h"
#include "shell/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <cstdio>

namespace {

void showUsage(bool quiet)
{
    const QString text = CommandLine::usageText();
    // Unattended runs must never wait on a box: with -q the usage goes to
    // standard output instead.
    if (quiet) {
        std::fputs(text.toLocal8Bit().constData(), stdout);
        std::fflush(stdout);
        return;
    }
    QMessageBox box(QMessageBox::Information, QStringLiteral("Usage"), text, QMessageBox::Ok, nullptr,
                    Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint);
    box.exec();
}

// The program works from its own folder, yet a user who types a relative
// name means it from where they are: names that exist there, and output
// files, are made absolute before the folder changes meaning.
void resolveAgainst(const QDir &startDir, StartOptions &o)
{
    auto input = [&startDir](QString &name) {
        if (!name.isEmpty() && QFileInfo(name).isRelative() && QFileInfo::exists(startDir.filePath(name)))
            name = startDir.absoluteFilePath(name);
    };
    auto output = [&startDir](QString &name) {
        if (!name.isEmpty() && QFileInfo(name).isRelative())
            name = startDir.absoluteFilePath(name);
    };
    input(o.fileName);
    input(o.batchFile);
    output(o.consoleLogFile);
    output(o.outputLogFile);
    output(o.saveFile);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication app(argc, argv);
    const QDir startDir = QDir::current();
    QDir::setCurrent(QCoreApplication::applicationDirPath());

    QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
    QCoreApplication::setApplicationName(QStringLiteral("Norvane Quillon"));
    QCoreApplication::setApplicationVersion(AppVersion::text());
    QCoreApplication::addLibraryPath(QStringLiteral("./"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/vantage_k.png")));

    QFile style(QStringLiteral(":/styles/UIElementsStyle.qss"));
    if (style.open(QIODevice::ReadOnly | QIODevice::Text))
        app.setStyleSheet(QString::fromUtf8(style.readAll()));

    const QStringList arguments = QCoreApplication::arguments();
    StartOptions options = CommandLine::parse(arguments);
    if (options.usageRequested)
        showUsage(options.quiet);
    for (const QString &hint : qAsConst(options.hints))
        std::fprintf(stderr, "%s\n", hint.toLocal8Bit().constData());
    options.fileName.replace(QLatin1Char('\\'), QLatin1Char('/'));
    resolveAgainst(startDir, options);

    MainWindow window(options);
    if (window.exitRequested())
        return window.exitCode();
    window.showAsStored();
    const int result = app.exec();
    if (window.exitRequested())
        return window.exitCode();
    return result;
}
