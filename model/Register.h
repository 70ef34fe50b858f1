#pragma once
#include <QHash>
#include <QMap>
#include <QString>

#include "model/EnumeratedValue.h"

class ActiveElement;
class BitField;

// A device register: which elements hold which of its bits, and what the SVD
// file says about it. Owns its fields.
class Register
{
public:
    Register(const QString &name, const QString &header);
    ~Register();

    BitField *findField(const QString &name) const { return fields.value(name); }
    // The field of that name, created when missing.
    BitField *addField(const QString &name);

    // Claims bits msb..lsb (the occupancy rule); the element must also
    // accept the range through setBits().
    bool claim(ActiveElement *element, int msb, int lsb);

    QString name;
    // Header file the register is exported to; empty when the SVD file was
    // the first to name it.
    QString header;
    // All ones after a whole-register claim.
    quint64 claimedBits = 0;
    int highestBit = 0;
    // Mask of the claimed bits -> element; the whole register is key 0.
    QMap<quint64, ActiveElement *> claims;
    // Field lsb + value -> enumerated value, over all fields. The key is a
    // sum, not a shift, so two fields can collide; the later one wins.
    QMap<int, EnumeratedValue> enumerated;
    // In bits; 0 until the SVD file sets it.
    int size = 0;
    int address = -1;
    int resetValue = 0;
    QString description;
    QHash<QString, BitField *> fields;

private:
    Q_DISABLE_COPY(Register)
};
