#include "device/DataTasks.h"

#include "device/DataString.h"
#include "device/ReceiveString.h"
#include "device/SerialComThread.h"
#include "device/StickLink.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/Reports.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>

namespace {

const QString kNoTav = QStringLiteral("<font color=\"orange\">\n\nCurrently loaded XML doesn't use an Tav.</font><br>");

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return 0;
}

// Two characters at pos as a hexadecimal byte; missing characters count 0.
quint8 hexByte(const QByteArray &line, int pos)
{
    const char high = pos < line.size() ? line.at(pos) : '0';
    const char low = pos + 1 < line.size() ? line.at(pos + 1) : '0';
    return quint8(hexDigit(high) * 16 + hexDigit(low));
}

} // namespace

DataTasks::DataTasks(DocumentTables &tables, QObject *parent)
    : QObject(parent)
    , m_tables(tables)
{
}

DataTasks::~DataTasks()
{
    closeDocument();
}

void DataTasks::setDefaultLogging(quint16 mode, bool timestamps, const QString &fileName)
{
    m_logMode = mode;
    m_logTimestamps = timestamps;
    m_logFileName = fileName;
}

StickLink *DataTasks::link()
{
    if (!m_link) {
        m_link.reset(new StickLink);
        m_link->setLogging(m_logMode, m_logTimestamps, m_logFileName);
        if (m_thread)
            m_thread->setLink(m_link.get());
    }
    return m_link.get();
}

void DataTasks::openDocument(const QString &port, const QString &settings, quint16 checkMode, bool stick)
{
    closeDocument();
    ioPortName = port;
    ioPortSettings = settings;
    ioCheckMode = checkMode;
    usesStick = stick;
    ioTimeoutCount = 0;
}

void DataTasks::closeDocument()
{
    stopPolling();
    m_link.reset();
}

void DataTasks::choosePort(QWidget *parent)
{
    if (ioPortName != QLatin1String("?"))
        return;
    QStringList names;
    for (const QSerialPortInfo &info : QSerialPortInfo::availablePorts())
        names << info.portName();
    bool ok = false;
    const QString answer = Dialogs::item(parent, tr("Select a COM port"), tr("COM port:"), names, &ok);
    if (!ok || answer.trimmed().isEmpty())
        return;
    ioPortName = answer.trimmed().toUpper();
    if (m_link)
        m_link->serialPort().setPortName(ioPortName);
    else
        link();
}

void DataTasks::checkStick(QWidget *parent)
{
    if (!usesStick || !(ioCheckMode & 2))
        return;
    link();
    if (stickConnected)
        return;
    const QString device = StickLink::isStickPort() ? QStringLiteral("Tav") : ioPortName;
    Dialogs::message(parent, QMessageBox::Warning, tr("Cannot connect to Tav / serial port"),
                     tr("This script uses an %1, but there can no one be found.\nPlease connect one to the USB.").arg(device));
}

void DataTasks::startPolling()
{
    stopPolling();
    if (m_tables.timerTasks.isEmpty())
        return;
    m_thread = new SerialComThread(m_tables.timerTasks, m_link.get(), this);
    connect(m_thread, &SerialComThread::replyDue, this, &DataTasks::pollReply, Qt::QueuedConnection);
    m_thread->start(QThread::InheritPriority);
}

void DataTasks::stopPolling()
{
    if (!m_thread)
        return;
    m_thread->stop();
    delete m_thread;
    m_thread = nullptr;
}

bool DataTasks::isPolling() const
{
    return m_thread && m_thread->isRunning();
}

void DataTasks::pollReply(const QString &recdata)
{
    recData(recdata, m_thread ? m_thread->objectName() : QStringLiteral("SerialComThread"));
    if (m_thread)
        m_thread->replyHandled();
}

bool DataTasks::lookupName(const QString &name, quint32 *value) const
{
    if (!m_tables.dataValues.isEmpty()) {
        if (DataClass *data = m_tables.dataValue(name)) {
            *value = data->getValue();
            return true;
        }
    }
    if (ActiveElement *element = m_tables.element(name)) {
        *value = quint32(qint64(element->value(0).toDouble()));
        return true;
    }
    return false;
}

bool DataTasks::transferWithRetry(const QByteArray &bytes)
{
    StickLink *l = link();
    if (l->transfer(bytes))
        return true;
    l->open();
    return l->transfer(bytes);
}

void DataTasks::sendUSB(const QString &s)
{
    if (s.isEmpty())
        return;
    QStringList unconvertible;
    const QByteArray bytes = DataString::encode(
        s, [this](const QString &name, quint32 *v) { return lookupName(name, v); }, &unconvertible);
    for (const QString &text : unconvertible)
        Report::sendUsbCannotConvert(text);
    transferWithRetry(bytes);
}

