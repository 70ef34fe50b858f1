#include "elements/ElementList.h"

void ElementList::append(ActiveElement *element)
{
    if (!element || m_positions.contains(element))
        return;
    m_order.push_back(element);
    m_positions.insert(element, std::prev(m_order.end()));
}

void ElementList::moveToEnd(ActiveElement *element)
{
    auto it = m_positions.find(element);
    if (it == m_positions.end())
        return;
    m_order.splice(m_order.end(), m_order, it.value());
}

void ElementList::remove(ActiveElement *element)
{
    auto it = m_positions.find(element);
    if (it == m_positions.end())
        return;
    m_order.erase(it.value());
    m_positions.erase(it);
}

void ElementList::clear()
{
    m_order.clear();
    m_positions.clear();
}

QList<ActiveElement *> ElementList::toList() const
{
    QList<ActiveElement *> list;
    list.reserve(size());
    for (ActiveElement *e : m_order)
        list.append(e);
    return list;
}
