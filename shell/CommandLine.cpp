#include "shell/CommandLine.h"

#include <QDir>
#include <QFileInfo>

#include <QPair>

StartOptions CommandLine::parse(const QStringList &arguments)
{
    StartOptions o;
    // -d and -i accumulate from their first use; an option given as an empty
    // text still counts as used.
    bool definesSeen = false;
    bool includesSeen = false;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString arg = arguments.at(i).trimmed();
        if (arg.size() < 2 || arg.at(0) != QLatin1Char('-')) {
            o.fileName = arg;
            continue;
        }
        const QString text = arg.mid(2);
        noteDetachedFile(arguments, i, &o.hints);
        switch (arg.at(1).toLatin1()) {
        case 'd':
            if (definesSeen)
                o.defines += QLatin1Char(';') + text;
            else
                o.defines = text;
            definesSeen = true;
            break;
        case 'i':
            if (includesSeen)
                o.includePaths += QLatin1Char(';') + text;
            else
                o.includePaths = text;
            includesSeen = true;
            break;
        case 'c': o.consoleLogFile = text; break;
        case 'o': o.outputLogFile = text; break;
        case 'b': o.batchFile = text; break;
        case 's':
            o.save = true;
            o.saveFile = text;
            break;
        case 'g': o.generate = true; break;
        case 'k': o.keil = true; break;
        case 'q': o.quiet = true; break;
        case 'x': o.exitAfterKeil = true; break;
        case '?': o.usageRequested = true; break;
        default: break;
        }
    }
    return o;
}

void CommandLine::noteDetachedFile(const QStringList &arguments, int index, QStringList *hints)
{
    // "-b run.script" is a common slip: the option gets an empty text and the
    // script becomes the document. The parse stays as it is; the user hears
    // why nothing ran.
    const QString arg = arguments.at(index).trimmed();
    if (arg.size() != 2 || !QStringLiteral("bco").contains(arg.at(1)) || index + 1 >= arguments.size())
        return;
    const QString next = arguments.at(index + 1).trimmed();
    if (next.isEmpty() || next.startsWith(QLatin1Char('-')))
        return;
    hints->append(QStringLiteral("Quillon: option %1 is empty: its file follows the letter without a blank (%1%2); "
                                 "\"%2\" is taken as the file to open.")
                      .arg(arg, next));
}

QString CommandLine::usageText()
{
    const char *lines[][2] = {
        {"-g", "\tGenerate header files (non-interactive)"},
        {"-q", "\tQuiet mode"},
        {"-c<Outfile>", "\tSet console logging file"},
        {"-d<Define>=<Value>;...", "\tSet GUI element to value"},
        {"-iIncludePath;...", "\tSet include paths"},
        {"-s[<qlnpFile>]", "\tSave configuration file, with correct Hash, and generate header files"},
        {"-b<Batchfile>", "\tRun batchfile"},
        {"-o<Outfile>", "\tSet output logging file"},
        {"-k", "\tEnable Keil uVision integration"},
        {"-x", "\tTerminate program after Keil integration"},
        {"-?", "\tHelp"},
    };
    QString text = QStringLiteral("Quillon <Filename.xml | Filename.qlnp> [options]\nOptions:\n");
    for (const auto &line : lines)
        text += QStringLiteral("  ") + QLatin1String(line[0]) + QLatin1String(line[1]) + QLatin1Char('\n');
    return text;
}

QList<QPair<QString, QString>> CommandLine::defineItems(const QString &defines)
{
    QList<QPair<QString, QString>> items;
    const QStringList parts = defines.split(QLatin1Char(';'));
    for (const QString &part : parts) {
        const int eq = part.indexOf(QLatin1Char('='));
        if (eq < 0)
            continue;
        items.append(qMakePair(part.left(eq).trimmed(), part.mid(eq + 1).trimmed()));
    }
    return items;
}

void CommandLine::resolveNames(StartOptions &options, const QDir &startDir, const QDir &programDir)
{
    auto input = [&](QString &name) {
        if (name.isEmpty() || !QFileInfo(name).isRelative())
            return;
        if (QFileInfo::exists(programDir.filePath(name)))
            name = programDir.absoluteFilePath(name);
        else if (QFileInfo::exists(startDir.filePath(name)))
            name = startDir.absoluteFilePath(name);
    };
    auto output = [&startDir](QString &name) {
        if (!name.isEmpty() && QFileInfo(name).isRelative())
            name = startDir.absoluteFilePath(name);
    };
    input(options.fileName);
    input(options.batchFile);
    output(options.consoleLogFile);
    output(options.outputLogFile);
    output(options.saveFile);
}
