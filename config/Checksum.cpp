#include "config/Checksum.h"

#include "elements/Reports.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

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

QByteArray Checksum::signedText(QString text, const QString &fileName)
{
    int open = text.indexOf(QLatin1String("<checksum>"));
    if (open < 0) {
        QRegularExpressionMatch m = QRegularExpression(QStringLiteral("<nvxmlcfg version=\"\\d.\\d.\\d\">")).match(text);
        if (!m.hasMatch())
            m = QRegularExpression(QStringLiteral("<nvxmlcfg version=\"\\d.\\d\">")).match(text);
        if (m.hasMatch()) {
            const int end = text.indexOf(QLatin1Char('>'), m.capturedStart()) + 1;
            text.insert(end, QStringLiteral("\n\t<checksum>") + placeholder() + QStringLiteral("</checksum>"));
            open = text.indexOf(QLatin1String("<checksum>"));
        }
    }
    QByteArray bytes = text.toUtf8();
    const int close = bytes.indexOf("</checksum>");
    // A text without the element is reported without a file name.
    const QString digest = computeChecksum(bytes, close < 0 ? QString() : fileName);
    const int openByte = bytes.indexOf("<checksum>");
    if (openByte >= 0 && close >= 0) {
        const int start = openByte + int(qstrlen("<checksum>"));
        bytes.replace(start, close - start, digest.toLatin1());
    }
    return bytes;
}

bool Checksum::signFile(const QString &fileName)
{
    if (fileName.isEmpty())
        return false;
    QFile in(fileName);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(fileName, in.errorString());
        return false;
    }
    const QString text = QString::fromUtf8(in.readAll());
    in.close();
    const QByteArray bytes = signedText(text, QString());

    QSaveFile out(fileName);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Text) || out.write(bytes) != bytes.size() || !out.commit()) {
        out.cancelWriting();
        Report::cannotOpenFile(fileName, out.errorString());
        return false;
    }
    return true;
}
