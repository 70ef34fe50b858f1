#include "elements/DocumentTables.h"

#include "elements/ActiveElement.h"
#include "elements/DataClass.h"

namespace {
DocumentTables *g_current = nullptr;
}

DocumentTables::DocumentTables() = default;

DocumentTables::~DocumentTables()
{
    clear();
    if (g_current == this)
        g_current = nullptr;
}

DocumentTables *DocumentTables::current()
{
    return g_current;
}

void DocumentTables::setCurrent(DocumentTables *tables)
{
    g_current = tables;
}

void DocumentTables::addElement(const QString &define, ActiveElement *element)
{
    elements.insert(define, element);
    elementList.append(element);
}

DataClass *DocumentTables::addDataValue(DataClass *data)
{
    const QString name = data->objectName();
    if (DataClass *former = dataValues.value(name)) {
        if (former != data)
            delete former;
    }
    dataValues.insert(name, data);
    return data;
}

void DocumentTables::clear()
{
    elements.clear();
    elementList.clear();
    qDeleteAll(dataValues);
    dataValues.clear();
    mathDependents.clear();
    ledDependents.clear();
    svgImageDependents.clear();
    curveDependents.clear();
    dialDependents.clear();
    thermoDependents.clear();
    logDependents.clear();
    images.clear();
    leds.clear();
    dials.clear();
    thermos.clear();
    plots.clear();
    timers.clear();
    pushButtons.clear();
    containers.clear();
    timerTasks.clear();
    changedHeaders.clear();
}

void DocumentTables::markHeaderChanged(ActiveElement *element)
{
    if (loading || !element)
        return;
    const QString header = element->property("header").toString();
    if (!header.isEmpty())
        changedHeaders.insert(header, true);
    if (onModified)
        onModified();
}
