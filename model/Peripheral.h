#pragma once
#include <QHash>
#include <QList>
#include <QString>

class Register;

// A peripheral of the device. Owns its registers.
class Peripheral
{
public:
    explicit Peripheral(const QString &name);
    ~Peripheral();

    Register *findRegister(const QString &name) const { return registers.value(name); }
    // The register of that name, created with the header when missing; an
    // existing one keeps its header.
    Register *addRegister(const QString &name, const QString &header);

    // The registers ordered by address (then name), for lists shown to the
    // user. Registers the SVD file never placed have address -1 and come
    // first.
    QList<Register *> registersByAddress() const;

    QString name;
    QHash<QString, Register *> registers;
    QString description;

private:
    Q_DISABLE_COPY(Peripheral)
};
