#pragma once
#include <QString>
#include <QStringList>

#include "shell/StartOptions.h"

// The one-letter options of the program. Options carry their text directly
// behind the letter ("-cconsole.log"); unknown letters are ignored.
class CommandLine
{
public:
    // Parses all arguments but the first (the program). The usage callback
    // runs where -? stands, so parsing goes on afterwards.
    static StartOptions parse(const QStringList &arguments);

    // The usage text shown by -?.
    static QString usageText();

    // Splits "a=1;b=2" into name/value pairs, trimmed; items without "=" are
    // skipped.
    static QList<QPair<QString, QString>> defineItems(const QString &defines);

private:
    // Adds a hint when a file option stands alone and a file name follows.
    static void noteDetachedFile(const QStringList &arguments, int index, QStringList *hints);
};
