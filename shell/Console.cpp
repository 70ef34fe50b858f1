#include "shell/Console.h"

#include "elements/Reports.h"
#include "shell/TextBrowser.h"

#include <QAction>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenu>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QScrollBar>
#include <QSet>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>

namespace {
const QString kColon = QStringLiteral("$$$COLON$$$");
const QString kXmlOpen = QStringLiteral("$xmlopen$");
}

Console::Console(QWidget *window, bool quiet)
    : QObject(window)
    , m_window(window)
    , m_dialogsOn(!quiet)
    , m_echoOn(quiet)
{
    m_dock = new QDockWidget(tr("Console"), window);
    m_dock->setObjectName(QStringLiteral("consoleDock"));
    m_dock->setMaximumHeight(260);
    m_dock->setFeatures(QDockWidget::DockWidgetClosable);

    m_tabs = new QTabWidget(m_dock);
    m_log = new QTextBrowser(m_tabs);
    m_log->setObjectName(QStringLiteral("consoleLog"));
    m_log->setReadOnly(true);
    m_log->setOpenLinks(false);
    m_log->setOpenExternalLinks(false);
    m_log->setContextMenuPolicy(Qt::CustomContextMenu);
    m_script = new TextBrowser(m_tabs);
    m_script->setObjectName(QStringLiteral("consoleScript"));
    m_tabs->addTab(m_log, tr("Log"));
    m_tabs->addTab(m_script, tr("Script"));
    m_terminal = new QTextBrowser(m_tabs);
    m_terminal->setObjectName(QStringLiteral("consoleTerminal"));
    m_terminal->setReadOnly(true);
    m_terminal->hide();
    m_dock->setWidget(m_tabs);

    connect(m_log, &QTextBrowser::anchorClicked, this, &Console::on_anchorClicked);
    connect(m_log, &QWidget::customContextMenuRequested, this, &Console::showContextMenu);
    // Closing the dock by hand keeps it closed; messages do not pop it up.
    connect(m_dock->toggleViewAction(), &QAction::triggered, this,
            [this](bool checked) { m_hiddenByUser = !checked; });

    m_formerSink = MessageSink::install(this);
}

Console::~Console()
{
    if (MessageSink::current() == this)
        MessageSink::install(m_formerSink);
    closeMirror();
}

void Console::openMirror(const QString &fileName)
{
    closeMirror();
    if (fileName.isEmpty())
        return;
    m_mirror.setFileName(fileName);
    if (!m_mirror.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        const QString reason = m_mirror.errorString();
        m_mirrorOn = false;
        Report::cannotOpenFile(QFileInfo(fileName).absoluteFilePath(), reason);
        return;
    }
    m_mirrorOn = true;
}

void Console::closeMirror()
{
    if (m_mirror.isOpen())
        m_mirror.close();
    m_mirrorOn = false;
}

void Console::writeMirror(QString text)
{
    if (!m_mirrorOn)
        return;
    m_mirror.write(text.toLatin1());
    m_mirror.flush();
}

void Console::consolePrint(const QString &html)
{
    QTextCursor cursor = m_log->textCursor();
    cursor.movePosition(QTextCursor::End);
    m_log->setTextCursor(cursor);
    // A closing <br> starts a new paragraph rather than a line break inside
    // the one before: inserting into a paragraph lays all of it out again,
    // so a log kept in one paragraph would cost more with every line, and a
    // long script run would slow down quadratically.
    static const QString lineEnd = QStringLiteral("<br>");
    const bool closed = html.endsWith(lineEnd);
    m_log->insertHtml(closed ? html.left(html.size() - lineEnd.size()) : html);
    cursor.movePosition(QTextCursor::End);
    if (closed)
        cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
    m_log->setTextCursor(cursor);
    m_log->ensureCursorVisible();

    if (m_dock->isHidden() && !m_hiddenByUser)
        m_dock->show();

    // One message a line keeps the mirror readable and greppable; the text
    // itself is kept as it is, tags included.
    writeMirror(html.endsWith(QLatin1Char('\n')) ? html : html + QLatin1Char('\n'));
}

