#include "QtObjectBinding.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>
#include <QVector>

namespace py = pybind11;

namespace {

QObject *alive(const QPointer<QObject> &object)
{
    if (!object)
    {
        PyErr_SetString(PyExc_ReferenceError, "the Qt object behind this name has been deleted (was its form closed?)");
        throw py::error_already_set();
    }
    return object.data();
}

bool callable(const QMetaMethod &m)
{
    return m.access() == QMetaMethod::Public
        && (m.methodType() == QMetaMethod::Slot || m.methodType() == QMetaMethod::Method);
}

QString signatures(const QMetaObject *mo, const QByteArray &name)
{
    QStringList list;
    for (int i = 0; i < mo->methodCount(); ++i) {
        const QMetaMethod m = mo->method(i);
        if (callable(m) && m.name() == name)
            list << QString::fromLatin1(m.methodSignature());
    }
    list.removeDuplicates();
    return list.join(QStringLiteral(", "));
}

// Converts an argument to the parameter's type. Returns a cost (0 exact,
// 1 converted) or -1 when the argument does not fit.
int convertArgument(py::handle arg, int type, QVariant *out)
{
    if (type == QMetaType::QVariant) {
        *out = QtObjectBinding::fromPython(arg);
        return 0;
    }
    if (QMetaType::typeFlags(type) & QMetaType::PointerToQObject) {
        if (arg.is_none()) {
            *out = QVariant(type, nullptr);
            return 0;
        }
        if (!py::isinstance<QtObjectHandle>(arg))
            return -1;
        QObject *object = arg.cast<QtObjectHandle &>().object.data();
        const QMetaObject *wanted = QMetaType::metaObjectForType(type);
        if (object && wanted && !object->metaObject()->inherits(wanted))
            return -1;
        *out = QVariant(type, &object);
        return 0;
    }
    QVariant v = QtObjectBinding::fromPython(arg);
    if (!v.isValid())
        return -1;
    if (v.userType() == type) {
        *out = v;
        return 0;
    }
    // Text passed for a number must read as one; a float for an integer
    // parameter must be whole. QVariant's conversions are looser than that.
    const bool integerTarget = type == QMetaType::Int || type == QMetaType::UInt || type == QMetaType::Long
        || type == QMetaType::ULong || type == QMetaType::LongLong || type == QMetaType::ULongLong
        || type == QMetaType::Short || type == QMetaType::UShort || type == QMetaType::Char
        || type == QMetaType::UChar;
    if (integerTarget && v.userType() == QMetaType::Double) {
        const double d = v.toDouble();
        if (d != double(qlonglong(d)))
            return -1;
    }
    if (integerTarget && v.userType() == QMetaType::QString)
        return -1;
    if (type == QMetaType::Bool && v.userType() != QMetaType::Bool && v.userType() != QMetaType::LongLong)
        return -1;
    if (!v.canConvert(type) || !v.convert(type))
        return -1;
    *out = v;
    return 1;
}

} // namespace

py::object QtObjectBinding::wrap(QObject *object)
{
    if (!object)
        return py::none();
    QtObjectHandle handle;
    handle.object = object;
    return py::cast(handle);
}

QVariant QtObjectBinding::fromPython(py::handle value)
{
    if (value.is_none())
        return QVariant();
    if (py::isinstance<py::bool_>(value))
        return QVariant(value.cast<bool>());
    if (py::isinstance<py::int_>(value)) {
        int overflow = 0;
        const long long v = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
        if (overflow == 0)
            return QVariant(qlonglong(v));
        if (overflow > 0) {
            const unsigned long long u = PyLong_AsUnsignedLongLong(value.ptr());
            if (!PyErr_Occurred())
                return QVariant(qulonglong(u));
            PyErr_Clear();
        }
        return QVariant(QString::fromStdString(py::str(value).cast<std::string>()));
    }
    if (py::isinstance<py::float_>(value))
        return QVariant(value.cast<double>());
    if (py::isinstance<py::str>(value))
        return QVariant(QString::fromStdString(value.cast<std::string>()));
    if (py::isinstance<py::bytes>(value))
        return QVariant(QByteArray::fromStdString(value.cast<std::string>()));
    if (py::isinstance<QtObjectHandle>(value))
        return QVariant::fromValue(value.cast<QtObjectHandle &>().object.data());
    if (py::isinstance<py::list>(value) || py::isinstance<py::tuple>(value)) {
        QVariantList list;
        for (py::handle item : value)
            list << fromPython(item);
        return list;
    }
    if (py::isinstance<py::dict>(value)) {
        QVariantMap map;
        for (auto item : value.cast<py::dict>())
            map.insert(QString::fromStdString(py::str(item.first).cast<std::string>()), fromPython(item.second));
        return map;
    }
    return QVariant();
}

