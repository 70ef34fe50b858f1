#pragma once
#include <QHash>
#include <QList>
#include <QString>

class ActiveElement;
class BitField;
class DocumentTables;
class Peripheral;
class Register;

// The device's peripherals, registers and fields, built from two sides: the
// defines of a description's elements claim register bits while the
// description is read, and the SVD file then adds addresses, sizes and
// enumerations to what is there. Objects are made by whichever side names
// them first.
//
// The main window owns one model for its whole life and clears it when a
// document closes; that is what lets the $REGISTERS$ item values keep
// counting from one document to the next.
class HardwareModel
{
public:
    // tables: where claimed elements are registered by define; null means
    // DocumentTables::current() at the time of each call.
    explicit HardwareModel(DocumentTables *tables = nullptr);
    ~HardwareModel();

    void setTables(DocumentTables *tables) { m_tables = tables; }
    DocumentTables *tables() const;

    // Registers the element under its define and claims the bits the define
    // names. Refusals are reported and leave the element built; returns
    // false when something was reported.
    bool claimDefine(const QString &define, const QString &header, ActiveElement *element, bool svdBound);

    // Reads the SVD file into the model and binds the DataClass records to
    // their registers. Reports "Cannot open file" / "Cannot read file" and
    // returns false (with the same text in *errorText) when the document
    // can't go on. Finding the file is the caller's business.
    bool readSvdFile(const QString &path, QString *errorText = nullptr);

    // Gives every DataClass whose define names a register that register's
    // address and size, and its field's bit range (properties "address",
    // "msb", "lsb", setSize(), and the target record when there is one).
    void bindDataValues();
    // The records every document has, made by the program itself.
    static bool isReservedDefine(const QString &name);

    Peripheral *findPeripheral(const QString &name) const { return m_peripherals.value(name); }
    static Register *findRegister(const Peripheral *peripheral, const QString &name);
    static BitField *findField(const Register *reg, const QString &name);
    // The peripheral of that name, created when missing.
    Peripheral *addPeripheral(const QString &name);
    const QHash<QString, Peripheral *> &peripherals() const { return m_peripherals; }
    // The peripherals of the device, sorted by name: those with at least one
    // register the SVD file placed. Names that only the form's defines made
    // (svd="0" elements, the reserved defines) are left out.
    QList<Peripheral *> devicePeripherals() const;

    // The register's value from the elements that claim its bits: the sum of
    // their definevalue texts as decimal text. A text that is not an
    // unsigned integer is returned as it stands, as the register's value; if
    // it is not a floating number either, *failed is set to true. *failed is
    // never set to false, so one flag can collect several registers.
    QString composeRegisterValue(const Register *reg, bool *failed = nullptr) const;

    // Hands an enumerated value to the element registered under the define;
    // false when there is none.
    bool addListItem(const QString &define, const QString &text, const QString &description, int value);

    // Forgets all peripherals and the device name. The $REGISTERS$ counter
    // survives on purpose.
    void clear();

    QString deviceName;
    // Values of the next $PERIPHERALS$ and $REGISTERS$ items. The first
    // starts again with every SVD read, the second never does.
    int peripheralItemCounter = 0;
    int registerItemCounter = 0;

private:
    Q_DISABLE_COPY(HardwareModel)

    DocumentTables *m_tables = nullptr;
    QHash<QString, Peripheral *> m_peripherals;
};
