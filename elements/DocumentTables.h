#pragma once
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <functional>

#include "device/TimerTask.h"
#include "elements/ElementList.h"

class ActiveElement;
class Container;
class DataClass;

// The lookup tables of an open document, by define. The main window owns one
// instance and empties it when a document closes. Elements are owned by
// their parent widgets and not by these tables; DataClass records are owned
// here.
class DocumentTables
{
public:
    DocumentTables();
    ~DocumentTables();

    // The tables of the open document (the main window's), or null.
    static DocumentTables *current();
    static void setCurrent(DocumentTables *tables);

    ActiveElement *element(const QString &name) const { return elements.value(name); }
    DataClass *dataValue(const QString &name) const { return dataValues.value(name); }
    Container *container(const QString &name) const { return containers.value(name); }

    // Registers an element under its define and at the end of the list.
    void addElement(const QString &define, ActiveElement *element);
    // Takes ownership of the record; replaces (and deletes) one of that name.
    DataClass *addDataValue(DataClass *data);

    // Empties every table and deletes the DataClass records.
    void clear();

    // Marks the element's header as changed and the document as modified,
    // unless a document is being loaded (then nothing a load sets counts as
    // a change).
    void markHeaderChanged(ActiveElement *element);

    // Up while a document or configuration is read: no change marks it.
    bool loading = false;
    // Told when the document becomes modified (the window's [*] mark).
    std::function<void()> onModified;

    QHash<QString, ActiveElement *> elements;
    ElementList elementList;
    QHash<QString, DataClass *> dataValues;

    // Displays that read a define, refreshed when the define changes. Each
    // table belongs to one of the main window's on_update... slots.
    QHash<QString, QList<QObject *>> mathDependents;
    QHash<QString, QList<QObject *>> ledDependents;
    QHash<QString, QList<QObject *>> svgImageDependents;
    QHash<QString, QList<QObject *>> curveDependents;
    QHash<QString, QList<QObject *>> dialDependents;
    QHash<QString, QList<QObject *>> thermoDependents;
    QHash<QString, QList<QObject *>> logDependents;

    QHash<QString, QObject *> images;
    QHash<QString, QObject *> leds;
    QHash<QString, QObject *> dials;
    QHash<QString, QObject *> thermos;
    QHash<QString, QObject *> plots;
    QHash<QString, QObject *> timers;
    QHash<QString, QObject *> pushButtons;
    QHash<QString, Container *> containers;

    // The polling tasks of the `communication` elements, in document order.
    QList<TimerTask> timerTasks;

    // Header name -> changed since the last export. A QMap, so exports walk
    // the headers in a fixed order.
    QMap<QString, bool> changedHeaders;
};
