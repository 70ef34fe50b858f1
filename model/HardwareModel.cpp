#include "model/HardwareModel.h"

#include <algorithm>

#include "device/TargetVariable.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "model/BitField.h"
#include "model/DefineText.h"
#include "model/Peripheral.h"
#include "model/Register.h"
#include "model/SvdReader.h"

#include <QFile>
#include <QFileInfo>

HardwareModel::HardwareModel(DocumentTables *tables)
    : m_tables(tables)
{
}

HardwareModel::~HardwareModel()
{
    qDeleteAll(m_peripherals);
}

DocumentTables *HardwareModel::tables() const
{
    return m_tables ? m_tables : DocumentTables::current();
}

Register *HardwareModel::findRegister(const Peripheral *peripheral, const QString &name)
{
    return peripheral ? peripheral->findRegister(name) : nullptr;
}

BitField *HardwareModel::findField(const Register *reg, const QString &name)
{
    return reg ? reg->findField(name) : nullptr;
}

Peripheral *HardwareModel::addPeripheral(const QString &name)
{
    Peripheral *&peripheral = m_peripherals[name];
    if (!peripheral)
        peripheral = new Peripheral(name);
    return peripheral;
}

void HardwareModel::clear()
{
    qDeleteAll(m_peripherals);
    m_peripherals.clear();
    deviceName.clear();
    peripheralItemCounter = 0;
}

bool HardwareModel::claimDefine(const QString &define, const QString &header, ActiveElement *element, bool svdBound)
{
    if (!element)
        return false;
    if (define.isEmpty()) {
        element->setBits(-1, -1);
        return true;
    }
    if (DocumentTables *t = tables())
        t->addElement(define, element);

    const DefineText d = DefineText::parse(define);
    if (!element->setBits(d.msb, d.lsb)) {
        Report::cannotSetBits(element->define(), element->typeInfo(), d.msb, d.lsb);
        return false;
    }
    if (d.msb < d.lsb) {
        Report::bitOrderError(define, d.msb, d.lsb);
        return false;
    }

    Register *reg = nullptr;
    if (Peripheral *peripheral = findPeripheral(d.peripheral)) {
        reg = peripheral->findRegister(d.registerName);
        if (!reg) {
            reg = peripheral->addRegister(d.registerName, header);
        } else if (!reg->header.isEmpty() && !header.isEmpty() && reg->header != header) {
            QString target = define;
            target.replace(QLatin1Char(':'), QLatin1String("$$$COLON$$$"));
            consolePrint(QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>register has two different headers (%1, %2) <a href=\"%3\">%4</a><br>")
                             .arg(reg->header, header, target, define));
        }
    } else {
        reg = addPeripheral(d.peripheral)->addRegister(d.registerName, header);
    }
    BitField *field = d.hasField ? reg->addField(d.field) : nullptr;

    bool claimed;
    if (!field) {
        claimed = reg->claim(element, d.msb, d.lsb);
    } else {
        if (!svdBound) {
            Report::fieldsWithoutSvd(define);
            return false;
        }
        claimed = field->claim(element, d.msb, d.lsb);
    }
    if (!claimed) {
        Report::bitsAlreadyAssigned(define, d.msb, d.lsb);
        return false;
    }
    return true;
}

QString HardwareModel::composeRegisterValue(const Register *reg, bool *failed) const
{
    if (!reg)
        return QStringLiteral("0");
    quint64 sum = 0;
    for (auto it = reg->claims.cbegin(); it != reg->claims.cend(); ++it) {
        const QString text = it.value()->value(Selectors::DefineValue);
        bool ok = false;
        const quint64 part = text.contains(QLatin1Char('.')) ? 0 : text.toULongLong(&ok, 10);
        if (ok) {
            sum += part;
            continue;
        }
        // A register bound to a floating value takes that value whole.
        bool isFloat = false;
        text.toDouble(&isFloat);
        if (!isFloat && failed)
            *failed = true;
        return text;
    }
    return QString::number(sum);
}

bool HardwareModel::addListItem(const QString &define, const QString &text, const QString &description, int value)
{
    DocumentTables *t = tables();
    ActiveElement *element = t ? t->element(define) : nullptr;
    if (!element)
        return false;
    element->addItem(text, description, value);
    return true;
}

bool HardwareModel::readSvdFile(const QString &path, QString *errorText)
{
    QFile file(path);
    // Only regular files: opening a pipe waits for a writer for ever, and a
    // device may never end.
    const bool regular = QFileInfo(path).isFile() || !QFileInfo::exists(path);
    if (!regular || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        const QString text = Report::cannotOpenFileText(path, regular ? file.errorString() : QStringLiteral("Not a regular file."));
        showError(text);
        if (errorText)
            *errorText = text;
        return false;
    }
    SvdReader reader(*this);
    reader.setFileName(path);
    if (!reader.read(&file)) {
        const QString text = Report::cannotReadFileText(path, reader.errorString());
        showError(text);
        if (errorText)
            *errorText = text;
        return false;
    }
    file.close();
    bindDataValues();
    return true;
}

bool HardwareModel::isReservedDefine(const QString &name)
{
    return name == QLatin1String("dummy_define") || name == QLatin1String("$ADDRESS$")
        || name == QLatin1String("$VALUE$") || name == QLatin1String("$FUNC$");
}

void HardwareModel::bindDataValues()
{
    DocumentTables *t = tables();
    if (!t)
        return;
    for (DataClass *data : qAsConst(t->dataValues)) {
        if (!data)
            continue;
        const QString define = data->objectName();
        // The program's own records (dummy_define, the table row
        // parameters) are no registers and are not the description's to bind.
        if (define.isEmpty() || isReservedDefine(define))
            continue;
        // A firmware variable placed by its address or ELF symbol is no register.
        if (data->target() && data->target()->ownAddress)
            continue;
        const DefineText d = DefineText::parse(define);
        const Register *reg = findRegister(findPeripheral(d.peripheral), d.registerName);
        if (m_peripherals.isEmpty() || !reg) {
            consolePrint(QStringLiteral("<font color=\"red\"> <b>XML Error: </b></font><b>Not found in svd file: %1<br>").arg(define));
            continue;
        }
        const BitField *field = d.hasField ? reg->findField(d.field) : nullptr;
        const int msb = field ? field->msb : 0;
        const int lsb = field ? field->lsb : 0;
        const int bytes = reg->size / 8;
        data->setProperty("address", reg->address);
        data->setProperty("msb", msb);
        data->setProperty("lsb", lsb);
        data->setSize(bytes);
        if (TargetVariable *target = data->target()) {
            target->address = quint32(reg->address);
            target->size = quint32(qMax(bytes, 0));
            target->bitOffset = quint32(qMax(lsb, 0));
            target->bitWidth = field ? quint32(qMax(field->width, 0)) : 0;
        }
    }
}

QList<Peripheral *> HardwareModel::devicePeripherals() const
{
    QList<Peripheral *> placed;
    for (Peripheral *peripheral : m_peripherals) {
        const QList<Register *> registers = peripheral->registersByAddress();
        if (!registers.isEmpty() && registers.last()->address >= 0)
            placed << peripheral;
    }
    std::sort(placed.begin(), placed.end(), [](Peripheral *a, Peripheral *b) { return a->name < b->name; });
    return placed;
}
