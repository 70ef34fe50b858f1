#pragma once
#include <QString>
#include <QXmlStreamReader>

class ActiveElement;
class BitField;
class HardwareModel;
class Peripheral;
class QByteArray;
class QIODevice;
class Register;

// One forward pass over a CMSIS-SVD file into a HardwareModel, without a
// document tree: vendor files run to many megabytes. Only the elements the
// program uses are read; every other element is skipped with its subtree.
class SvdReader
{
public:
    explicit SvdReader(HardwareModel &model);

    // File name for the position link in errorString().
    void setFileName(const QString &fileName) { m_fileName = fileName; }

    // False when the stream ends in an error; errorString() tells which.
    bool read(QIODevice *device);
    bool read(const QByteArray &data);

    // The stream's error text followed by a link to the place in the file.
    QString errorString() const;

private:
    bool run();
    void readDevice();
    void readPeripherals();
    void readPeripheral();
    void readRegisters(Peripheral *&peripheral, const QString &peripheralName, int baseAddress);
    void readRegister(Peripheral *&peripheral, const QString &peripheralName, int baseAddress);
    void readSize(Peripheral *peripheral, Register *reg);
    void readFields(Peripheral *peripheral, Register *reg);
    void readField(Peripheral *peripheral, Register *reg);
    void joinFieldClaims(BitField *field, Register *reg, int msb, int lsb);
    void readEnumeratedValues(BitField *field, Register *reg, int msb, int lsb);
    void readEnumeratedValue(BitField *field, Register *reg, int msb, int lsb);

    QString text();

    HardwareModel &m_model;
    QXmlStreamReader m_xml;
    QString m_fileName;
    ActiveElement *m_peripheralsElement = nullptr;
};
