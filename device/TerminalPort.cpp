#include "device/TerminalPort.h"

#include "device/SerialSettings.h"

#include <QDebug>
#include <QSerialPortInfo>

TerminalPort::TerminalPort(QObject *parent)
    : QObject(parent)
{
    connect(&m_port, &QSerialPort::readyRead, this, &TerminalPort::readConsole);
}

bool TerminalPort::open(const QString &port, const QString &settings)
{
    close();
    QString name = port;
    if (port.compare(QLatin1String("segger"), Qt::CaseInsensitive) == 0) {
        const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
        for (const QSerialPortInfo &info : ports) {
            qDebug().noquote() << info.portName() << info.manufacturer();
            if (info.manufacturer().compare(QLatin1String("segger"), Qt::CaseInsensitive) == 0) {
                name = info.portName();
                break;
            }
        }
    }
    m_port.setPortName(SerialSettings::systemPortName(name));
    SerialSettings::apply(m_port, SerialSettings::parse(settings));
    if (!m_port.open(QIODevice::ReadWrite))
        return false;
    m_port.clear(QSerialPort::AllDirections);
    return true;
}

void TerminalPort::close()
{
    if (m_port.isOpen())
        m_port.close();
    m_pending.clear();
}

void TerminalPort::readConsole()
{
    while (m_port.bytesAvailable() > 0)
        m_pending += QString::fromLocal8Bit(m_port.readAll());
    if (m_pending.endsWith(QLatin1Char('\n')) || m_pending.endsWith(QLatin1String("<br>"))) {
        const QString text = m_pending;
        m_pending.clear();
        emit textReady(text);
    }
}
