#include "device/StickLink.h"

#include "device/HidApiDevice.h"
#include "device/SerialSettings.h"
#include "elements/MessageSink.h"
#include "shell/Dialogs.h"

#include <QApplication>
#include <QDateTime>
#include <QMutexLocker>
#include <QTextStream>

QString ioPortName;
QString ioPortSettings;
bool stickConnected = false;

const StickLink::HidRow StickLink::kHidTable[2] = {
    {"TAV", 0x0640, 0x0A10},
    {"FTD260", 0x0403, 0x6030},
};

namespace {

StickLink::HidFactory &hidFactory()
{
    static StickLink::HidFactory factory;
    return factory;
}

// A written frame goes out within this time or the port counts as gone.
const int kSerialWriteTimeoutMs = 100;

} // namespace

void StickLink::setHidFactory(HidFactory factory)
{
    hidFactory() = std::move(factory);
}

StickLink::StickLink()
{
    stickConnected = false;
    m_hid.reset(hidFactory() ? hidFactory()() : new HidApiDevice);
    m_hid->hid_init();
    open();
}

StickLink::~StickLink()
{
    stickConnected = false;
    m_logStream.reset();
    if (m_logFile.isOpen())
        m_logFile.close();
    if (m_hidDevice)
        m_hid->hid_close(m_hidDevice);
    if (m_serialPort.isOpen())
        m_serialPort.close();
    m_hid->hid_exit();
}

bool StickLink::isStickPort()
{
    return ioPortName.isEmpty() || ioPortName == QLatin1String("TAV") || ioPortName == QLatin1String("TAV2");
}

bool StickLink::open()
{
    return isStickPort() ? openHid() : openSerial();
}

bool StickLink::openSerial()
{
    if (m_serialPort.isOpen())
        m_serialPort.close();
    m_serialPort.setPortName(SerialSettings::systemPortName(ioPortName));
    SerialSettings::apply(m_serialPort, SerialSettings::parse(ioPortSettings));
    m_serialPort.clearError();
    const bool opened = m_serialPort.open(QIODevice::ReadWrite);
    if (opened)
        m_serialPort.clear(QSerialPort::AllDirections);
    stickConnected = opened;
    return opened;
}

bool StickLink::openHid()
{
    int present = 0;
    for (const HidRow &row : kHidTable) {
        if (m_hid->hid_enumerate(row.vendor, row.product, nullptr))
            ++present;
    }
    int first = 0;
    if (present == 2) {
        const bool tav = Dialogs::choose(QApplication::activeWindow(), QStringLiteral("More than one Tav connected"),
                                         QStringLiteral("There are two Tavs connected to the system.\nWhich one would should be used?"),
                                         QStringLiteral("Tav"), QStringLiteral("Tav2"));
        first = tav ? 0 : 1;
    }
    QString serial;
    for (int row = first; row < 2; ++row) {
        // A row without a device tries the serial number of the row before.
        QString found;
        if (m_hid->hid_enumerate(kHidTable[row].vendor, kHidTable[row].product, &found))
            serial = found;
        HidInterface::Handle handle = m_hid->hid_open(kHidTable[row].vendor, kHidTable[row].product, serial);
        if (handle) {
            m_hidDevice = handle;
            stickConnected = true;
            return true;
        }
    }
    return false;
}

void StickLink::close()
{
    stickConnected = false;
    if (isStickPort()) {
        if (m_hidDevice)
            m_hid->hid_close(m_hidDevice);
        // The handle is gone with the device: a second close must not
        // close it again.
        m_hidDevice = nullptr;
    } else {
        m_serialPort.close();
    }
}

void StickLink::setReceived(const QByteArray &bytes)
{
    QMutexLocker lock(&m_receivedLock);
    m_received = bytes;
}

int StickLink::receivedSize() const
{
    QMutexLocker lock(&m_receivedLock);
    return m_received.size();
}

