#pragma once
#include <QByteArray>
#include <QFile>
#include <QMutex>
#include <QSerialPort>
#include <QString>
#include <functional>
#include <memory>

#include "device/HidInterface.h"

class QTextStream;

// The port a description chose: empty, "TAV" or "TAV2" for the HID stick,
// "?" to ask at load time, anything else names a serial port.
extern QString ioPortName;
// "baud;data bits;parity;stop bits" of the serial path.
extern QString ioPortSettings;
// True while a HID device or serial port is open.
extern bool stickConnected;

// The byte pipe to the Tav stick (HID, 64-byte reports) or to a serial
// port: one blocking write and read per transfer, the reply held until the
// next one. It also writes the traffic log to the console and to a file.
class StickLink
{
public:
    struct HidRow
    {
        const char *name;
        quint16 vendor;
        quint16 product;
    };
    // The devices looked for, in this order: the stick, and the FT260
    // USB-to-HID bridge of the second-generation stick.
    static const HidRow kHidTable[2];
    static const int kReportSize = 64;

    // Builds the HID interface of every new link; tests put a stand-in here.
    using HidFactory = std::function<HidInterface *()>;
    static void setHidFactory(HidFactory factory);

    // Opens at once; the link exists even when nothing could be opened.
    StickLink();
    ~StickLink();
    StickLink(const StickLink &) = delete;
    StickLink &operator=(const StickLink &) = delete;

    static bool isStickPort();

    bool open();
    void close();
    // Sends out and keeps the reply. False when nothing could be written or
    // read; the reply is then empty.
    bool transfer(const QByteArray &out);
    // A copy of the reply, after its log line.
    QByteArray takeReceived();
    // Size of the reply; safe from the polling thread.
    int receivedSize() const;

    void logSettings(quint16 &mode, bool &timestamps, QString &fileName) const;
    // mode bit 0: console, bit 1: file (overwritten from its start).
    void setLogging(quint16 mode, bool timestamps, const QString &fileName);

    QSerialPort &serialPort() { return m_serialPort; }
    HidInterface::Handle hidDevice() const { return m_hidDevice; }

    // The log line of bytes, as the link writes it ("--> " or "&lt;-- ").
    static QString logLine(const char *color, const char *arrow, const QByteArray &bytes, bool timestamps);
    // How many bytes of a reply the log shows: a 64-byte report is mostly
    // padding, so trailing zeros beyond the fourth byte are left out.
    static int loggedLength(const QByteArray &bytes);

private:
    bool openSerial();
    bool openHid();
    void writeLog(const QString &line);
    void setReceived(const QByteArray &bytes);

    std::unique_ptr<HidInterface> m_hid;
    HidInterface::Handle m_hidDevice = nullptr;
    // The polling thread reads the size while the main thread replaces the
    // reply: a short lock keeps that from reading a half-replaced array.
    mutable QMutex m_receivedLock;
    QByteArray m_received;
    quint16 m_logMode = 0;
    quint8 m_logTimestamps = 0;
    QString m_logFileName;
    QFile m_logFile;
    std::unique_ptr<QTextStream> m_logStream;
    QSerialPort m_serialPort;
};
