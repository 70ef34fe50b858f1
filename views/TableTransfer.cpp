#include "views/TableTransfer.h"

#include "device/DataTasks.h"
#include "device/StickLink.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "shell/Dialogs.h"
#include "views/CellFormat.h"
#include "views/Table.h"
#include "views/ViewContext.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QThread>
#include <algorithm>

namespace {

bool lookupName(const QString &name, quint64 *value)
{
    DocumentTables *tables = DocumentTables::current();
    if (!tables)
        return false;
    if (ActiveElement *element = tables->element(name)) {
        *value = quint64(NumberFormat::toInt64(element->value(0)));
        return true;
    }
    if (DataClass *data = tables->dataValue(name)) {
        *value = data->getValue();
        return true;
    }
    return false;
}

void setReserved(const char *name, quint64 value)
{
    if (DocumentTables *tables = DocumentTables::current()) {
        if (DataClass *data = tables->dataValue(QLatin1String(name)))
            data->setValue(quint32(value));
    }
}

void paintRow(Table *table, int row, const QBrush &brush)
{
    QStandardItemModel *model = table->tableModel();
    if (row < 0 || row >= model->rowCount())
        return;
    for (int col = 0; col < model->columnCount(); ++col) {
        if (QStandardItem *item = model->item(row, col))
            item->setBackground(brush);
    }
}

// "0x" and the hexadecimal digits of a cell's number.
QString hexText(const QString &text)
{
    quint64 v = 0;
    CellFormat::toUnsigned(normaliseNumber(text.trimmed()), &v);
    return QStringLiteral("0x") + QString::number(v, 16);
}

void appendNumber(QByteArray &bytes, quint64 value, int n)
{
    const int count = qMin(8, qAbs(n));
    for (int i = 0; i < count; ++i) {
        const int shift = n > 0 ? 8 * (count - 1 - i) : 8 * i;
        bytes.append(char((value >> shift) & 0xFF));
    }
}

// Waits for the delay in 1 ms steps, the event loop running.
void pause(int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        QThread::msleep(1);
    }
}

// Bytes a board sent unasked, or after an earlier wait gave up, would be
// taken for this row's answer: the serial path drops them first.
void dropUnasked(StickLink *link)
{
    if (!StickLink::isStickPort() && link->serialPort().isOpen()) {
        link->serialPort().waitForReadyRead(0);
        link->serialPort().readAll();
    }
}

// The answer of the row just sent: 100 ms, 10 ms more each time it grew,
// the event loop running meanwhile (without user input). The stick's
// reply is whole after the transfer; a serial board's comes in pieces
// after it. False when the deadline passed or the link went away (events
// run here, and the document with its link may be closed by them).
bool awaitAnswer(DataTasks *tasks, StickLink *link, int needed, QByteArray *reply)
{
    *reply = link->takeReceived();
    QElapsedTimer clock;
    clock.start();
    qint64 deadline = DataTasks::kTableFirstWaitMs;
    int last = reply->size();
    for (;;) {
        if (tasks->existingLink() != link)
            return false;
        if (!StickLink::isStickPort() && link->serialPort().isOpen()) {
            link->serialPort().waitForReadyRead(0);
            *reply += link->serialPort().readAll();
        }
        if (reply->size() >= needed)
            return true;
        if (reply->size() > last)
            deadline += DataTasks::kTableGrowthWaitMs;
        last = reply->size();
        if (clock.elapsed() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
        QThread::msleep(1);
    }
}

bool askContinue(Table *table)
{
    if (Dialogs::quiet()) {
        // No one is there to answer: the send goes on, and says so.
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Quiet mode: </b></font>question \"SingleStep\" "
                                    "answered Yes.<br>"));
        return true;
    }
    QMessageBox box(QMessageBox::Question, QObject::tr("SingleStep"), QObject::tr("Continue with next command ?"),
                    QMessageBox::Yes | QMessageBox::No, table);
    if (table->messagePosition != QPoint(-1, -1))
        box.move(table->messagePosition);
    const int answer = box.exec();
    table->messagePosition = box.pos();
    return answer == QMessageBox::Yes;
}

} // namespace