py::object QtObjectBinding::toPython(const QVariant &value)
{
    if (!value.isValid() || value.isNull() && value.userType() != QMetaType::QString)
        return py::none();
    switch (value.userType()) {
    case QMetaType::Bool: return py::bool_(value.toBool());
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Char:
    case QMetaType::SChar: return py::int_(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UChar: return py::int_(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float: return py::float_(value.toDouble());
    case QMetaType::QString: return py::str(value.toString().toStdString());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return py::bytes(bytes.constData(), size_t(bytes.size()));
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        py::list list;
        for (const QVariant &item : value.toList())
            list.append(toPython(item));
        return std::move(list);
    }
    case QMetaType::QVariantMap: {
        py::dict dict;
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            dict[py::str(it.key().toStdString())] = toPython(it.value());
        return std::move(dict);
    }
    default: break;
    }
    if (QMetaType::typeFlags(value.userType()) & QMetaType::PointerToQObject)
        return wrap(*static_cast<QObject *const *>(value.constData()));
    if (value.canConvert<QString>())
        return py::str(value.toString().toStdString());
    return py::none();
}

py::object QtObjectBinding::getAttribute(const QtObjectHandle &self, const std::string &name)
{
    QObject *object = alive(self.object);
    const QByteArray key = QByteArray::fromStdString(name);
    const QMetaObject *mo = object->metaObject();
    for (int i = 0; i < mo->methodCount(); ++i) {
        const QMetaMethod m = mo->method(i);
        if (callable(m) && m.name() == key) {
            QtMethodHandle method;
            method.object = object;
            method.name = key;
            return py::cast(method);
        }
    }
    const int index = mo->indexOfProperty(key.constData());
    if (index >= 0)
        return toPython(mo->property(index).read(object));
    if (object->dynamicPropertyNames().contains(key))
        return toPython(object->QObject::property(key.constData()));
    throw py::attribute_error(QStringLiteral("%1 \"%2\" has no slot or property \"%3\"")
                                  .arg(QLatin1String(mo->className()), object->objectName(), QString::fromStdString(name))
                                  .toStdString());
}

void QtObjectBinding::setAttribute(const QtObjectHandle &self, const std::string &name, py::handle value)
{
    QObject *object = alive(self.object);
    const QByteArray key = QByteArray::fromStdString(name);
    const QMetaObject *mo = object->metaObject();
    const int index = mo->indexOfProperty(key.constData());
    if (index >= 0) {
        const QMetaProperty property = mo->property(index);
        QVariant v;
        if (!property.isWritable() || convertArgument(value, property.userType(), &v) < 0 || !property.write(object, v))
            throw py::type_error(QStringLiteral("property \"%1\" of \"%2\" can't be set to %3")
                                     .arg(QString::fromStdString(name), object->objectName(),
                                          QString::fromStdString(py::repr(value).cast<std::string>()))
                                     .toStdString());
        return;
    }
    if (object->dynamicPropertyNames().contains(key)) {
        object->QObject::setProperty(key.constData(), fromPython(value));
        return;
    }
    throw py::attribute_error(QStringLiteral("%1 \"%2\" has no property \"%3\"")
                                  .arg(QLatin1String(mo->className()), object->objectName(), QString::fromStdString(name))
                                  .toStdString());
}

py::object QtObjectBinding::call(const QtMethodHandle &self, py::args args)
{
    QObject *object = alive(self.object);
    const QMetaObject *mo = object->metaObject();
    if (args.size() > 10)
        throw py::type_error("a Qt slot takes at most 10 arguments");

    // The overload whose parameters take the arguments at the least cost.
    int best = -1;
    int bestCost = 1 << 30;
    QVector<QVariant> bestValues;
    for (int i = 0; i < mo->methodCount(); ++i) {
        const QMetaMethod m = mo->method(i);
        if (!callable(m) || m.name() != self.name || m.parameterCount() != int(args.size()))
            continue;
        QVector<QVariant> values(m.parameterCount());
        int cost = 0;
        for (int p = 0; p < m.parameterCount() && cost >= 0; ++p) {
            const int c = convertArgument(args[size_t(p)], m.parameterType(p), &values[p]);
            cost = c < 0 ? -1 : cost + c;
        }
        if (cost >= 0 && cost < bestCost) {
            best = i;
            bestCost = cost;
            bestValues = values;
        }
    }
    if (best < 0) {
        QStringList given;
        for (py::handle a : args)
            given << QString::fromStdString(py::str(py::type::of(a).attr("__name__")).cast<std::string>());
        throw py::type_error(QStringLiteral("%1.%2(%3): no overload takes these arguments; there is %4")
                                 .arg(object->objectName(), QString::fromLatin1(self.name), given.join(QStringLiteral(", ")),
                                      signatures(mo, self.name))
                                 .toStdString());
    }

    const QMetaMethod method = mo->method(best);
    QGenericArgument arguments[10];
    for (int p = 0; p < bestValues.size(); ++p)
        arguments[p] = QGenericArgument(QMetaType::typeName(method.parameterType(p)), bestValues[p].constData());

    const int returnType = method.returnType();
    QVariant result;
    QGenericReturnArgument returnArgument;
    if (returnType != QMetaType::Void && returnType != QMetaType::UnknownType) {
        result = QVariant(returnType, nullptr);
        returnArgument = QGenericReturnArgument(method.typeName(), result.data());
    }
    const bool ok = method.invoke(object, Qt::DirectConnection, returnArgument, arguments[0], arguments[1],
                                  arguments[2], arguments[3], arguments[4], arguments[5], arguments[6], arguments[7],
                                  arguments[8], arguments[9]);
    if (!ok)
        throw std::runtime_error(QStringLiteral("calling %1.%2 failed")
                                    .arg(object->objectName(), QString::fromLatin1(method.methodSignature()))
                                    .toStdString());
    return toPython(result);
}

py::list QtObjectBinding::attributeNames(const QtObjectHandle &self)
{
    QObject *object = alive(self.object);
    const QMetaObject *mo = object->metaObject();
    QStringList names;
    for (int i = 0; i < mo->methodCount(); ++i) {
        const QMetaMethod m = mo->method(i);
        if (callable(m))
            names << QString::fromLatin1(m.name());
    }
    for (int i = 0; i < mo->propertyCount(); ++i)
        names << QString::fromLatin1(mo->property(i).name());
    for (const QByteArray &n : object->dynamicPropertyNames())
        names << QString::fromLatin1(n);
    names.removeDuplicates();
    names.sort();
    py::list list;
    for (const QString &n : names)
        list.append(py::str(n.toStdString()));
    return list;
}

void QtObjectBinding::define(py::module_ &module)
{
    py::class_<QtObjectHandle>(module, "QtObject")
        .def("__getattr__", &QtObjectBinding::getAttribute)
        .def("__setattr__", &QtObjectBinding::setAttribute)
        .def("__dir__", &QtObjectBinding::attributeNames)
        .def("__bool__", [](const QtObjectHandle &self) { return !self.object.isNull(); })
        .def("__eq__", [](const QtObjectHandle &a, const QtObjectHandle &b) { return a.object == b.object; })
        .def("__hash__", [](const QtObjectHandle &self) { return std::hash<const void *>()(self.object.data()); })
        .def("__repr__", [](const QtObjectHandle &self) {
            if (!self.object)
                return std::string("<deleted Qt object>");
            return QStringLiteral("<%1 \"%2\">")
                .arg(QLatin1String(self.object->metaObject()->className()), self.object->objectName())
                .toStdString();
        });
    py::class_<QtMethodHandle>(module, "QtMethod")
        .def("__call__", &QtObjectBinding::call)
        .def("__repr__", [](const QtMethodHandle &self) {
            return QStringLiteral("<slot %1 of \"%2\">")
                .arg(QString::fromLatin1(self.name), self.object ? self.object->objectName() : QStringLiteral("deleted"))
                .toStdString();
        });
}
