#include "device/SerialSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QSerialPortInfo>
#include <QStringList>

SerialSettings::Framing SerialSettings::parse(const QString &settings)
{
    Framing framing;
    if (settings.isEmpty())
        return framing;
    const QStringList parts = settings.split(QLatin1Char(';'));
    if (parts.size() != 4)
        return framing;
    framing.baudRate = parts.at(0).trimmed().toInt();
    framing.dataBits = QSerialPort::DataBits(parts.at(1).trimmed().toInt());
    const QString parity = parts.at(2).trimmed().toUpper();
    const ushort letter = parity.isEmpty() ? 0 : parity.at(0).unicode();
    switch (letter) {
    case 'E': framing.parity = QSerialPort::EvenParity; break;
    case 'O': framing.parity = QSerialPort::OddParity; break;
    case 'S': framing.parity = QSerialPort::SpaceParity; break;
    case 'M': framing.parity = QSerialPort::MarkParity; break;
    default: framing.parity = QSerialPort::NoParity; break;
    }
    framing.stopBits = QSerialPort::StopBits(parts.at(3).trimmed().toInt());
    return framing;
}

void SerialSettings::apply(QSerialPort &port, const Framing &framing)
{
    port.setFlowControl(QSerialPort::NoFlowControl);
    port.setDataBits(framing.dataBits);
    port.setParity(framing.parity);
    port.setStopBits(framing.stopBits);
    port.setBaudRate(framing.baudRate, QSerialPort::AllDirections);
}

namespace {

// The entry of folder whose name equals name ignoring case, preferring an
// exact match.
QString matchEntry(const QDir &folder, const QString &name)
{
    if (QFileInfo::exists(folder.filePath(name)))
        return name;
    const QStringList entries = folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return entry;
    }
    return QString();
}

} // namespace

QString SerialSettings::systemPortName(const QString &name)
{
    if (name.isEmpty())
        return name;
    if (name.startsWith(QLatin1Char('/'))) {
        // A path: each component may have lost its case.
        QDir folder(QStringLiteral("/"));
        QString path;
        const QStringList components = name.split(QLatin1Char('/'), Qt::SkipEmptyParts);
        for (int i = 0; i < components.size(); ++i) {
            const QString entry = matchEntry(folder, components.at(i));
            if (entry.isEmpty())
                return name;
            path += QLatin1Char('/') + entry;
            if (i + 1 < components.size() && !folder.cd(entry))
                return name;
        }
        return path;
    }
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : ports) {
        if (info.portName() == name)
            return name;
    }
    for (const QSerialPortInfo &info : ports) {
        if (info.portName().compare(name, Qt::CaseInsensitive) == 0)
            return info.portName();
    }
    const QString device = matchEntry(QDir(QStringLiteral("/dev")), name);
    return device.isEmpty() ? name : device;
}
