#pragma once
#include <QList>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>

#include "model/LockGraph.h"

class ActiveElement;
class DocumentTables;

// The test of a document's lock strings once it is read: each `lockon` text
// must have the form target=value, name an element, and ask for a value the
// target can take; and no chain of locks may lead back to where it began.
// Errors go to the console, and the document stays usable. The same pass
// builds the graph that LockDialog draws.
class LockCheck
{
public:
    explicit LockCheck(DocumentTables &tables);

    void run();

    const LockGraph &graph() const { return m_graph; }
    // The circles found, each as its path ("A --> B --> A").
    const QStringList &circles() const { return m_circles; }

    // The lock strings of an element by key (the `locks` property), keys in
    // their numeric order.
    static QList<QPair<QString, QStringList>> lockEntries(const ActiveElement *element);

    // Items of a list element as (value, label) pairs; empty for other
    // elements.
    static QList<QPair<QString, QString>> listItems(const ActiveElement *element);

    // Whether the element's class is one that carries locks of its own.
    static bool isLockSource(const ActiveElement *element);

private:
    void checkString(ActiveElement *source, const QString &lock);
    bool fits(ActiveElement *source, ActiveElement *target, const QString &targetName, const QString &value,
              int kind);
    void walk(ActiveElement *start, const QString &lock, QStringList &path, int depth);
    QStringList keysFor(ActiveElement *target, const QString &value, int kind) const;
    void reportCircle(const QStringList &path, const QString &closing);

    DocumentTables &m_tables;
    LockGraph m_graph;
    QStringList m_circles;
    QSet<QString> m_circleKeys;
};
