#pragma once
#include <QHash>
#include <QList>
#include <list>

class ActiveElement;

// The elements in creation order, where a change moves an element to the
// end: the save order of a configuration is the order of last change. The
// move is constant time, so a long script of SET lines stays linear.
class ElementList
{
public:
    using const_iterator = std::list<ActiveElement *>::const_iterator;

    void append(ActiveElement *element);
    void moveToEnd(ActiveElement *element);
    void remove(ActiveElement *element);
    void clear();

    bool contains(ActiveElement *element) const { return m_positions.contains(element); }
    int size() const { return int(m_order.size()); }
    bool isEmpty() const { return m_order.empty(); }
    const_iterator begin() const { return m_order.begin(); }
    const_iterator end() const { return m_order.end(); }
    QList<ActiveElement *> toList() const;

private:
    std::list<ActiveElement *> m_order;
    QHash<ActiveElement *, std::list<ActiveElement *>::iterator> m_positions;
};