bool StickLink::transfer(const QByteArray &out)
{
    if (m_logMode != 0)
        writeLog(logLine("green", "--> ", out, m_logTimestamps != 0));

    if (isStickPort()) {
        if (!m_hidDevice) {
            setReceived(QByteArray());
            return false;
        }
        QByteArray report = out;
        report.prepend('\0');
        if (m_hid->hid_write(m_hidDevice, report) == -1) {
            setReceived(QByteArray());
            return false;
        }
        unsigned char buffer[kReportSize] = {};
        if (m_hid->hid_read(m_hidDevice, buffer, kReportSize) == -1) {
            setReceived(QByteArray());
            return false;
        }
        setReceived(QByteArray(reinterpret_cast<const char *>(buffer), kReportSize));
        return true;
    }

    if (!m_serialPort.isOpen() || m_serialPort.write(out) == -1) {
        setReceived(QByteArray());
        return false;
    }
    if (!out.isEmpty() && !m_serialPort.waitForBytesWritten(kSerialWriteTimeoutMs)
        && m_serialPort.bytesToWrite() > 0) {
        // The port is gone or stuck: what was not written is dropped so
        // that the next transfer starts clean.
        m_serialPort.clear(QSerialPort::Output);
        setReceived(QByteArray());
        return false;
    }
    // What the port holds now, with no wait: a reply that comes later stays
    // in the port for the next transfer.
    m_serialPort.waitForReadyRead(0);
    setReceived(m_serialPort.readAll());
    return true;
}

int StickLink::loggedLength(const QByteArray &bytes)
{
    int last = 1;
    int top = bytes.size() - 1;
    if (top < 33 && top < 2)
        last = top;
    else if (top >= 33)
        top = 32;
    while (top > 3) {
        if (bytes.at(top) != 0) {
            last = top;
            break;
        }
        --top;
    }
    return last + 1;
}

QByteArray StickLink::takeReceived()
{
    QByteArray copy;
    {
        QMutexLocker lock(&m_receivedLock);
        copy = m_received;
    }
    if (m_logMode == 0)
        return copy;
    writeLog(logLine("blue", "&lt;-- ", copy.left(qMax(0, loggedLength(copy))), m_logTimestamps != 0));
    return copy;
}

QString StickLink::logLine(const char *color, const char *arrow, const QByteArray &bytes, bool timestamps)
{
    QString line = QStringLiteral("<font color=\"%1\">%2").arg(QLatin1String(color), QLatin1String(arrow));
    if (timestamps) {
        const QTime now = QDateTime::currentDateTimeUtc().time();
        line += QString::asprintf("%02d:%02d:%04d ", now.minute(), now.second(), now.msec());
    }
    for (const char byte : bytes)
        line += QString::asprintf("0x%02x ", unsigned(quint8(byte)));
    line += QLatin1String("</b></font><br>");
    return line;
}

void StickLink::writeLog(const QString &line)
{
    if (m_logMode & 1)
        consolePrint(line);
    if (m_logStream) {
        *m_logStream << line << '\n';
        m_logStream->flush();
    }
}

void StickLink::logSettings(quint16 &mode, bool &timestamps, QString &fileName) const
{
    mode = m_logMode;
    timestamps = m_logTimestamps != 0;
    fileName = m_logFileName;
}

void StickLink::setLogging(quint16 mode, bool timestamps, const QString &fileName)
{
    m_logMode = mode;
    m_logTimestamps = timestamps ? 1 : 0;
    m_logFileName = fileName;
    if ((mode & 2) && !fileName.isEmpty()) {
        m_logStream.reset();
        if (m_logFile.isOpen())
            m_logFile.close();
        m_logFile.setFileName(fileName);
        if (m_logFile.open(QIODevice::ReadWrite | QIODevice::Text | QIODevice::Truncate))
            m_logStream.reset(new QTextStream(&m_logFile));
    } else if (mode == 0 && m_logFile.isOpen()) {
        m_logStream.reset();
        m_logFile.close();
    }
}