QByteArray TableTransfer::encodeToken(const QString &token, const Lookup &lookup)
{
    QByteArray bytes;
    int n = 1;
    QString item = token.trimmed();
    const int colon = item.indexOf(QLatin1Char(':'));
    if (colon > 0) {
        bool ok = false;
        const int count = item.left(colon).trimmed().toInt(&ok);
        if (ok) {
            n = count;
            item = item.mid(colon + 1).trimmed();
        }
    }
    quint64 value = 0;
    if (item.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        bool ok = false;
        value = item.mid(2).toULongLong(&ok, 16);
        if (ok)
            appendNumber(bytes, value, n);
        return bytes;
    }
    if (lookup && lookup(item, &value)) {
        appendNumber(bytes, value, n);
        return bytes;
    }
    bool ok = false;
    value = item.toULongLong(&ok, 10);
    if (!ok) {
        Dialogs::message(nullptr, QMessageBox::Warning, QObject::tr("Send USB"),
                         QStringLiteral("Send USB: Cannot convert '%1'").arg(item));
        return bytes;
    }
    bytes.append(char(value & 0xFF));
    return bytes;
}

int TableTransfer::expectedBytes(const QString &recFormat)
{
    int total = 0;
    for (const QString &token : recFormat.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList parts = token.split(QLatin1Char(':'));
        total += parts.size() > 1 ? qAbs(parts.at(0).trimmed().toInt()) : 1;
    }
    return total;
}

TableTransfer::Decoded TableTransfer::decode(const QByteArray &bytes, const QString &recFormat)
{
    Decoded result;
    DocumentTables *tables = DocumentTables::current();
    int pos = 0;
    for (const QString &token : recFormat.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList parts = token.split(QLatin1Char(':'));
        int n = 1;
        QString rest = token;
        if (parts.size() > 1) {
            n = parts.at(0).trimmed().toInt();
            rest = parts.mid(1).join(QLatin1Char(':'));
        }
        const QStringList formatName = rest.split(QLatin1Char('|'));
        const QString format = formatName.at(0).trimmed();
        const QString name = formatName.value(1).trimmed();
        const int count = qMin(qAbs(n), qMax(0, bytes.size() - pos));
        const QByteArray chunk = bytes.mid(pos, count);
        pos += count;
        result.widths << quint16(count);
        if (format == QLatin1String("?") && name.isEmpty())
            continue;
        quint64 value = 0;
        for (int i = 0; i < chunk.size() && i < 8; ++i) {
            const int index = n > 0 ? i : chunk.size() - 1 - i;
            value = (value << 8) | quint8(chunk.at(index));
        }
        if (!name.isEmpty()) {
            ActiveElement *element = tables ? tables->element(name) : nullptr;
            DataClass *data = tables ? tables->dataValue(name) : nullptr;
            if (element) {
                element->setValue(QString::number(value), 0);
            } else if (data) {
                QByteArray ordered = chunk;
                if (n <= 0)
                    std::reverse(ordered.begin(), ordered.end());
                data->setBytes(ordered);
            } else if (format == QLatin1String("?")) {
                Report::invalidRecData(name);
                result.failed = true;
                return result;
            }
        }
        if (format != QLatin1String("?"))
            result.text += CellFormat::apply(format, value) + QLatin1Char(' ');
    }
    return result;
}

bool TableTransfer::toolTipValue(const QString &toolTipRecFormat, const QString &answer, const QList<quint16> &widths,
                                 quint64 *value, int *offset)
{
    const QStringList parts = toolTipRecFormat.split(QLatin1Char(';'));
    QString range = parts.value(0).trimmed();
    *offset = parts.value(1).trimmed().toInt();
    const bool reversed = range.startsWith(QLatin1Char('-'));
    if (reversed)
        range = range.mid(1);
    const QStringList bounds = range.split(QStringLiteral(".."));
    bool okFirst = false;
    bool okLast = true;
    const int first = bounds.value(0).toInt(&okFirst);
    const int last = bounds.size() > 1 ? bounds.at(1).toInt(&okLast) : first;
    const QStringList tokens = answer.trimmed().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!okFirst || !okLast || first < 0 || last >= tokens.size() || first > last)
        return false;
    quint64 result = 0;
    int shift = 0;
    auto add = [&](int i) {
        quint64 v = 0;
        CellFormat::toUnsigned(tokens.at(i), &v);
        if (shift < 64)
            result |= v << shift;
        shift += 8 * widths.value(i, 1);
    };
    if (reversed) {
        for (int i = tokens.size() - 1; i >= 0; --i)
            add(i);
    } else {
        for (int i = first; i <= last; ++i)
            add(i);
    }
    *value = result;
    return true;
}

