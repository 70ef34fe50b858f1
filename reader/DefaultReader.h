#pragma once

class ActiveElement;
class DescriptionReader;
class QWidget;
class QXmlStreamAttributes;

// The part of an element's attributes that binds it to the document: its
// header, its SVD binding, its default (the define is claimed here), the
// set-defs of `setDef`/`setDefInv` and the confirmation text. Value
// elements run it just before the common attributes.
class DefaultReader
{
public:
    // element may be null for widgets that hold no value (a push button):
    // they take the set-defs and the confirmation only.
    static void read(DescriptionReader &reader, QWidget *widget, ActiveElement *element,
                     const QXmlStreamAttributes &attributes);
};
