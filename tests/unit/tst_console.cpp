#include <QtTest>

#include "shell/Console.h"
#include "shell/Dialogs.h"

#include <QAction>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextDocument>

static QString readAll(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return QString::fromLatin1(f.readAll());
}

// The console and the message paths: what a user sees interactively, what
// an unattended run leaves in the console and in the mirror file.
class TestConsole : public QObject
{
    Q_OBJECT
private slots:
    void printAppendsAndMirrorsRawHtml()
    {
        QTemporaryDir dir;
        QMainWindow window;
        Console console(&window, true);
        const QString mirror = dir.filePath(QStringLiteral("mirror.log"));
        console.openMirror(mirror);
        QVERIFY(console.mirrorOn());

        console.consolePrint(QStringLiteral("<font color=\"blue\"><b>Saved project: </font></b>a.qlnp<br>"));
        console.consolePrint(QStringLiteral("second line<br>"));
        QVERIFY(console.plainText().contains(QLatin1String("Saved project: a.qlnp")));
        QVERIFY(console.plainText().indexOf(QLatin1String("second")) > console.plainText().indexOf(QLatin1String("Saved")));
        // The mirror is flushed at once: the file holds the text while the
        // console is still open.
        QCOMPARE(readAll(mirror),
                 QStringLiteral("<font color=\"blue\"><b>Saved project: </font></b>a.qlnp<br>\nsecond line<br>\n"));
    }

    void quietErrorsGoToConsoleAndMirror()
    {
        QTemporaryDir dir;
        QMainWindow window;
        Console console(&window, true);
        const QString mirror = dir.filePath(QStringLiteral("m.log"));
        console.openMirror(mirror);
        console.showError(QStringLiteral("Cannot open file x:\nNo such file"));
        QVERIFY(!console.messageBox());
        QVERIFY(console.plainText().contains(QLatin1String("Cannot open file x:")));
        QCOMPARE(readAll(mirror), QStringLiteral("Cannot open file x:\nNo such file\n"));
    }

    void quietQuestionsTakeTheirDefaultAndSaySo()
    {
        QMainWindow window;
        Console console(&window, true);
        Dialogs::setQuiet(true);
        QCOMPARE(Dialogs::question(&window, QMessageBox::Question, QStringLiteral("Save changes?"), QStringLiteral("x"),
                                   QMessageBox::Yes | QMessageBox::No, QMessageBox::No),
                 QMessageBox::No);
        QVERIFY(Dialogs::choose(&window, QStringLiteral("Pick <one>"), QStringLiteral("x"), QStringLiteral("First"),
                                QStringLiteral("Second")));
        Dialogs::setQuiet(false);
        const QString text = console.plainText();
        QVERIFY2(text.contains(QLatin1String("question \"Save changes?\" takes its default answer: No.")), qPrintable(text));
        QVERIFY2(text.contains(QLatin1String("question \"Pick <one>\" takes its default answer: First.")), qPrintable(text));
    }

    void interactiveErrorsShareOneBox()
    {
        QMainWindow window;
        Console console(&window, false);
        console.showError(QStringLiteral("first"));
        QMessageBox *box = console.messageBox();
        QVERIFY(box);
        QVERIFY(box->isVisible());
        QVERIFY(!box->isModal());
        QVERIFY(box->windowFlags() & Qt::WindowStaysOnTopHint);
        // A reader's error: mark-up and a link to the place in the file are
        // shown as rich text, and the link is followed as in the console.
        QSignalSpy elements(&console, &Console::elementLinkClicked);
        console.showError(QStringLiteral("<b>Cannot read file a.xml:</b>\nline <a href=\"%1\">PIN</a>")
                              .arg(Console::linkTarget(QStringLiteral("P.R"))));
        QCOMPARE(console.messageBox(), box);
        QCOMPARE(box->textFormat(), Qt::RichText);
        auto *label = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
        QVERIFY(label);
        QTextDocument shown;
        shown.setHtml(label->text());
        QCOMPARE(shown.toPlainText().replace(QChar(QChar::LineSeparator), QLatin1Char('\n')), QStringLiteral("Cannot read file a.xml:\nline PIN"));
        emit label->linkActivated(Console::linkTarget(QStringLiteral("P.R")));
        QCOMPARE(elements.count(), 1);
        console.showError(QStringLiteral("second"));
        QCOMPARE(box->text(), QStringLiteral("second"));
        // Without -q nothing is echoed into the console.
        QVERIFY(!console.plainText().contains(QLatin1String("second")));
    }

