#pragma once
#include <QList>
#include <QString>

#include "tooling/ElementKind.h"

class Container;
class DataClass;
class Document;
class QWidget;

// Makes elements in a live form the way a description makes them: each is
// read from a small description fragment by the document's own reader, into
// a container at a position. So a new element is built, registered in the
// document's tables, bound to its register bits and wired to the window's
// slots exactly like one read from a file, and it acts, saves and exports
// like one.
class ElementFactory
{
public:
    explicit ElementFactory(Document &document);

    // The first free name of the form base + "_" + n, n counting up from 0;
    // the search stops at 9999, whose name then stands.
    static QString freeDefine(const Document &document, const QString &base);
    // Whether a name is taken by anything of the form (element, value,
    // container, display).
    static bool isTaken(const Document &document, const QString &name);

    // A new element of the kind with its default define, at index in the
    // container (-1: at the end). Returns the widget that represents it in
    // the form (for a radio group, the group's anchor).
    QWidget *add(Container *target, int index, ElementKind::Kind kind);

    // Reads a fragment of description elements into the container from the
    // index on, registers and starts what it made. Returns the widgets put
    // into the container, in order; for a radio group its anchor comes
    // first. Names of new containers that clash with existing ones are
    // changed to free ones.
    QList<QWidget *> read(Container *target, int index, const QString &fragment);

    // A hidden value of that name, registered and started; null when the
    // name is empty or taken.
    DataClass *addVar(const QString &name);

    // The fragment that makes a new element of the kind with that define.
    static QString fragmentFor(ElementKind::Kind kind, const QString &define);

    // Renames a container and keeps its table entry in step.
    void renameContainer(Container *container, const QString &name);

    // The text the fragment's reader produced as an error; empty when the
    // last read went through.
    QString errorText() const { return m_errorText; }

private:
    Document &m_document;
    QString m_errorText;
};
