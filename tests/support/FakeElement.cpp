#include "FakeElement.h"

#include "elements/Reports.h"
#include "elements/Selectors.h"

FakeElement::FakeElement(const QString &define, QWidget *parent)
    : QWidget(parent)
{
    setObjectName(define);
    QObject::setProperty("msb", -1);
    QObject::setProperty("lsb", -1);
}

bool FakeElement::setValue(const QString &text, int kind)
{
    Q_UNUSED(kind);
    bool ok = false;
    const qint64 v = text.toLongLong(&ok);
    if (!ok) {
        Report::invalidSetValue(objectName(), text);
        return false;
    }
    number = v;
    emit mathLabelsUpdate();
    return true;
}

bool FakeElement::loadValue(const QString &text)
{
    bool ok = false;
    const qint64 v = text.toLongLong(&ok);
    if (!ok) {
        Report::invalidLoadValue(objectName(), text);
        return false;
    }
    number = v;
    m_reference = text;
    return true;
}

QString FakeElement::value(int kind, bool flag)
{
    Q_UNUSED(flag);
    switch (kind) {
    case Selectors::Value:
        return QString::number(number);
    case Selectors::DefineValue: {
        if (!overrideText.isEmpty())
            return overrideText;
        const int lsb = QObject::property("lsb").toInt();
        return QString::number(quint64(number) << (lsb < 0 ? 0 : lsb));
    }
    case Selectors::TypeInfo:
        return typeInfo();
    default:
        Report::cannotReturnValue(kind, objectName());
        return QString();
    }
}

bool FakeElement::setBits(int msb, int lsb)
{
    ++setBitsCalls;
    if (msb == -1 && lsb == -1)
        return true;
    const int width = msb - lsb + 1;
    if (width <= 0)
        return true; // the bit order check of the caller reports this
    if (width >= 63)
        return true;
    return maximum <= (qint64(1) << width) - 1;
}
