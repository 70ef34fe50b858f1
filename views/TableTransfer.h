#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <functional>

class Table;

// Sends a table's rows to the board over the stick link, one row after the
// other: the row's `sendformat` becomes bytes, the answer is awaited (100
// ms, 10 ms more per growth), decoded by `recformat` into the answer cell
// and explained against the SVD model. Waits keep the event loop running.
class TableTransfer
{
public:
    static void send(Table *table);

    // One `sendformat` token ("item" or "n:item") as bytes; lookup gives
    // the value of an element or variable of that name. A number that
    // can't be read is reported and adds nothing.
    using Lookup = std::function<bool(const QString &name, quint64 *value)>;
    static QByteArray encodeToken(const QString &token, const Lookup &lookup);
    // Bytes a `recformat` expects: the sum of its tokens' counts.
    static int expectedBytes(const QString &recFormat);

    // The outcome of decoding an answer.
    struct Decoded
    {
        QString text;          // formatted tokens, each followed by a blank
        QList<quint16> widths; // bytes taken by each token
        bool failed = false;   // a name that names nothing
    };
    static Decoded decode(const QByteArray &bytes, const QString &recFormat);

    // The register value `tooltiprecformat` picks out of an answer text;
    // false when its bounds fall outside the tokens. offset gets the row
    // offset (0, -1, -2).
    static bool toolTipValue(const QString &toolTipRecFormat, const QString &answer, const QList<quint16> &widths,
                             quint64 *value, int *offset);
};
