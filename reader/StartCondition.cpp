#include "reader/StartCondition.h"

#include "shell/CommandLine.h"

#include <QStringList>

bool StartCondition::holds(const QString &condition, const QString &defines)
{
    if (defines.isEmpty())
        return false;

    QString op;
    int at = condition.indexOf(QLatin1String("=="));
    if (at >= 0) {
        op = QStringLiteral("==");
    } else {
        at = condition.indexOf(QLatin1String("!="));
        if (at < 0)
            return false;
        op = QStringLiteral("!=");
    }
    const QString name = condition.left(at).trimmed();
    QString valueSide = condition.mid(at + 2);
    valueSide.remove(QLatin1Char('"'));
    valueSide = valueSide.trimmed();

    QStringList alternatives;
    for (const QString &alt : valueSide.split(QLatin1Char(';')))
        alternatives.append(alt.trimmed());

    const auto items = CommandLine::defineItems(defines);
    for (const auto &item : items) {
        if (item.first != name)
            continue;
        // "!=" holds as soon as the name is given; its value is deliberately
        // not compared.
        if (op == QLatin1String("!="))
            return true;
        if (alternatives.contains(item.second))
            return true;
    }
    return false;
}
