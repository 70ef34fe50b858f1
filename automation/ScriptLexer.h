#pragma once
#include <QString>
#include <QStringList>

// One line of a .script file taken apart: "Keyword(p0, p1, ...)  // comment".
// Comments are kept (the interpreter shows them), commas can't be escaped,
// and the closing parenthesis is optional.
struct ScriptLine
{
    QString keyword;
    // The text between the first "(" and the last ")", as written.
    QString parameterText;
    // Comma sections of parameterText; blanks kept.
    QStringList parameters;
    // The text of a "//" comment, without the slashes' predecessor text;
    // empty when there is none.
    QString comment;
    bool hasComment = false;
    // True when nothing is left to run (shorter than two characters).
    bool isShort = false;

    QString parameter(int index) const { return parameters.value(index); }
};

class ScriptLexer
{
public:
    static ScriptLine lex(const QString &line);
};
