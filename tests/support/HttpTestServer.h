#pragma once
#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QThread>
#include <atomic>
#include <functional>

// A small real HTTP server on a free loopback port, run on a thread of its
// own so that it also answers a client that blocks the test's thread. Each
// request is handed to the handler, which decides what the client gets.
class HttpTestServer : public QThread
{
public:
    struct Request
    {
        QByteArray method;
        QByteArray path;
        QMap<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
    };

    struct Response
    {
        enum Mode { Answer, Close, Silent, Raw };
        Mode mode = Answer;
        int status = 200;
        QByteArray body;
        bool chunked = false;
        QByteArray raw; // Raw: these bytes as they are, then close
    };

    using Handler = std::function<Response(const Request &)>;

    explicit HttpTestServer(Handler handler);
    ~HttpTestServer() override;

    quint16 port() const { return m_port; }
    QList<Request> requests() const;

protected:
    void run() override;

private:
    Handler m_handler;
    std::atomic<quint16> m_port{0};
    std::atomic<bool> m_stop{false};
    mutable QMutex m_mutex;
    QList<Request> m_requests;
};
