#pragma once
#include <QString>
#include <QStringList>

class QDir;

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

    // Makes the relative file names absolute once the program has moved to
    // its own folder. An input name (document, -b) that names a file in the
    // program's folder means that file; one that does not is taken from the
    // folder the program was started in, where a Linux user expects it.
    // Output names (-c, -o, -s) always belong to the starting folder: an
    // installed program's folder is not writable.
    static void resolveNames(StartOptions &options, const QDir &startDir, const QDir &programDir);

private:
    // Adds a hint when a file option stands alone and a file name follows.
    static void noteDetachedFile(const QStringList &arguments, int index, QStringList *hints);
};
