#include "HttpTestServer.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QTcpServer>
#include <QTcpSocket>
#include <memory>
#include <vector>

namespace {

QSemaphore *g_ready = nullptr;

// Reads one request; false when the client went away first.
bool readRequest(QTcpSocket &socket, HttpTestServer::Request &request, const std::atomic<bool> &stop)
{
    QByteArray data;
    int headerEnd = -1;
    qint64 length = 0;
    QElapsedTimer clock;
    clock.start();
    while (!stop && clock.elapsed() < 10000) {
        if (socket.bytesAvailable() == 0 && !socket.waitForReadyRead(50)) {
            if (socket.state() != QAbstractSocket::ConnectedState)
                return false;
            continue;
        }
        data += socket.readAll();
        if (headerEnd < 0) {
            headerEnd = data.indexOf("\r\n\r\n");
            if (headerEnd < 0)
                continue;
            const QList<QByteArray> lines = data.left(headerEnd).split('\n');
            const QList<QByteArray> first = lines.first().trimmed().split(' ');
            request.method = first.value(0);
            request.path = first.value(1);
            for (int i = 1; i < lines.size(); ++i) {
                const int colon = lines.at(i).indexOf(':');
                if (colon > 0)
                    request.headers.insert(lines.at(i).left(colon).trimmed().toLower(),
                                           lines.at(i).mid(colon + 1).trimmed());
            }
            length = request.headers.value("content-length").toLongLong();
        }
        if (data.size() - headerEnd - 4 >= length) {
            request.body = data.mid(headerEnd + 4, int(length));
            return true;
        }
    }
    return false;
}

QByteArray render(const HttpTestServer::Response &r)
{
    if (r.mode == HttpTestServer::Response::Raw)
        return r.raw;
    QByteArray out = "HTTP/1.1 " + QByteArray::number(r.status) + " X\r\nContent-Type: text/plain\r\nConnection: close\r\n";
    if (r.chunked) {
        out += "Transfer-Encoding: chunked\r\n\r\n";
        // Uneven chunks, as servers send them.
        int pos = 0;
        int size = 7;
        while (pos < r.body.size()) {
            const QByteArray part = r.body.mid(pos, size);
            out += QByteArray::number(part.size(), 16) + "\r\n" + part + "\r\n";
            pos += part.size();
            size = size * 3 + 1;
        }
        out += "0\r\n\r\n";
    } else {
        out += "Content-Length: " + QByteArray::number(r.body.size()) + "\r\n\r\n" + r.body;
    }
    return out;
}

} // namespace

HttpTestServer::HttpTestServer(Handler handler)
    : m_handler(std::move(handler))
{
    QSemaphore ready;
    g_ready = &ready;
    start();
    ready.acquire();
    g_ready = nullptr;
}

HttpTestServer::~HttpTestServer()
{
    m_stop = true;
    wait();
}

QList<HttpTestServer::Request> HttpTestServer::requests() const
{
    QMutexLocker lock(&m_mutex);
    return m_requests;
}

void HttpTestServer::run()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    m_port = server.serverPort();
    g_ready->release();
    // Silent connections stay open, unanswered, until the server stops.
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    while (!m_stop) {
        if (!server.waitForNewConnection(50))
            continue;
        while (QTcpSocket *raw = server.nextPendingConnection()) {
            std::unique_ptr<QTcpSocket> socket(raw);
            socket->setParent(nullptr);
            Request request;
            if (!readRequest(*socket, request, m_stop))
                continue;
            {
                QMutexLocker lock(&m_mutex);
                m_requests.append(request);
            }
            const Response response = m_handler(request);
            if (response.mode == Response::Silent) {
                silent.push_back(std::move(socket));
                continue;
            }
            if (response.mode != Response::Close) {
                socket->write(render(response));
                while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(2000)) {
                }
            }
            socket->disconnectFromHost();
            if (socket->state() != QAbstractSocket::UnconnectedState)
                socket->waitForDisconnected(1000);
        }
    }
}
