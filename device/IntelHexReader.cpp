#include "device/IntelHexReader.h"

#include <QFile>
#include <QList>

QList<MemoryBlock> IntelHexReader::read(const QString &fileName, QString *error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error)
            *error = file.errorString();
        return {};
    }
    return parse(file.readAll());
}

QList<MemoryBlock> IntelHexReader::parse(const QByteArray &text)
{
    QList<MemoryBlock> blocks;
    quint32 upper = 0;
    quint32 next = 0;
    bool haveBlock = false;
    for (const QByteArray &rawLine : text.split('\n')) {
        // Lines are read up to 1024 characters; a longer one is cut there.
        const QByteArray line = rawLine.trimmed().left(1024);
        if (line.isEmpty() || line.at(0) != ':')
            break;
        bool ok = false;
        const int count = line.mid(1, 2).toInt(&ok, 16);
        if (!ok)
            break;
        const quint32 offset = line.mid(3, 4).toUInt(&ok, 16);
        if (!ok)
            break;
        const int type = line.mid(7, 2).toInt(&ok, 16);
        if (!ok)
            break;
        const QByteArray data = QByteArray::fromHex(line.mid(9, count * 2));
        if (type == 0x04 && data.size() >= 2) {
            upper = (quint32(quint8(data.at(0))) << 8) | quint8(data.at(1));
        } else if (type == 0x00) {
            const quint32 address = upper * 0x10000 + offset;
            if (!haveBlock || address != next) {
                blocks.append(MemoryBlock{address, QByteArray()});
                haveBlock = true;
            }
            blocks.last().bytes.append(data);
            next = address + quint32(data.size());
        } else if (type == 0x01) {
            break;
        }
    }
    return blocks;
}
