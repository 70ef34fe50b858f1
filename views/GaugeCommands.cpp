#include "views/GaugeCommands.h"

#include "elements/DocumentTables.h"
#include "model/LockEngine.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>

#include <cmath>

namespace {

GaugeCommands::Result dialBound(QwtDial *dial, const QString &owner, const QString &suffix, const QString &text)
{
    bool ok = false;
    const double bound = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(bound))
        return GaugeCommands::Invalid;
    const bool isMin = suffix == QLatin1String("min");
    const double value = dial->value();
    if ((isMin && bound > value) || (!isMin && bound < value)) {
        if (LockEngine *engine = LockEngine::current())
            engine->addConflict(owner, owner + QLatin1Char('.') + suffix);
        return GaugeCommands::Done;
    }
    if (isMin)
        dial->setLowerBound(bound);
    else
        dial->setUpperBound(bound);
    return GaugeCommands::Done;
}

} // namespace

GaugeCommands::Result GaugeCommands::run(DocumentTables &tables, const QString &owner, const QString &suffix,
                                         const QString &text)
{
    if (auto *plot = qobject_cast<MyQwtPlot *>(tables.plots.value(owner))) {
        static const QStringList words = {QStringLiteral("reset"), QStringLiteral("minY"), QStringLiteral("maxY"),
                                          QStringLiteral("minX"), QStringLiteral("maxX"),
                                          QStringLiteral("curveMask"), QStringLiteral("visible")};
        if (!words.contains(suffix))
            return NotMine;
        return plot->command(suffix, text) ? Done : Invalid;
    }
    if (auto *dial = qobject_cast<QwtDial *>(tables.dials.value(owner))) {
        if (suffix == QLatin1String("min") || suffix == QLatin1String("max"))
            return dialBound(dial, owner, suffix, text);
    }
    return NotMine;
}
