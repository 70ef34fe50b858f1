#pragma once
#include <QList>
#include <QMap>
#include <QString>

#include "model/EnumeratedValue.h"

class ActiveElement;

// A bit field of a register. Elements that name the field in their define
// claim bits relative to the field's bit 0; the SVD read moves them into the
// register once the field's position is known.
class BitField
{
public:
    explicit BitField(const QString &name);

    // Claims field-relative bits msb..lsb (the occupancy rule). Elements are
    // not asked about the range here: their absolute range is only known
    // when the claim moves to the register.
    bool claim(ActiveElement *element, int msb, int lsb);

    QString name;
    // msb - lsb + 1; 0 until the SVD file gives the position.
    int width = 0;
    quint64 claimedBits = 0;
    QMap<quint64, ActiveElement *> claims;
    QString description;
    bool readOnly = false;
    // Before the SVD read: the largest field-relative bit claimed. After it:
    // the field's msb in the register.
    int msb = 0;
    int lsb = 0;
    QList<EnumeratedValue> enumeratedValues;

private:
    Q_DISABLE_COPY(BitField)
};
