#include "tooling/ElementRemover.h"

#include "elements/ActiveElement.h"
#include "elements/ButtonGroup.h"
#include "elements/Container.h"
#include "elements/DataClass.h"
#include "model/BitField.h"
#include "model/HardwareModel.h"
#include "model/LockEngine.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "shell/Document.h"
#include "tooling/FormTree.h"

#include <QAbstractButton>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace {

template <class Map>
void dropValues(Map &map, const QSet<QObject *> &objects)
{
    for (auto it = map.begin(); it != map.end();) {
        if (objects.contains(dynamic_cast<QObject *>(it.value())))
            it = map.erase(it);
        else
            ++it;
    }
}

void dropDependents(QHash<QString, QList<QObject *>> &table, const QSet<QObject *> &objects)
{
    for (auto it = table.begin(); it != table.end();) {
        QList<QObject *> &list = it.value();
        for (int i = list.size() - 1; i >= 0; --i) {
            if (objects.contains(list.at(i)))
                list.removeAt(i);
        }
        if (list.isEmpty())
            it = table.erase(it);
        else
            ++it;
    }
}

void dropClaims(QMap<quint64, ActiveElement *> &claims, const QSet<ActiveElement *> &elements)
{
    for (auto it = claims.begin(); it != claims.end();) {
        if (elements.contains(it.value()))
            it = claims.erase(it);
        else
            ++it;
    }
}

} // namespace

ElementRemover::ElementRemover(Document &document)
    : m_document(document)
{
}

ElementRemover::~ElementRemover()
{
    for (QWidget *widget : qAsConst(m_detached))
        delete widget;
}

bool ElementRemover::removeWidget(QWidget *widget)
{
    m_errorText.clear();
    if (!widget)
        return false;
    if (widget == m_document.root()) {
        m_errorText = QObject::tr("The root container of the form can't be removed.");
        return false;
    }
    Container *container = FormTree::containerOf(widget);
    if (!container || !m_document.root() || !m_document.root()->isAncestorOf(widget)) {
        m_errorText = QObject::tr("%1 is not part of the form.").arg(widget->objectName());
        return false;
    }

    // A radio group goes as a whole: its buttons, then its anchor.
    QList<QWidget *> widgets;
    if (auto *group = widget->findChild<ButtonGroup *>(QString(), Qt::FindDirectChildrenOnly)) {
        for (QAbstractButton *button : group->buttons())
            widgets << button;
    }
    widgets << widget;

    QSet<QObject *> objects;
    for (QWidget *w : qAsConst(widgets)) {
        objects.insert(w);
        for (QObject *child : w->findChildren<QObject *>())
            objects.insert(child);
    }
    forget(objects);

    for (QWidget *w : qAsConst(widgets)) {
        Container *owner = FormTree::containerOf(w);
        if (owner)
            owner->releaseChild(w);
        w->hide();
        // A button leaving its group alone: the group still knows it by its
        // value, so it stays alive, hidden, for as long as the group does.
        auto *button = qobject_cast<QAbstractButton *>(w);
        auto *group = button ? dynamic_cast<ButtonGroup *>(button->group()) : nullptr;
        if (group && !objects.contains(group)) {
            group->removeButton(button);
            w->setParent(group->widget());
            continue;
        }
        w->setParent(nullptr);
        m_detached << w;
    }
    // What the removed elements locked is free again, and what locked them
    // no longer waits: every remaining source states its locks anew.
    m_document.reapplyLocks();
    return true;
}

bool ElementRemover::removeValue(QObject *object)
{
    m_errorText.clear();
    auto *data = qobject_cast<DataClass *>(object);
    DocumentTables &tables = m_document.tables();
    if (!data || tables.dataValue(data->objectName()) != data)
        return false;
    if (FormTree::isBuiltInName(data->objectName())) {
        m_errorText = QObject::tr("%1 is a built-in value and can't be removed.").arg(data->objectName());
        return false;
    }
    forget({data});
    tables.dataValues.remove(data->objectName());
    delete data;
    return true;
}

void ElementRemover::forget(const QSet<QObject *> &objects)
{
    DocumentTables &tables = m_document.tables();
    QSet<ActiveElement *> elements;
    for (QObject *object : objects) {
        if (auto *element = dynamic_cast<ActiveElement *>(object))
            elements.insert(element);
    }
    // Element pointers in the hash by define and the list may be those of a
    // group, whose QObject is not the widget: compare as elements.
    for (auto it = tables.elements.begin(); it != tables.elements.end();) {
        if (elements.contains(it.value()))
            it = tables.elements.erase(it);
        else
            ++it;
    }
    for (ActiveElement *element : qAsConst(elements))
        tables.elementList.remove(element);

    for (auto it = tables.containers.begin(); it != tables.containers.end();) {
        if (objects.contains(it.value()->containerWidget()) || objects.contains(dynamic_cast<QObject *>(it.value())))
            it = tables.containers.erase(it);
        else
            ++it;
    }
    dropValues(tables.images, objects);
    dropValues(tables.leds, objects);
    dropValues(tables.dials, objects);
    dropValues(tables.thermos, objects);
    dropValues(tables.plots, objects);
    dropValues(tables.timers, objects);
    dropValues(tables.pushButtons, objects);
    dropDependents(tables.mathDependents, objects);
    dropDependents(tables.ledDependents, objects);
    dropDependents(tables.svgImageDependents, objects);
    dropDependents(tables.curveDependents, objects);
    dropDependents(tables.dialDependents, objects);
    dropDependents(tables.thermoDependents, objects);
    dropDependents(tables.logDependents, objects);

    // Claimed register bits point at their elements.
    if (!elements.isEmpty()) {
        for (Peripheral *peripheral : m_document.model().peripherals()) {
            for (Register *reg : qAsConst(peripheral->registers)) {
                dropClaims(reg->claims, elements);
                for (BitField *field : qAsConst(reg->fields))
                    dropClaims(field->claims, elements);
            }
        }
    }

    // Nothing removed keeps running or talking to the window.
    QObject *host = m_document.slotHost();
    for (QObject *object : objects) {
        m_document.locks().leaveOverflow(object);
        if (auto *timer = qobject_cast<QTimer *>(object))
            timer->stop();
        if (host)
            QObject::disconnect(object, nullptr, host, nullptr);
    }
}
