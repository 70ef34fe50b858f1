#include "shell/Dialogs.h"

#include "elements/MessageSink.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QPushButton>

namespace {
bool g_quiet = false;

// The name of the answer a quiet run takes, as the box would show it.
QString buttonText(QMessageBox::StandardButton button)
{
    switch (button) {
    case QMessageBox::Yes: return QStringLiteral("Yes");
    case QMessageBox::No: return QStringLiteral("No");
    case QMessageBox::Ok: return QStringLiteral("OK");
    case QMessageBox::Cancel: return QStringLiteral("Cancel");
    case QMessageBox::Save: return QStringLiteral("Save");
    case QMessageBox::Discard: return QStringLiteral("Discard");
    case QMessageBox::Abort: return QStringLiteral("Abort");
    case QMessageBox::Retry: return QStringLiteral("Retry");
    case QMessageBox::Ignore: return QStringLiteral("Ignore");
    case QMessageBox::NoButton: return QStringLiteral("none");
    default: return QString::number(int(button), 16);
    }
}

void reportAnswered(const QString &title, const QString &answer)
{
    consolePrint(QStringLiteral("<font color=\"orange\"><b>Quiet mode: </b></font>question \"%1\" takes its default answer: %2.<br>")
                     .arg(title.toHtmlEscaped(), answer.toHtmlEscaped()));
}
} // namespace

void Dialogs::setQuiet(bool quiet)
{
    g_quiet = quiet;
}

bool Dialogs::quiet()
{
    return g_quiet;
}

void Dialogs::reportSkipped(const QString &kind, const QString &title)
{
    consolePrint(QStringLiteral("<font color=\"orange\"><b>Quiet mode: </b></font>%1 \"%2\" counts as cancelled.<br>")
                     .arg(kind, title.toHtmlEscaped()));
}

QString Dialogs::openFileName(QWidget *parent, const QString &title, const QString &dir, const QString &filter)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("file dialog"), title);
        return QString();
    }
    return QFileDialog::getOpenFileName(parent, title, dir, filter);
}

QStringList Dialogs::openFileNames(QWidget *parent, const QString &title, const QString &dir, const QString &filter)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("file dialog"), title);
        return QStringList();
    }
    return QFileDialog::getOpenFileNames(parent, title, dir, filter);
}

QString Dialogs::saveFileName(QWidget *parent, const QString &title, const QString &dir, const QString &filter)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("file dialog"), title);
        return QString();
    }
    return QFileDialog::getSaveFileName(parent, title, dir, filter);
}

QString Dialogs::existingDirectory(QWidget *parent, const QString &title, const QString &dir)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("folder dialog"), title);
        return QString();
    }
    return QFileDialog::getExistingDirectory(parent, title, dir);
}

QMessageBox::StandardButton Dialogs::question(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                              const QString &text, QMessageBox::StandardButtons buttons,
                                              QMessageBox::StandardButton defaultButton)
{
    if (g_quiet) {
        reportAnswered(title, buttonText(defaultButton));
        return defaultButton;
    }
    QMessageBox box(icon, title, text, buttons, parent);
    box.setDefaultButton(defaultButton);
    return QMessageBox::StandardButton(box.exec());
}

QString Dialogs::item(QWidget *parent, const QString &title, const QString &label, const QStringList &items,
                      bool *ok)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("selection"), title);
        if (ok)
            *ok = false;
        return QString();
    }
    return QInputDialog::getItem(parent, title, label, items, 0, false, ok);
}

bool Dialogs::choose(QWidget *parent, const QString &title, const QString &text, const QString &first,
                     const QString &second)
{
    if (g_quiet) {
        reportAnswered(title, first);
        return true;
    }
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    QPushButton *firstButton = box.addButton(first, QMessageBox::YesRole);
    box.addButton(second, QMessageBox::NoRole);
    box.setDefaultButton(firstButton);
    box.exec();
    return box.clickedButton() == firstButton;
}

void Dialogs::message(QWidget *parent, QMessageBox::Icon icon, const QString &title, const QString &text)
{
    if (g_quiet) {
        QString html = text;
        html.replace(QLatin1Char('\n'), QLatin1String("<br>"));
        consolePrint(html + QStringLiteral("<br>"));
        return;
    }
    QMessageBox box(icon, title, text, QMessageBox::Ok, parent);
    box.exec();
}

QString Dialogs::text(QWidget *parent, const QString &title, const QString &label)
{
    if (g_quiet) {
        reportSkipped(QStringLiteral("text dialog"), title);
        return QString();
    }
    return QInputDialog::getText(parent, title, label);
}
