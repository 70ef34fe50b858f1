#pragma once
#include <QString>

class HardwareModel;
class QXmlStreamReader;
class Peripheral;
class Register;

// Turns a CMSIS-SVD file into a first description: one tab per peripheral,
// one tree branch or group box per register, one input per bit field. The
// text is written line by line in a fixed layout (not by an XML writer), so
// that generated files look alike and diff well; the file is signed at the
// end so it opens without a checksum complaint. While it reads, the
// generator also fills a hardware model and its $PERIPHERALS$ list, when it
// is given one.
class XmlGenerator
{
public:
    explicit XmlGenerator(HardwareModel *model = nullptr) : m_model(model) {}

    // "<svd base name>_Generated.xml" in the SVD file's folder.
    static QString outputPathFor(const QString &svdPath);

    // Writes and signs the description; bOutputTree chooses tree branches
    // over group boxes. False (reported) when the SVD file can't be opened
    // or read or the output can't be written; a broken SVD file leaves the
    // output as far as it came, unsigned.
    bool generateXMLFromSVD(const QString &fileName, bool bOutputTree);

    QString outputPath() const { return m_outputPath; }

private:
    void readDevice();
    void readPeripheral();
    void readRegister(Peripheral *peripheral, const QString &module);
    void readField(Register *reg, const QString &module, const QString &registerName);
    void readEnumeratedValues(class BitField *field, Register *reg, int lsb);
    QString text();
    void skip();

    HardwareModel *m_model;
    QXmlStreamReader *m_xml = nullptr;
    QString m_fileName;
    QString m_outputPath;
    QString m_out;
    bool m_tree = true;
    bool m_hasPeripheralsList = false;
    int m_baseAddress = -1;
};
