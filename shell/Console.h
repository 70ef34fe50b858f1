#pragma once
#include <QFile>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

#include "elements/MessageSink.h"

class QDockWidget;
#include <QMessageBox>
class QTabWidget;
class QTextBrowser;
class QWidget;
class TextBrowser;

// The docked console and the message paths: the Log pane, the single
// modeless error box, the console echo of quiet mode and the mirror file of
// -c. Installs itself as the program's message sink while it lives.
class Console : public QObject, public MessageSink
{
    Q_OBJECT
public:
    explicit Console(QWidget *window, bool quiet);
    ~Console() override;

    // Opens the mirror file for appending; on failure reports and turns the
    // mirror off.
    void openMirror(const QString &fileName);
    void closeMirror();

    void consolePrint(const QString &html) override;
    void showError(const QString &text) override;

    // Switches of the message paths (the script command SETOUTPUTOPTIONS
    // changes them at run time).
    bool dialogsOn() const { return m_dialogsOn; }
    bool echoOn() const { return m_echoOn; }
    bool mirrorOn() const { return m_mirrorOn; }
    void setDialogsOn(bool on) { m_dialogsOn = on; }
    void setEchoOn(bool on) { m_echoOn = on; }
    // A console hidden on purpose does not pop up for messages.
    void setHiddenByUser(bool hidden) { m_hiddenByUser = hidden; }

    QDockWidget *dock() const { return m_dock; }
    QTabWidget *tabs() const { return m_tabs; }
    QTextBrowser *log() const { return m_log; }
    TextBrowser *scriptPane() const { return m_script; }
    QTextBrowser *terminal() const { return m_terminal; }
    QMessageBox *messageBox() const { return m_box; }

    // Shows the terminal view as the current tab "Terminal".
    void showTerminal();
    // Appends text from the terminal port (line ends become breaks).
    void appendTerminal(const QString &text);

    // The text of the Log pane without markup.
    QString plainText() const;

    // The external editor for $xmlopen$ links (settings.ini externaleditor).
    void setExternalEditor(const QString &program) { m_externalEditor = program; }

    // Turns a define or path into a link target: ":" -> "$$$COLON$$$".
    static QString linkTarget(const QString &text);
    // "$xmlopen$file$-nline$-ccolumn"
    static QString fileLink(const QString &file, qint64 line, qint64 column);

public slots:
    void clearConsole();
    void consolePrintValidationError(const QString &errorMsg, const QString &errorData);
    void consolePrintXmlErrors(const QSet<QString> &xmlErrors);
    void on_anchorClicked(const QUrl &link);
    void showContextMenu(const QPoint &pt);
    void readConsole(const QString &text);

signals:
    // A link to an element's define was followed.
    void elementLinkClicked(const QString &define);

private:
    void writeMirror(QString text);

    QPointer<QWidget> m_window;
    QDockWidget *m_dock = nullptr;
    QTabWidget *m_tabs = nullptr;
    QTextBrowser *m_log = nullptr;
    TextBrowser *m_script = nullptr;
    QTextBrowser *m_terminal = nullptr;
    QPointer<QMessageBox> m_box;
    QFile m_mirror;
    bool m_dialogsOn = true;
    bool m_echoOn = false;
    bool m_mirrorOn = false;
    bool m_hiddenByUser = false;
    QString m_externalEditor;
    MessageSink *m_formerSink = nullptr;
};
