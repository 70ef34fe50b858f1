#include "FakeListElement.h"

#include "elements/Selectors.h"

FakeListElement::FakeListElement(const QString &define, QWidget *parent)
    : QComboBox(parent)
{
    setObjectName(define);
    QObject::setProperty("msb", -1);
    QObject::setProperty("lsb", -1);
}

bool FakeListElement::setValue(const QString &text, int kind)
{
    Q_UNUSED(kind);
    const int index = findData(text);
    if (index < 0)
        return false;
    setCurrentIndex(index);
    return true;
}

bool FakeListElement::loadValue(const QString &text)
{
    return setValue(text, Selectors::Value);
}

QString FakeListElement::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return currentData().toString();
    case Selectors::Label:
        return currentText();
    case Selectors::Index:
        return QString::number(currentIndex());
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        return QString();
    }
}

bool FakeListElement::setBits(int msb, int lsb)
{
    Q_UNUSED(msb);
    Q_UNUSED(lsb);
    return true;
}

void FakeListElement::addItem(const QString &name, const QString &description, int value)
{
    ActiveElement::addItem(name, description, value);
    calls.append(Call{name, description, value});
    QComboBox::addItem(name, QString::number(value));
}
