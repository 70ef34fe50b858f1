#include "views/GaugeFeed.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Selectors.h"
#include "views/MyQwtPlot.h"

#include <qwt_dial.h>
#include <qwt_thermo.h>

#include <QPointer>

#include <cmath>

namespace {

// A copy: a replot may run event processing that changes the tables.
QList<QPointer<QObject>> dependents(const QHash<QString, QList<QObject *>> &table, const QString &define)
{
    QList<QPointer<QObject>> result;
    for (QObject *object : table.value(define))
        result.append(object);
    return result;
}

} // namespace

bool GaugeFeed::valueOf(QObject *sender, double *value)
{
    if (auto *data = qobject_cast<DataClass *>(sender)) {
        *value = double(data->getValue());
        return true;
    }
    if (auto *element = dynamic_cast<ActiveElement *>(sender)) {
        bool ok = false;
        const double v = NumberFormat::normaliseNumber(element->value(Selectors::Value).trimmed()).toDouble(&ok);
        if (!ok || !std::isfinite(v))
            return false;
        *value = v;
        return true;
    }
    return false;
}

int GaugeFeed::curves(DocumentTables *tables, QObject *sender)
{
    double value = 0;
    if (!tables || !sender || !tables->curveDependents.contains(sender->objectName()) || !valueOf(sender, &value))
        return 0;
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables->curveDependents, sender->objectName())) {
        if (auto *plot = qobject_cast<MyQwtPlot *>(object.data()))
            count += plot->feed(sender->objectName(), value);
    }
    return count;
}

int GaugeFeed::dials(DocumentTables *tables, QObject *sender)
{
    double value = 0;
    if (!tables || !sender || !tables->dialDependents.contains(sender->objectName()) || !valueOf(sender, &value))
        return 0;
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables->dialDependents, sender->objectName())) {
        if (auto *dial = qobject_cast<QwtDial *>(object.data())) {
            dial->setValue(double(std::llround(value)));
            ++count;
        }
    }
    return count;
}

int GaugeFeed::thermos(DocumentTables *tables, QObject *sender)
{
    double value = 0;
    if (!tables || !sender || !tables->thermoDependents.contains(sender->objectName()) || !valueOf(sender, &value))
        return 0;
    int count = 0;
    for (const QPointer<QObject> &object : dependents(tables->thermoDependents, sender->objectName())) {
        if (auto *thermo = qobject_cast<QwtThermo *>(object.data())) {
            thermo->setValue(double(std::llround(value)));
            ++count;
        }
    }
    return count;
}
