#include "integration/BlockingGet.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkProxy>
#include <QTcpSocket>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

// The system resolver has no time-out of its own that we control, so it
// runs on a thread of its own that is abandoned when it takes too long.
QHostAddress resolve(const QString &host, int timeoutMs)
{
    const QHostAddress literal(host);
    if (!literal.isNull())
        return literal;
    struct Shared
    {
        std::mutex mutex;
        std::condition_variable done;
        bool finished = false;
        QHostAddress address;
    };
    auto shared = std::make_shared<Shared>();
    std::thread([shared, host] {
        const QHostInfo info = QHostInfo::fromName(host);
        QHostAddress found;
        for (const QHostAddress &a : info.addresses()) {
            found = a;
            if (a.protocol() == QAbstractSocket::IPv4Protocol)
                break;
        }
        std::lock_guard<std::mutex> lock(shared->mutex);
        shared->address = found;
        shared->finished = true;
        shared->done.notify_all();
    }).detach();
    std::unique_lock<std::mutex> lock(shared->mutex);
    shared->done.wait_for(lock, std::chrono::milliseconds(timeoutMs), [&] { return shared->finished; });
    return shared->finished ? shared->address : QHostAddress();
}

QByteArray dechunk(const QByteArray &data, bool *ok)
{
    QByteArray out;
    int pos = 0;
    *ok = false;
    while (pos < data.size()) {
        const int lineEnd = data.indexOf("\r\n", pos);
        if (lineEnd < 0)
            return out;
        QByteArray sizeText = data.mid(pos, lineEnd - pos);
        const int semicolon = sizeText.indexOf(';');
        if (semicolon >= 0)
            sizeText.truncate(semicolon);
        bool numberOk = false;
        const qint64 size = sizeText.trimmed().toLongLong(&numberOk, 16);
        if (!numberOk || size < 0)
            return out;
        pos = lineEnd + 2;
        if (size == 0) {
            *ok = true;
            return out;
        }
        if (size > data.size() - pos)
            return out;
        out.append(data.constData() + pos, int(size));
        pos += int(size) + 2;
    }
    return out;
}

bool answerComplete(const QByteArray &raw)
{
    const int headerEnd = raw.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return false;
    const QByteArray header = raw.left(headerEnd).toLower();
    if (header.contains("transfer-encoding: chunked"))
        return raw.endsWith("\r\n0\r\n\r\n") || raw.size() == headerEnd + 9;
    const int at = header.indexOf("content-length:");
    if (at < 0)
        return false;
    int end = header.indexOf('\n', at);
    if (end < 0)
        end = header.size();
    const qint64 length = header.mid(at + 15, end - at - 15).trimmed().toLongLong();
    return raw.size() - headerEnd - 4 >= length;
}

} // namespace

BlockingGet::Result BlockingGet::parseResponse(const QByteArray &raw)
{
    Result result;
    const int headerEnd = raw.indexOf("\r\n\r\n");
    if (!raw.startsWith("HTTP/") || headerEnd < 0) {
        result.error = QStringLiteral("no HTTP answer");
        return result;
    }
    const QList<QByteArray> lines = raw.left(headerEnd).split('\n');
    const QList<QByteArray> statusParts = lines.first().trimmed().split(' ');
    result.status = statusParts.size() > 1 ? statusParts.at(1).toInt() : 0;
    bool chunked = false;
    qint64 length = -1;
    for (int i = 1; i < lines.size(); ++i) {
        const QByteArray line = lines.at(i).trimmed();
        const int colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray name = line.left(colon).trimmed().toLower();
        const QByteArray value = line.mid(colon + 1).trimmed().toLower();
        if (name == "transfer-encoding" && value.contains("chunked"))
            chunked = true;
        else if (name == "content-length")
            length = value.toLongLong();
    }
    QByteArray body = raw.mid(headerEnd + 4);
    bool complete = true;
    if (chunked)
        body = dechunk(body, &complete);
    else if (length >= 0) {
        complete = body.size() >= length;
        body.truncate(int(qMin<qint64>(length, body.size())));
    }
    result.body = body;
    if (result.status < 200 || result.status > 299)
        result.error = QStringLiteral("HTTP status %1").arg(result.status);
    else if (!complete)
        result.error = QStringLiteral("answer cut short");
    else
        result.ok = true;
    return result;
}

BlockingGet::Result BlockingGet::get(const QString &host, quint16 port, const QString &path, int timeoutMs)
{
    Result result;
    QElapsedTimer clock;
    clock.start();
    auto remaining = [&] { return int(qMax<qint64>(0, timeoutMs - clock.elapsed())); };

    const QHostAddress address = resolve(host, timeoutMs);
    if (address.isNull()) {
        result.error = QStringLiteral("host %1 not found").arg(host);
        return result;
    }
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(address, port);
    if (!socket.waitForConnected(qMax(1, remaining()))) {
        result.error = socket.errorString();
        return result;
    }
    const QByteArray hostText = host.contains(QLatin1Char(':')) ? "[" + host.toUtf8() + "]" : host.toUtf8();
    const QByteArray request = "GET " + path.toUtf8() + " HTTP/1.1\r\n"
        "Host: " + hostText + (port != 80 ? ":" + QByteArray::number(port) : QByteArray()) + "\r\n"
        "User-Agent: HTTPGET\r\n"
        "Cache-Control: no-cache\r\n"
        "Pragma: no-cache\r\n"
        "Connection: close\r\n\r\n";
    socket.write(request);
    QByteArray raw;
    while (true) {
        if (socket.bytesAvailable() == 0 && socket.state() != QAbstractSocket::ConnectedState)
            break;
        if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(qMax(1, remaining()))) {
            if (socket.state() == QAbstractSocket::ConnectedState) {
                result.error = QStringLiteral("timed out");
                return result;
            }
            break;
        }
        raw += socket.readAll();
        if (raw.size() > kMaxBodyBytes) {
            result.error = QStringLiteral("answer too large");
            return result;
        }
        // A server that keeps the connection open is done once the body
        // it announced is here.
        if (answerComplete(raw))
            break;
        if (remaining() == 0) {
            result.error = QStringLiteral("timed out");
            return result;
        }
    }
    return parseResponse(raw);
}
