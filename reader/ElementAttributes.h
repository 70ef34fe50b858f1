#pragma once
#include <QString>
#include <QVariantMap>

#include "reader/KeptElement.h"

class QObject;

// An element's attributes as its widget and the properties the reader kept
// on it tell them now: the inverse of the element readers, used by the form
// editor's writer. Each list is in the order the writer puts them.
class ElementAttributes
{
public:
    // The element name an object is written as ("combo", "tabcontainer",
    // ...); empty for objects that are no element of a form.
    static QString elementName(QObject *object);

    // The attributes of the object's own kind first (the define, range,
    // label, ...), then the common block. Empty values are left out.
    static KeptElement::Attributes current(QObject *object);

    // The common block only: sizepolicy, size, color, pos, font, default,
    // header, svd, label, readonly.
    static KeptElement::Attributes commonBlock(QObject *object);

    // What the element's child elements are made from: its actions, items,
    // locks, curves, columns.
    static QVariantMap childState(QObject *object);

    // Where an element keeps its properties: a radio group on itself, not
    // on the hidden widget that places it in the form.
    static QObject *propertyHolder(QObject *object);
};