void TableTransfer::send(Table *table)
{
    DataTasks *tasks = ViewContext::dataTasks();
    if (tasks)
        tasks->link();
    if (table->sendFormat().isEmpty())
        return;

    QStandardItemModel *model = table->tableModel();
    const int rows = model->rowCount();
    const QBrush white(Qt::white);
    const QBrush cyan(Qt::cyan);
    for (int row = 1; row < table->numRows() && row < rows; ++row)
        paintRow(table, row, white);
    const int startRow = table->currentRowIndex();
    const int startColumn = table->currentColumnIndex();
    table->clearSelection();
    table->messagePosition = QPoint(-1, -1);

    auto restore = [&]() {
        table->setWriteCursor(startRow, startColumn);
        table->selectRow(startRow);
    };

    for (int pass = 0; pass < table->sendLoop(); ++pass) {
        for (int row = pass == 0 ? startRow : 0; row < model->rowCount(); ++row) {
            const QString name = table->cellText(row, Table::RegName);
            const QString address = hexText(table->cellText(row, Table::Address));
            const QString func = hexText(table->cellText(row, Table::Func));
            const QString value = hexText(table->cellText(row, Table::Value));
            const int delay = normaliseNumber(table->cellText(row, Table::Delay).trimmed()).toInt();
            paintRow(table, row - 1, white);
            if (name.isEmpty())
                break;
            paintRow(table, row, cyan);

            QString text = table->sendFormat();
            text.replace(QLatin1String("$ADDRESS$"), address);
            text.replace(QLatin1String("$VALUE$"), value);
            text.replace(QLatin1String("$FUNC$"), func);
            setReserved("$ADDRESS$", address.mid(2).toULongLong(nullptr, 16));
            setReserved("$VALUE$", value.mid(2).toULongLong(nullptr, 16));
            setReserved("$FUNC$", func.mid(2).toULongLong(nullptr, 16));
            QByteArray bytes;
            for (const QString &token : text.split(QLatin1Char(';'), Qt::SkipEmptyParts))
                bytes += encodeToken(token, lookupName);

            StickLink *link = tasks ? tasks->existingLink() : nullptr;
            bool sent = false;
            if (link) {
                dropUnasked(link);
                sent = link->transfer(bytes);
                if (!sent) {
                    link->open();
                    sent = link->transfer(bytes);
                }
            }
            // A link that could not send has no answer to wait for.
            const int needed = TableTransfer::expectedBytes(table->recFormat());
            if (sent && needed > 0) {
                QByteArray reply;
                if (!awaitAnswer(tasks, link, needed, &reply))
                    return;
                const Decoded answer = decode(reply, table->recFormat());
                table->answerWidths = answer.widths;
                if (answer.failed)
                    return;
                table->lastRegisterNames[2] = table->lastRegisterNames[1];
                table->lastRegisterNames[1] = table->lastRegisterNames[0];
                table->lastRegisterNames[0] = name;
                if (QStandardItem *cell = table->cell(row, Table::Answer)) {
                    cell->setText(answer.text);
                    quint64 registerValue = 0;
                    int offset = 0;
                    if (!table->toolTipRecFormat().isEmpty()
                        && toolTipValue(table->toolTipRecFormat(), answer.text, answer.widths, &registerValue, &offset)
                        && offset <= 0 && offset >= -2)
                        table->decodeToolTip(registerValue, row, offset, table->lastRegisterNames[-offset]);
                    cell->setBackground(cyan);
                }
            }
            if (table->singleStep()) {
                if (!askContinue(table)) {
                    paintRow(table, row, white);
                    restore();
                    return;
                }
            } else if (delay > 0) {
                pause(delay);
            }
        }
    }
    restore();
}
