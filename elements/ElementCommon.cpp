#include "elements/ElementCommon.h"

#include "elements/ActionRunner.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/QInputEventRecorder.h"
#include "model/LockEngine.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QMetaObject>
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

void ElementCommon::runFlagActions(QWidget *widget, bool checked)
{
    if (!widget->isEnabled())
        return;
    if (checked) {
        ActionRunner::run(widget, QStringLiteral("0"), QStringLiteral("checked"));
        ActionRunner::emitEach(widget, "checked_setDef", widget->property("default_setdef").toStringList());
    } else {
        ActionRunner::run(widget, QStringLiteral("0"), QStringLiteral("unchecked"));
        ActionRunner::emitEach(widget, "unchecked_setDef", widget->property("default_setdefinv").toStringList());
    }
}

void ElementCommon::emitFlagLocks(QWidget *widget, bool checked)
{
    if (!widget->isEnabled())
        return;
    const QStringList list = widget->property("locks").toMap().value(QStringLiteral("0")).toStringList();
    const bool inForce = int(checked) != int(widget->property("lockinverted").toUInt());
    for (const QString &text : list)
        QMetaObject::invokeMethod(widget, inForce ? "sendLock" : "sendUnlock", Q_ARG(QString, text));
}

void ElementCommon::releaseLocks(ActiveElement *element)
{
    auto *source = dynamic_cast<QObject *>(element);
    if (!source)
        return;
    // Copies: every unlock takes its record out of these lists.
    const LockRecords held = element->locking + element->waitingToLock;
    for (const LockRecord &record : held) {
        QMetaObject::invokeMethod(source, "sendUnlock",
                                  Q_ARG(QString, LockEngine::lockString(record.peer, record.value, record.kind)));
    }
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

void ElementCommon::standAlone(QAbstractButton *button)
{
    auto *group = new QButtonGroup(button);
    group->setExclusive(false);
    group->addButton(button);
}
