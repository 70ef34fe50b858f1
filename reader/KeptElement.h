#pragma once
#include <QList>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QVariantMap>
#include <QVector>
#include <memory>

// One element of a description as the reader consumed it, kept so that the
// form editor can write the document back with everything the widgets
// cannot tell: includes and header groups come out folded in, elements
// skipped by their start condition are not kept at all.
//
// An element whose reader read further elements through the dispatcher (a
// container, a radio group, a branch switch) keeps those as children; any
// other keeps its own text whole (items, actions, curves, columns, ...).
struct KeptElement
{
    using Attributes = QVector<QPair<QString, QString>>;

    QString name;
    Attributes attributes;
    // The element's text as read, for elements without kept children.
    QString text;
    QList<std::shared_ptr<KeptElement>> children;

    // The object the element became, if any; null once the form editor
    // removed it (then the element is no longer written).
    QPointer<QObject> target;
    bool hadTarget = false;

    // What the object said right after it was read: the writer compares
    // the object's state now against it, so an edit in the form editor wins
    // over the text as read and an untouched element keeps its text.
    Attributes readAttributes;
    QVariantMap readChildState;
};
