#pragma once
#include <QByteArray>
#include <QString>

// One plain HTTP GET that blocks the calling thread, bounded in time: the
// name lookup, the connection and the whole transfer each stop at the
// deadline, so a machine without network is not kept waiting. Used at start
// for the update listing, before anything else needs the event loop.
class BlockingGet
{
public:
    // The whole request, lookup included, ends after this long.
    static constexpr int kDefaultTimeoutMs = 2500;
    // A bigger body is cut here: no directory listing comes near it.
    static constexpr int kMaxBodyBytes = 32 * 1024 * 1024;

    struct Result
    {
        bool ok = false;     // a 2xx answer was read completely
        int status = 0;      // the HTTP status, 0 without an answer
        QByteArray body;     // decoded (chunked transfer undone)
        QString error;       // why not ok
    };

    static Result get(const QString &host, quint16 port, const QString &path,
                      int timeoutMs = kDefaultTimeoutMs);

    // Splits a raw answer into status and body; exposed for the tests.
    static Result parseResponse(const QByteArray &raw);
};
