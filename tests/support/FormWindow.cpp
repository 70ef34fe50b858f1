#include "FormWindow.h"

#include "QuillonRun.h"
#include "RecordingSink.h"
#include "shell/Document.h"
#include "shell/MainWindow.h"

#include <QCoreApplication>
#include <QtTest>

FormWindow::~FormWindow()
{
    close();
}

bool FormWindow::write(const QByteArray &svd, const QByteArray &form, const QByteArray &head)
{
    QCoreApplication::setOrganizationName(QStringLiteral("Norvane Technologies"));
    path = dir.filePath(QStringLiteral("form.xml"));
    return dir.isValid() && writeTextFile(dir.filePath(QStringLiteral("mini.svd")), svd)
        && writeDescription(path, "<svd file=\"mini.svd\"/>\n" + head, form);
}

bool FormWindow::open(bool show)
{
    close();
    StartOptions options;
    options.quiet = true;
    window = new MainWindow(options);
    sink = new RecordingSink;
    if (!window->open(path))
        return false;
    window->startUp(false);
    openMessages = sink->console + sink->errors;
    sink->clear();
    if (show) {
        window->show();
        return QTest::qWaitForWindowExposed(window);
    }
    return true;
}

void FormWindow::close()
{
    // The sink goes first: it hands the messages back to the window's
    // console.
    delete sink;
    sink = nullptr;
    delete window;
    window = nullptr;
}

DocumentTables &FormWindow::tables() const
{
    return window->document()->tables();
}
