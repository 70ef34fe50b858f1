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
    CommandLine::resolveNames(options, startDir, QDir::current());

    MainWindow window(options);
    if (window.exitRequested())
        return window.exitCode();
    window.showAsStored();
    const int result = app.exec();
    if (window.exitRequested())
        return window.exitCode();
    return result;
}
