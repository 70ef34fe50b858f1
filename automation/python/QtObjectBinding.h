#pragma once
// Python's view of a QObject, built from Qt's meta-object data alone: the
// object's public slots and Q_INVOKABLE methods are callable attributes, its
// properties (also dynamic ones) are attributes that read and write. Nothing
// is generated per class, so every element and the window are reached the
// same way.

#pragma push_macro("slots")
#undef slots
#include <pybind11/pybind11.h>
#pragma pop_macro("slots")

#include <QByteArray>
#include <QPointer>
#include <QVariant>

class QObject;

// A Python handle of a QObject. It holds a guarded pointer: an object that
// the program deleted (a closed form) gives a Python error, not a crash.
struct QtObjectHandle
{
    QPointer<QObject> object;
};

// A bound method: the object and a method name, resolved to an overload on
// each call by the number and kinds of the arguments.
struct QtMethodHandle
{
    QPointer<QObject> object;
    QByteArray name;
};

class QtObjectBinding
{
public:
    // Defines the Python types QtObject and QtMethod in the module.
    static void define(pybind11::module_ &module);

    static pybind11::object wrap(QObject *object);
    static pybind11::object toPython(const QVariant &value);
    // A Python value as a QVariant of its natural type; invalid for types
    // that have no Qt counterpart.
    static QVariant fromPython(pybind11::handle value);

    static pybind11::object getAttribute(const QtObjectHandle &self, const std::string &name);
    static void setAttribute(const QtObjectHandle &self, const std::string &name, pybind11::handle value);
    static pybind11::object call(const QtMethodHandle &self, pybind11::args args);
    static pybind11::list attributeNames(const QtObjectHandle &self);
};
