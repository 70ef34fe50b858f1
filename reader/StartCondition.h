#pragma once
#include <QString>

// The `startcond` attribute: "name==value" (alternatives separated by ";")
// or "name!=value", tested against the -d items of the command line.
class StartCondition
{
public:
    // defines: the -d text, "a=1;b=2". Without it no condition holds.
    static bool holds(const QString &condition, const QString &defines);
};
