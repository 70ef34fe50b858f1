#pragma once
#include <QString>

class DocumentTables;

// The setDef commands on plots and dials ("PLOT.maxX=500", "PLOT.reset=reset",
// "GAUGE.max=300"). A dial bound that would leave the dial's value outside
// is not set; it enters the conflict list instead.
class GaugeCommands
{
public:
    enum Result { NotMine, Done, Invalid };
    // owner: the name before the last dot; suffix: the word after it;
    // text: the right side, already resolved to a value or normalised.
    static Result run(DocumentTables &tables, const QString &owner, const QString &suffix, const QString &text);
};
