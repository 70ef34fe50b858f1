#pragma once
#include <QMessageBox>
#include <QString>
#include <QStringList>

class QWidget;

// Every modal dialog of the program goes through here. In quiet mode none of
// them may block an unattended run: a question takes its default (or cancel)
// answer and a file dialog counts as cancelled, with a console line saying
// so.
class Dialogs
{
public:
    static void setQuiet(bool quiet);
    static bool quiet();

    static QString openFileName(QWidget *parent, const QString &title, const QString &dir, const QString &filter);
    static QStringList openFileNames(QWidget *parent, const QString &title, const QString &dir, const QString &filter);
    static QString saveFileName(QWidget *parent, const QString &title, const QString &dir, const QString &filter);
    static QString existingDirectory(QWidget *parent, const QString &title, const QString &dir);

    // A question; in quiet mode the default button is the answer.
    static QMessageBox::StandardButton question(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                                const QString &text, QMessageBox::StandardButtons buttons,
                                                QMessageBox::StandardButton defaultButton);
    // A list choice; in quiet mode it counts as cancelled (ok false).
    static QString item(QWidget *parent, const QString &title, const QString &label, const QStringList &items,
                        bool *ok);
    // A line of text; in quiet mode it counts as cancelled (empty).
    static QString text(QWidget *parent, const QString &title, const QString &label);

    // Two answers with texts of their own; true for the first, which quiet
    // mode takes.
    static bool choose(QWidget *parent, const QString &title, const QString &text, const QString &first,
                       const QString &second);
    // A message box; in quiet mode its text goes to the console instead.
    static void message(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text);

private:
    static void reportSkipped(const QString &kind, const QString &title);
};
