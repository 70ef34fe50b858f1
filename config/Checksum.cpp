#include "config/Checksum.h"

#include "elements/Reports.h"

#include <QCryptographicHash>

QString Checksum::digestOf(const QByteArray &bytes)
{
    const int at = bytes.indexOf("</checksum>");
    if (at < 0)
        return QString();
    return QString::fromLatin1(QCryptographicHash::hash(bytes.mid(at), QCryptographicHash::Sha256).toHex());
}

QString Checksum::computeChecksum(const QByteArray &bytes, const QString &fileName)
{
    const QString digest = digestOf(bytes);
    if (digest.isEmpty())
        Report::noChecksumElement(fileName);
    return digest;
}

QString Checksum::placeholder()
{
    return QString(64, QLatin1Char('0'));
}