void Console::showError(const QString &text)
{
    if (m_dialogsOn) {
        if (!m_box) {
            m_box = new QMessageBox(m_window);
            m_box->setWindowFlags(m_box->windowFlags() | Qt::WindowStaysOnTopHint);
            m_box->setIcon(QMessageBox::Warning);
            m_box->setWindowTitle(QStringLiteral("Quillon"));
            m_box->setModal(false);
            // Messages carry mark-up and links to elements and file places;
            // a link in the box is followed like one in the console.
            m_box->setTextFormat(Qt::RichText);
            m_box->setTextInteractionFlags(Qt::TextBrowserInteraction);
            if (auto *label = m_box->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
                label->setOpenExternalLinks(false);
                connect(label, &QLabel::linkActivated, this, [this](const QString &link) { on_anchorClicked(QUrl(link)); });
            }
        }
        // A new message replaces the last one: messages are not queued. Line
        // feeds of plain parts become line breaks of the rich text.
        m_box->setText(QString(text).replace(QLatin1Char('\n'), QLatin1String("<br>")));
        m_box->show();
    }
    if (m_echoOn) {
        QString html = text;
        if (!html.contains(QLatin1String("<br>")))
            html += QLatin1String("<br>");
        // The echo goes to the pane only; the mirror receives the message
        // once, below, in its plain form.
        const bool mirror = m_mirrorOn;
        m_mirrorOn = false;
        consolePrint(html);
        m_mirrorOn = mirror;
    }
    if (m_mirrorOn) {
        QString line = text;
        if (!line.endsWith(QLatin1Char('\n')))
            line += QLatin1Char('\n');
        writeMirror(line);
    }
}

QString Console::plainText() const
{
    return m_log->toPlainText();
}

QString Console::linkTarget(const QString &text)
{
    QString t = text;
    return t.replace(QLatin1Char(':'), kColon);
}

QString Console::fileLink(const QString &file, qint64 line, qint64 column)
{
    return QStringLiteral("$xmlopen$%1$-n%2$-c%3").arg(linkTarget(file)).arg(line).arg(column);
}

void Console::clearConsole()
{
    m_log->clear();
}

void Console::consolePrintValidationError(const QString &errorMsg, const QString &errorData)
{
    consolePrint(QStringLiteral("<font color=\"blue\"> <b>%1:</b></font><br>").arg(errorMsg));
    consolePrint(QStringLiteral("<font color=\"red\"> %1</font><br>").arg(errorData));
}

void Console::consolePrintXmlErrors(const QSet<QString> &xmlErrors)
{
    for (const QString &error : xmlErrors)
        consolePrint(QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>").arg(error));
}

void Console::on_anchorClicked(const QUrl &link)
{
    QString target = link.toString();
    if (target.startsWith(kXmlOpen)) {
        if (m_externalEditor.isEmpty())
            return;
        target.remove(0, kXmlOpen.size());
        target.replace(kColon, QStringLiteral(":"));
        const QStringList args = target.split(QLatin1Char('$'), Qt::SkipEmptyParts);
        QProcess::execute(m_externalEditor, args);
        return;
    }
    target.replace(kColon, QStringLiteral(":"));
    emit elementLinkClicked(target);
}

void Console::showContextMenu(const QPoint &pt)
{
    QMenu menu;
    QAction *clear = menu.addAction(tr("Clear console"));
    clear->setStatusTip(tr("Clear the console."));
    connect(clear, &QAction::triggered, this, &Console::clearConsole);
    menu.exec(m_log->mapToGlobal(pt));
}

void Console::readConsole(const QString &text)
{
    QString html = text;
    html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    consolePrint(html);
}

void Console::showTerminal()
{
    if (m_tabs->indexOf(m_terminal) < 0)
        m_tabs->addTab(m_terminal, tr("Terminal"));
    m_tabs->setCurrentWidget(m_terminal);
    m_terminal->show();
}

void Console::appendTerminal(const QString &text)
{
    QString html = text;
    html.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    QTextCursor cursor = m_terminal->textCursor();
    cursor.movePosition(QTextCursor::End);
    m_terminal->setTextCursor(cursor);
    m_terminal->insertHtml(html);
    cursor.movePosition(QTextCursor::End);
    m_terminal->setTextCursor(cursor);
    m_terminal->ensureCursorVisible();
    if (m_dock->isHidden() && !m_hiddenByUser)
        m_dock->show();
}
