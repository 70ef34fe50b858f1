#pragma once
#include <QByteArray>
#include <QString>

// The integrity mark of descriptions and configuration files: SHA-256 over
// the file's text-mode bytes from the first "</checksum>" to the end.
class Checksum
{
public:
    // Lower-case hexadecimal digest; empty (and reported, naming fileName)
    // when the bytes hold no "</checksum>".
    static QString computeChecksum(const QByteArray &bytes, const QString &fileName = QString());

    // The digest without any report; empty when there is no closing tag.
    static QString digestOf(const QByteArray &bytes);

    // Inserts or updates the digest of a description file. Without a
    // checksum element one is put behind the root's start tag. An empty name
    // does nothing. False when the file can't be read or written.
    static bool signFile(const QString &fileName);

    // The signed text of a description (what signFile writes).
    static QByteArray signedText(QString text, const QString &fileName = QString());

    // 64 zeros: what stands in the element until the file is signed.
    static QString placeholder();
};
