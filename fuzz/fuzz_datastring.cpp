// Data and receive strings are written by hand in the sendUSB actions of
// descriptions; replies come from whatever is on the far end of the cable.
// One input is a data string, a line feed, a receive string, a line feed and
// the bytes of a reply. The data string is encoded with the example's
// defines and elements as names; the reply is cut by the receive string as
// recData cuts it, minus the link.
#include "FuzzEnvironment.h"

#include "device/DataString.h"
#include "device/ReceiveString.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "elements/DocumentTables.h"
#include "shell/MainWindow.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    FuzzEnvironment::start(argc, argv);
    FuzzEnvironment::instance().window();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    DocumentTables &tables = FuzzEnvironment::instance().window().tables();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const int first = bytes.indexOf('\n');
    const int second = first < 0 ? -1 : bytes.indexOf('\n', first + 1);
    const QString dataText = QString::fromUtf8(first < 0 ? bytes : bytes.left(first));
    const QString receiveText = first < 0 ? QString() : QString::fromUtf8(bytes.mid(first + 1, second < 0 ? -1 : second - first - 1));
    const QByteArray reply = second < 0 ? QByteArray() : bytes.mid(second + 1);

    // Names as DataTasks looks them up: records first, then elements.
    const DataString::NameLookup lookup = [&tables](const QString &name, quint32 *value) {
        if (DataClass *record = tables.dataValue(name)) {
            *value = record->getValue();
            return true;
        }
        if (ActiveElement *element = tables.element(name)) {
            *value = quint32(qint64(element->value(0).toDouble()));
            return true;
        }
        return false;
    };
    QStringList unconvertible;
    (void)DataString::encode(dataText, lookup, &unconvertible);

    (void)ReceiveString::needed(receiveText);
    int pos = 0;
    for (const ReceiveString::Token &token : ReceiveString::parse(receiveText)) {
        const int n = qMin(token.count, reply.size() - pos);
        QByteArray chunk = reply.mid(pos, n);
        pos += n;
        (void)ReceiveString::fold(chunk, token.littleEndian);
        if (token.littleEndian)
            std::reverse(chunk.begin(), chunk.end());
    }
    return 0;
}
