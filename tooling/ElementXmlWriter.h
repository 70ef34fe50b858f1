#pragma once
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include "reader/KeptElement.h"

class DocumentTables;
class QObject;
class QWidget;
class QXmlStreamWriter;

// Writes the elements of a form: each element the reader kept, with the
// state of its object now laid over the text as read, and each element the
// form editor added, from its object alone. An element the editor removed
// is left out; one it moved is written where it stands now.
class ElementXmlWriter
{
public:
    ElementXmlWriter(QXmlStreamWriter &xml, DocumentTables &tables);

    // Indexes the kept elements by their objects; call before writing.
    void index(const KeptElement &document);

    // A kept element with what it holds. context is the container widget
    // the element was read into (null for the form's root).
    void writeKept(const KeptElement &element, QWidget *context, bool root = false);
    // An element that has no kept text: from its object and properties.
    void writeLive(QObject *object);
    // The values without a widget that nothing kept (vars the editor added).
    void writeNewVars();

    // The attributes to write for a kept element: the object's own in the
    // writer's order, each as read unless the object changed it since, then
    // whatever else the element said.
    static KeptElement::Attributes merged(const KeptElement &element, QObject *object);
    // Copies an element's text (one element) to the writer.
    static void copy(QXmlStreamWriter &xml, const QString &text);

private:
    void writeAttributes(const KeptElement::Attributes &attributes);
    void writeKeptChildren(const KeptElement &element, QObject *object);
    void writeUnkept(QWidget *container);
    void writeLiveChildren(QObject *object, const QStringList &families);
    void writeActions(QObject *holder, const QString &key);
    void writeItems(QObject *combo);
    void writeCurves(QObject *plot, const QString &keptText);
    void writeColumns(QObject *table);
    static QWidget *containerWidgetOf(QObject *object);
    static void collectElements(QWidget *widget, QList<QWidget *> &elements);
    // The container's elements in the order the form shows them now.
    static QList<QWidget *> liveOrder(QWidget *container);

    QXmlStreamWriter &m_xml;
    DocumentTables &m_tables;
    QHash<QObject *, const KeptElement *> m_byObject;
    QSet<QObject *> m_written;
};
