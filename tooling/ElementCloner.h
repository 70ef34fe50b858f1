#pragma once
#include <QString>

class Container;
class Document;
class ElementFactory;
class QObject;
class QWidget;
class QXmlStreamWriter;

// Copies a part of the live form into a container: each element is made
// anew by the factory from a fragment that states its kind, its class's
// settings (items, ranges, curves, columns...) and its common attributes,
// then it takes over the source's dynamic properties and actions, so the
// copy acts, saves and exports like the source. Containers are copied with
// everything inside them. A copy is named after its source with "_Copy"
// behind it (numbered when that name is taken), so it never collides.
class ElementCloner
{
public:
    ElementCloner(Document &document, ElementFactory &factory);

    // The copy of source put in at index (-1: the end); for a radio group
    // (its anchor or one of its buttons) the group's copy's anchor. Null when
    // the source is of no kind the editor knows.
    QWidget *clone(QWidget *source, Container *target, int index);

    // source + "_Copy", or the first free numbered form of it.
    QString copyName(const QString &source) const;

    // Connects the actions an element's `data` property lists to the
    // window's slots (what the reader does for each `action`).
    static void wireActions(QObject *element, QObject *host);

private:
    QWidget *cloneContainer(QWidget *source, Container *target, int index);
    QString fragmentOf(QWidget *source, const QString &define);
    void writeCommon(QXmlStreamWriter &xml, const QObject *source);
    void copyProperties(const QObject *from, QObject *to);

    Document &m_document;
    ElementFactory &m_factory;
};
