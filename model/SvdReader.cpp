#include "model/SvdReader.h"

#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "model/BitField.h"
#include "model/BitOccupancy.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"

#include <QComboBox>
#include <QIODevice>

#include <limits>

namespace {

const QString peripheralsDefine = QStringLiteral("$PERIPHERALS$");
const QString registersDefine = QStringLiteral("$REGISTERS$");

// Numbers of the file other than size, msb and lsb: the shared normaliser,
// then signed 32 bits in base 10. Addresses from 0x80000000 up do not fit
// and become 0; descriptions were written against that.
int svdNumber(const QString &text)
{
    bool ok = false;
    const int n = normaliseNumber(text).toInt(&ok, 10);
    return ok ? n : 0;
}

// value and resetValue may use the SVD's binary form "#1010". Don't-care
// bits ("#1xx") make no number and give 0.
int svdBinaryNumber(QString text)
{
    text.replace(QLatin1Char('#'), QLatin1String("0b"));
    return svdNumber(text);
}

// size, msb and lsb are read in base 10 only, so "0x20" gives 0.
int svdDecimal(const QString &text)
{
    bool ok = false;
    const int n = text.toInt(&ok, 10);
    return ok ? n : 0;
}

// Field-relative bit plus the field's lsb, kept inside int: absurd defines
// must not overflow.
int offsetBit(int bit, int lsb)
{
    const qint64 sum = qint64(bit) + lsb;
    return int(qBound<qint64>(std::numeric_limits<int>::min(), sum, std::numeric_limits<int>::max()));
}

QString fileLink(const QString &file, qint64 line, qint64 column)
{
    QString name = file;
    name.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
    return QStringLiteral("$xmlopen$%1$-n%2$-c%3").arg(name).arg(line).arg(column);
}

} // namespace

SvdReader::SvdReader(HardwareModel &model)
    : m_model(model)
{
}

bool SvdReader::read(QIODevice *device)
{
    m_xml.setDevice(device);
    return run();
}

bool SvdReader::read(const QByteArray &data)
{
    m_xml.clear();
    m_xml.addData(data);
    return run();
}

QString SvdReader::errorString() const
{
    return m_xml.errorString()
        + QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b><br>")
              .arg(fileLink(m_fileName, m_xml.lineNumber(), m_xml.columnNumber()))
              .arg(m_xml.lineNumber())
              .arg(m_xml.columnNumber());
}

QString SvdReader::text()
{
    return m_xml.readElementText(QXmlStreamReader::SkipChildElements);
}

bool SvdReader::run()
{
    DocumentTables *tables = m_model.tables();
    m_peripheralsElement = tables ? tables->element(peripheralsDefine) : nullptr;
    m_model.peripheralItemCounter = 0;

    if (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("device"))
            readDevice();
        else
            m_xml.raiseError(QStringLiteral("Warning"));
    }
    return !m_xml.hasError();
}

void SvdReader::readDevice()
{
    while (m_xml.readNextStartElement()) {
        const QStringRef tag = m_xml.name();
        if (tag == QLatin1String("name"))
            m_model.deviceName = text();
        else if (tag == QLatin1String("peripherals"))
            readPeripherals();
        else
            m_xml.skipCurrentElement();
    }
}

void SvdReader::readPeripherals()
{
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("peripheral"))
            readPeripheral();
        else
            m_xml.skipCurrentElement();
    }
}

void SvdReader::readPeripheral()
{
    Peripheral *peripheral = nullptr;
    QString name;
    // Registers met before a baseAddress are placed relative to -1.
    int baseAddress = -1;
    while (m_xml.readNextStartElement()) {
        const QStringRef tag = m_xml.name();
        if (tag == QLatin1String("name")) {
            name = text();
            peripheral = m_model.addPeripheral(name);
            if (m_peripheralsElement) {
                if (!m_model.addListItem(peripheralsDefine, name, name, m_model.peripheralItemCounter++)) {
                    const qint64 line = m_xml.lineNumber();
                    const qint64 column = m_xml.columnNumber();
                    consolePrint(QStringLiteral("<font color=\"red\"> <b>XML-ERROR: Couldn't set EnumeratedValue %1 in $PERIPHERALS$ <a href=\"%2\">file</a> line %3, column %4</b></font><b>: %4<br>")
                                     .arg(name, fileLink(m_fileName, line, column))
                                     .arg(line)
                                     .arg(column));
                }
            }
        } else if (tag == QLatin1String("description")) {
            const QString description = text();
            if (peripheral)
                peripheral->description = description;
            QComboBox *list = m_peripheralsElement ? qobject_cast<QComboBox *>(m_peripheralsElement->widget()) : nullptr;
            if (list && !description.isEmpty() && list->count() > 0)
                list->setItemData(list->count() - 1, description, Qt::ToolTipRole);
        } else if (tag == QLatin1String("baseAddress")) {
            baseAddress = svdNumber(text());
        } else if (tag == QLatin1String("registers")) {
            readRegisters(peripheral, name, baseAddress);
        } else {
            m_xml.skipCurrentElement();
        }
    }
}

void SvdReader::readRegisters(Peripheral *&peripheral, const QString &peripheralName, int baseAddress)
{
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("register"))
            readRegister(peripheral, peripheralName, baseAddress);
        else
            m_xml.skipCurrentElement();
    }
}

