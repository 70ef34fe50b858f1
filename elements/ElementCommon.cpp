#include "elements/ElementCommon.h"

#include "elements/ActionRunner.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/QInputEventRecorder.h"

#include <QStringList>
#include <QVariant>
#include <QWidget>

void ElementCommon::finishConnect(ActiveElement *element)
{
    DocumentTables *tables = DocumentTables::current();
    if (tables && tables->mathDependents.contains(element->define()))
        element->updateMathLabels();
    element->updateToolTip();
    if (!element->property("confirmation").toString().isEmpty())
        QInputEventRecorder::install(element->widget());
}

void ElementCommon::runChangedActions(QWidget *widget)
{
    if (!widget->isEnabled())
        return;
    ActionRunner::run(widget, QStringLiteral("0"), QStringLiteral("changed"));
    ActionRunner::emitEach(widget, "changed_setDef", widget->property("default_setdef").toStringList());
}

void ElementCommon::afterChange(ActiveElement *element)
{
    if (DocumentTables *tables = DocumentTables::current())
        tables->markHeaderChanged(element);
    element->updateToolTip();
    element->updateMathLabels();
}

QString ElementCommon::shiftedValue(const QObject *element, quint32 value)
{
    const QVariant lsbProperty = element->property("lsb");
    const int lsb = lsbProperty.isValid() ? lsbProperty.toInt() : -1;
    if (lsb > 0 && lsb < 32)
        value <<= lsb;
    else if (lsb >= 32)
        value = 0;
    return QString::number(value);
}