void DataTasks::recData(const QString &s, const QString &sender)
{
    if (s.isEmpty() || !m_link)
        return;
    if (ioTimeoutCount > 9) {
        // After ten time-outs nothing is waited for until a real reply.
        if (m_link->receivedSize() < 2)
            return;
        ioTimeoutCount = 0;
    }
    const int needed = ReceiveString::needed(s);

    // A spin without events: the reply is what the link holds, and the
    // wait is bounded by the deadline, which moves only while it grows.
    QElapsedTimer clock;
    clock.start();
    qint64 deadline = kFirstWaitMs;
    int last = -1;
    while (!m_tables.loading) {
        const int available = int(quint16(m_link->receivedSize()));
        if (needed <= available)
            break;
        if (last >= 0 && available > last)
            deadline = clock.elapsed() + kGrowthWaitMs;
        last = available;
        if (clock.elapsed() > deadline) {
            if (ioTimeoutCount < 10 && ioCheckMode != 0 && (ioCheckMode & 1)) {
                consolePrint(QStringLiteral("Cannot receive requested data from external device. USB timeout: cannot supply "
                                            "%1(\"%2\"). %3 bytes needed, %4 available.<br>")
                                 .arg(sender, s.toHtmlEscaped())
                                 .arg(needed)
                                 .arg(available));
            }
            if (ioTimeoutCount < 10)
                ++ioTimeoutCount;
            return;
        }
    }

    const QByteArray bytes = m_link->takeReceived();
    int pos = 0;
    for (const ReceiveString::Token &token : ReceiveString::parse(s)) {
        const int n = qMin(token.count, bytes.size() - pos);
        const QByteArray chunk = bytes.mid(pos, n);
        pos += n;
        if (ActiveElement *element = m_tables.element(token.name)) {
            element->setValue(QString::number(ReceiveString::fold(chunk, token.littleEndian)), 0);
        } else if (DataClass *data = m_tables.dataValue(token.name)) {
            QByteArray ordered = chunk;
            if (token.littleEndian)
                std::reverse(ordered.begin(), ordered.end());
            data->setBytes(ordered);
        } else if (token.name != QLatin1String("?")) {
            Report::invalidRecData(token.name);
            return;
        }
    }
}

bool DataTasks::waitForTableReply(int needed)
{
    if (!m_link)
        return false;
    QElapsedTimer clock;
    clock.start();
    qint64 deadline = kTableFirstWaitMs;
    int last = m_link->receivedSize();
    for (;;) {
        const int available = m_link->receivedSize();
        if (needed <= available)
            return true;
        if (available > last)
            deadline = clock.elapsed() + kTableGrowthWaitMs;
        last = available;
        if (clock.elapsed() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

void DataTasks::setLogging(quint16 mode, bool timestamps, const QString &fileName)
{
    link()->setLogging(mode, timestamps, fileName);
}

QByteArray DataTasks::hexPayload(const QByteArray &text, quint16 *total)
{
    QByteArray payload;
    quint16 sum = 0;
    for (QByteArray line : text.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        line = line.left(256);
        const quint8 type = hexByte(line, 7);
        if (type != 0)
            continue;
        const quint8 count = hexByte(line, 1);
        sum = quint16(sum + count);
        for (int i = 0; i < count; ++i)
            payload.append(char(hexByte(line, 9 + 2 * i)));
    }
    if (total)
        *total = sum;
    return payload;
}

QList<QByteArray> DataTasks::taskFrames(const QByteArray &payload, quint16 total, quint8 task, quint16 arg2,
                                         quint8 arg3, quint16 arg4)
{
    QList<QByteArray> frames;
    QByteArray first(StickLink::kReportSize, '\0');
    first[0] = char(0x0A);
    first[1] = char(0x01);
    first[2] = char(task);
    first[3] = char(arg2 != 0 ? 1 : 0);
    first[4] = char(arg3);
    first[5] = char(arg4 >> 8);
    first[6] = char(arg4 & 0xFF);
    first[7] = char(total >> 8);
    first[8] = char(total & 0xFF);
    const int inFirst = qMin<int>(total, 52);
    first[9] = char(inFirst);
    for (int i = 0; i < inFirst && i < payload.size(); ++i)
        first[10 + i] = payload.at(i);
    frames.append(first);

    // The rest goes in frames of 60 bytes; one left unfilled at the end is
    // not sent, as the stick's download has always done.
    int pos = qMin(inFirst, payload.size());
    quint8 sequence = 1;
    while (pos < payload.size()) {
        QByteArray frame(StickLink::kReportSize, '\0');
        frame[0] = char(0x0A);
        frame[1] = char(0x02);
        frame[2] = char(sequence);
        frame[3] = char(qMin(payload.size() - pos, 60));
        int index = 4;
        while (index < StickLink::kReportSize && pos < payload.size())
            frame[index++] = payload.at(pos++);
        if (index < StickLink::kReportSize)
            break;
        frames.append(frame);
        ++sequence;
    }
    return frames;
}

bool DataTasks::replyAccepted()
{
    const QByteArray reply = m_link->takeReceived();
    return reply.size() < 2 || quint8(reply.at(1)) == 0x55;
}

quint8 DataTasks::sendTask(const QString &fileName, quint8 task, quint16 arg2, quint8 arg3, quint16 arg4)
{
    if (!StickLink::isStickPort()) {
        consolePrint(kNoTav);
        return 0xFF;
    }
    link();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        Report::cannotOpenFile(QFileInfo(fileName).absoluteFilePath(), file.errorString());
        return 0xFF;
    }
    quint16 total = 0;
    const QByteArray payload = hexPayload(file.readAll(), &total);
    file.close();

    const QList<QByteArray> frames = taskFrames(payload, total, task, arg2, arg3, arg4);
    for (int i = 0; i < frames.size(); ++i) {
        if (!transferWithRetry(frames.at(i)))
            return i == 0 ? 0xFF : 0;
        if (!replyAccepted())
            return 0;
    }
    return 1;
}
