#pragma once
#include <QSerialPort>
#include <QString>

// The framing of a serial port as descriptions write it: "baud;data
// bits;parity;stop bits", for example "9600;8;E;1". Shared by the stick
// link's serial path and the console's terminal port.
class SerialSettings
{
public:
    struct Framing
    {
        qint32 baudRate = 115200;
        QSerialPort::DataBits dataBits = QSerialPort::Data8;
        QSerialPort::Parity parity = QSerialPort::NoParity;
        QSerialPort::StopBits stopBits = QSerialPort::OneStop;
    };

    // 115200/8/N/1 unless the text has exactly four parts; the parity counts
    // by its first letter (N, E, O, S, M; anything else is none).
    static Framing parse(const QString &settings);

    // Sets no flow control, data bits, parity, stop bits and baud rate, in
    // this order.
    static void apply(QSerialPort &port, const Framing &framing);

    // Port names arrive upper-cased from descriptions ("TTYUSB0",
    // "/DEV/PTS/3"); on systems whose device names are case-sensitive the
    // name is matched against the ports and device files that exist. A
    // name with no match is returned as it is.
    static QString systemPortName(const QString &name);
};
