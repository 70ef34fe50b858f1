#include "elements/DataClass.h"

#include "device/TargetVariable.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"

#include <cstring>

DataClass::DataClass(const QString &define, QObject *parent)
    : QObject(parent)
{
    setObjectName(define);
}

DataClass::~DataClass() = default;

void DataClass::setTarget(TargetVariable *target)
{
    m_target.reset(target);
    if (target)
        target->dataClass = this;
}

void DataClass::setSize(int size)
{
    m_size = size;
    if (size > 4)
        m_buffer = QByteArray(size, '\0');
    else
        m_buffer.clear();
}

void DataClass::emitUpdates()
{
    emit updateLEDs();
    emit updateMathLabels();
}

void DataClass::readTarget()
{
    TargetMemory *memory = TargetMemory::current();
    if (!m_target || !memory)
        return;
    const quint32 size = m_target->size;
    if (size > 4) {
        if (m_buffer.size() < int(size))
            m_buffer.resize(int(size));
        memory->read(m_target->address, size, reinterpret_cast<quint8 *>(m_buffer.data()));
    } else {
        quint8 bytes[4] = {0, 0, 0, 0};
        if (size < 4)
            value = 0;
        if (memory->read(m_target->address, size, bytes)) {
            quint32 v = 0;
            std::memcpy(&v, bytes, size);
            value = v;
        }
    }
    m_target->valid = 1;
    m_target->lastValue = value;
}

void DataClass::writeTarget(const quint8 *bytes)
{
    TargetMemory *memory = TargetMemory::current();
    if (memory && m_target)
        memory->write(m_target->address, m_target->size, bytes);
}

quint32 DataClass::getValue()
{
    if (readOnAccess && m_target)
        readTarget();
    return value;
}

float DataClass::getFloat()
{
    if (readOnAccess && m_target) {
        readTarget();
        std::memcpy(&floatValue, &value, sizeof floatValue);
    }
    return floatValue;
}

void DataClass::setValue(quint32 v)
{
    value = v;
    if (!m_target) {
        emitUpdates();
        return;
    }
    if (!triggered) {
        if (!m_target->readOnly && m_target->valid) {
            if (m_target->size > 4) {
                writeTarget(reinterpret_cast<const quint8 *>(m_buffer.constData()));
            } else {
                const quint32 shifted = m_target->bitOffset < 32 ? (value << m_target->bitOffset) : 0;
                writeTarget(reinterpret_cast<const quint8 *>(&shifted));
            }
        }
        emitUpdates();
        return;
    }
    if (m_target->nextReadPending && v != 0) {
        TargetMemory *memory = TargetMemory::current();
        if (memory) {
            if (m_buffer.size() < int(m_target->size))
                m_buffer.resize(int(m_target->size));
            memory->read(m_target->address, m_target->size, reinterpret_cast<quint8 *>(m_buffer.data()));
        }
        m_target->valid = 1;
        if (DocumentTables *tables = DocumentTables::current()) {
            if (DataClass *next = tables->dataValue(nextDefine))
                next->setValue(0);
        }
    }
    emitUpdates();
}

void DataClass::setFloat(float v)
{
    floatValue = v;
    if (m_target && !m_target->readOnly && m_target->valid)
        writeTarget(reinterpret_cast<const quint8 *>(&floatValue));
    emitUpdates();
}

void DataClass::setBytes(int first, int last)
{
    quint32 v = 0;
    for (int i = first; i <= last && i < m_buffer.size(); ++i) {
        if (i < 0)
            continue;
        v = (v << 8) | quint8(m_buffer.at(i));
    }
    value = v;
    emitUpdates();
}

void DataClass::setBytes(const QByteArray &bytes)
{
    quint32 v = 0;
    for (const char byte : bytes)
        v = (v << 8) | quint8(byte);
    value = v;
    emitUpdates();
}

void DataClass::applyDefault()
{
    const QString def = property("my_default").toString();
    if (def.isEmpty()) {
        value = 0;
        floatValue = 0.0f;
        return;
    }
    const QString n = normaliseNumber(def);
    floatValue = n.toFloat();
    value = n.startsWith(QLatin1Char('-')) ? quint32(n.toLongLong()) : quint32(n.toULongLong());
    if (classifyNumber(def) == NumberFormat::Floating)
        value = quint32(qint64(n.toDouble()));
}