    void mirrorThatCannotOpen()
    {
        QMainWindow window;
        Console console(&window, true);
        console.openMirror(QStringLiteral("/nonexistent-folder/sub/mirror.log"));
        QVERIFY(!console.mirrorOn());
        QVERIFY(console.plainText().contains(QLatin1String("Cannot open file /nonexistent-folder/sub/mirror.log:")));
    }

    void linksToFilesNeedAnEditor()
    {
        QTemporaryDir dir;
        QMainWindow window;
        Console console(&window, true);
        QSignalSpy elements(&console, &Console::elementLinkClicked);
        const QString link = Console::fileLink(QStringLiteral("C:/forms/a.xml"), 12, 3);
        QCOMPARE(link, QStringLiteral("$xmlopen$C$$$COLON$$$/forms/a.xml$-n12$-c3"));
        console.on_anchorClicked(QUrl(link));
        QCOMPARE(elements.count(), 0);

        // With an editor the file, line and column become its arguments.
        const QString script = dir.filePath(QStringLiteral("editor.sh"));
        const QString out = dir.filePath(QStringLiteral("args.txt"));
        QFile f(script);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QStringLiteral("#!/bin/sh\necho \"$@\" > '%1'\n").arg(out).toLocal8Bit());
        f.close();
        f.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        console.setExternalEditor(script);
        console.on_anchorClicked(QUrl(Console::fileLink(QStringLiteral("/forms/b.xml"), 7, 2)));
        QCOMPARE(readAll(out).trimmed(), QStringLiteral("/forms/b.xml -n7 -c2"));
    }

    void linksToElements()
    {
        QMainWindow window;
        Console console(&window, true);
        QSignalSpy elements(&console, &Console::elementLinkClicked);
        console.on_anchorClicked(QUrl(Console::linkTarget(QStringLiteral("ADC.CTRL[3:0]"))));
        QCOMPARE(elements.count(), 1);
        QCOMPARE(elements.first().first().toString(), QStringLiteral("ADC.CTRL[3:0]"));
    }

    void validationForms()
    {
        QMainWindow window;
        Console console(&window, true);
        const QString mirrorPath = QDir::temp().filePath(QStringLiteral("quillon-validation-%1.log").arg(QCoreApplication::applicationPid()));
        QFile::remove(mirrorPath);
        console.openMirror(mirrorPath);
        console.consolePrintValidationError(QStringLiteral("Defines"), QStringLiteral("A.B missing"));
        console.consolePrintXmlErrors({QStringLiteral("bad element")});
        const QString text = readAll(mirrorPath);
        QFile::remove(mirrorPath);
        QVERIFY(text.contains(QLatin1String("<font color=\"blue\"> <b>Defines:</b></font><br>")));
        QVERIFY(text.contains(QLatin1String("<font color=\"red\"> A.B missing</font><br>")));
        QVERIFY(text.contains(QLatin1String("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>bad element<br>")));
    }

    void installsItselfAsSink()
    {
        MessageSink *before = MessageSink::current();
        {
            QMainWindow window;
            Console console(&window, true);
            QCOMPARE(MessageSink::current(), static_cast<MessageSink *>(&console));
            consolePrint(QStringLiteral("through the shorthand"));
            QVERIFY(console.plainText().contains(QLatin1String("through the shorthand")));
        }
        QCOMPARE(MessageSink::current(), before);
    }

    void userClosedDockStaysClosed()
    {
        QMainWindow window;
        Console console(&window, true);
        window.addDockWidget(Qt::BottomDockWidgetArea, console.dock());
        window.show();
        console.dock()->hide();
        console.consolePrint(QStringLiteral("pops up"));
        QVERIFY(console.dock()->isVisible());
        console.dock()->toggleViewAction()->trigger();
        QVERIFY(!console.dock()->isVisible());
        console.consolePrint(QStringLiteral("stays hidden"));
        QVERIFY(!console.dock()->isVisible());
    }
};

QTEST_MAIN(TestConsole)
#include "tst_console.moc"
