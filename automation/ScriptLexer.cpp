#include "automation/ScriptLexer.h"

ScriptLine ScriptLexer::lex(const QString &rawLine)
{
    ScriptLine result;
    QString line = rawLine.trimmed();

    // A message box keeps "//" inside its text; every other line has its
    // comment shown and cut off.
    if (!line.startsWith(QLatin1String("MessageBox"))) {
        const int at = line.indexOf(QLatin1String("//"));
        if (at >= 0) {
            result.hasComment = true;
            result.comment = line.mid(at);
            line = (line.left(at) + line.mid(at + qMin(999, line.size() - at))).trimmed();
        }
    }
    if (line.size() < 2) {
        result.isShort = true;
        return result;
    }

    const int open = line.indexOf(QLatin1Char('('));
    if (open < 0) {
        result.keyword = line;
        return result;
    }
    result.keyword = line.left(open);
    QString rest = line.mid(open + 1);
    const int close = rest.lastIndexOf(QLatin1Char(')'));
    if (close >= 0)
        rest.remove(close, 1);
    result.parameterText = rest;
    result.parameters = rest.split(QLatin1Char(','));
    return result;
}