void SvdReader::readRegister(Peripheral *&peripheral, const QString &peripheralName, int baseAddress)
{
    Register *reg = nullptr;
    while (m_xml.readNextStartElement()) {
        const QStringRef tag = m_xml.name();
        if (tag == QLatin1String("name")) {
            const QString name = text();
            reg = HardwareModel::findRegister(peripheral, name);
            if (!reg) {
                // Registers that elements claimed already have their items
                // in the description; only new ones are offered.
                peripheral = m_model.addPeripheral(peripheralName);
                m_model.addListItem(registersDefine, name, name, m_model.registerItemCounter++);
                reg = peripheral->addRegister(name, QString());
            }
        } else if (!reg) {
            // Nothing to store into until the register's name is known.
            m_xml.skipCurrentElement();
        } else if (tag == QLatin1String("addressOffset")) {
            reg->address = int(quint32(svdNumber(text())) + quint32(baseAddress));
        } else if (tag == QLatin1String("description")) {
            reg->description = text();
        } else if (tag == QLatin1String("size")) {
            readSize(peripheral, reg);
        } else if (tag == QLatin1String("resetValue")) {
            reg->resetValue = svdBinaryNumber(text());
        } else if (tag == QLatin1String("fields")) {
            readFields(peripheral, reg);
        } else {
            m_xml.skipCurrentElement();
        }
    }
}

void SvdReader::readSize(Peripheral *peripheral, Register *reg)
{
    const int size = svdDecimal(text());
    // A register nobody claimed takes any size; once bits are claimed the
    // size must reach above the highest of them.
    const bool claimed = reg->claimedBits != 0 || !reg->claims.isEmpty();
    if (claimed && size <= reg->highestBit) {
        Report::svdOutOfSize(peripheral->name, reg->name, QString(), size);
        return;
    }
    if (reg->fields.isEmpty()) {
        if (ActiveElement *whole = reg->claims.value(0)) {
            if (!whole->setBits(size - 1, 0)) {
                Report::svdOutOfSize(peripheral->name, reg->name, QString(), size);
                return;
            }
        }
    }
    reg->size = size;
}

void SvdReader::readFields(Peripheral *peripheral, Register *reg)
{
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("field"))
            readField(peripheral, reg);
        else
            m_xml.skipCurrentElement();
    }
}

void SvdReader::readField(Peripheral *peripheral, Register *reg)
{
    BitField *field = nullptr;
    int lsb = 0;
    int msb = 0;
    while (m_xml.readNextStartElement()) {
        const QStringRef tag = m_xml.name();
        if (tag == QLatin1String("name")) {
            field = reg->addField(text());
        } else if (tag == QLatin1String("description")) {
            const QString description = text();
            if (field)
                field->description = description;
        } else if (tag == QLatin1String("access")) {
            const QString access = text();
            if (field)
                field->readOnly = access.compare(QLatin1String("read-only"), Qt::CaseInsensitive) == 0;
        } else if (tag == QLatin1String("lsb")) {
            lsb = svdDecimal(text());
        } else if (tag == QLatin1String("msb")) {
            msb = svdDecimal(text());
            if (!field)
                continue;
            const int width = int(qBound<qint64>(std::numeric_limits<int>::min(), qint64(msb) - lsb + 1,
                                                 std::numeric_limits<int>::max()));
            // field->msb is still the highest field-relative bit claimed. The
            // test is one looser than the register's: width 3 admits bit 3.
            if (width < field->msb)
                Report::svdOutOfSize(peripheral->name, reg->name, field->name, width);
            else
                field->width = width;
            joinFieldClaims(field, reg, msb, lsb);
            field->msb = msb;
            field->lsb = lsb;
        } else if (tag == QLatin1String("enumeratedValues")) {
            readEnumeratedValues(field, reg, msb, lsb);
        } else {
            m_xml.skipCurrentElement();
        }
    }
}

void SvdReader::joinFieldClaims(BitField *field, Register *reg, int msb, int lsb)
{
    // The claims move: they belong to the register from now on, and a field
    // met again must not claim them a second time.
    const QMap<quint64, ActiveElement *> claims = field->claims;
    field->claims.clear();
    for (auto it = claims.cbegin(); it != claims.cend(); ++it) {
        ActiveElement *element = it.value();
        const int m = element->property("msb").toInt();
        const int l = element->property("lsb").toInt();
        int absMsb = msb;
        int absLsb = lsb;
        if (m != -1 || l != -1) {
            absMsb = offsetBit(m, lsb);
            absLsb = offsetBit(l, lsb);
        }
        if (!reg->claim(element, absMsb, absLsb))
            Report::bitsAlreadyAssigned(element->define(), absMsb, absLsb);
    }
}

void SvdReader::readEnumeratedValues(BitField *field, Register *reg, int msb, int lsb)
{
    while (m_xml.readNextStartElement()) {
        if (m_xml.name() == QLatin1String("enumeratedValue"))
            readEnumeratedValue(field, reg, msb, lsb);
        else
            m_xml.skipCurrentElement();
    }
}

void SvdReader::readEnumeratedValue(BitField *field, Register *reg, int msb, int lsb)
{
    EnumeratedValue value;
    while (m_xml.readNextStartElement()) {
        const QStringRef tag = m_xml.name();
        if (tag == QLatin1String("name"))
            value.name = text();
        else if (tag == QLatin1String("description"))
            value.description = text();
        else if (tag == QLatin1String("value"))
            value.value = svdBinaryNumber(text());
        else
            m_xml.skipCurrentElement();
    }
    if (field)
        field->enumeratedValues.append(value);
    reg->enumerated.insert(int(quint32(lsb) + quint32(value.value)), value);

    // Only an element that holds exactly the field's bits takes the value;
    // one covering part of the field would misread it. An empty range has
    // mask 0, which is the whole-register key and must not match it.
    const quint64 mask = BitOccupancy::mask(msb, lsb);
    if (!mask)
        return;
    ActiveElement *element = reg->claims.value(mask);
    if (element && !element->property("svd").toString().isEmpty())
        element->addItem(value.name, value.description, value.value);
}
