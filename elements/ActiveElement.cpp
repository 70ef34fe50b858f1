#include "elements/ActiveElement.h"

#include <QWidget>

ActiveElement::~ActiveElement() = default;

void ActiveElement::setProperty(const char *name, const QVariant &value)
{
    static_cast<QObject *>(widget())->setProperty(name, value);
}

QVariant ActiveElement::property(const char *name) const
{
    return static_cast<const QObject *>(widget())->property(name);
}

void ActiveElement::addItem(const QString &name, const QString &description, int value)
{
    enumerated.insert(value, EnumeratedItem{name, description, value});
}

QString ActiveElement::define() const
{
    return widget()->objectName();
}

ActiveElement *asActiveElement(QObject *object)
{
    return dynamic_cast<ActiveElement *>(object);
}
