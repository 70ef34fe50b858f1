#include "model/Peripheral.h"

#include "model/Register.h"

#include <algorithm>

Peripheral::Peripheral(const QString &name)
    : name(name)
{
}

Peripheral::~Peripheral()
{
    qDeleteAll(registers);
}

Register *Peripheral::addRegister(const QString &name, const QString &header)
{
    Register *&reg = registers[name];
    if (!reg)
        reg = new Register(name, header);
    return reg;
}

QList<Register *> Peripheral::registersByAddress() const
{
    QList<Register *> list = registers.values();
    // Sorted on demand: addresses arrive after the registers are made (and a
    // register met twice can move), so a standing index would go stale.
    std::sort(list.begin(), list.end(), [](const Register *a, const Register *b) {
        if (a->address != b->address)
            return a->address < b->address;
        return a->name < b->name;
    });
    return list;
}
