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

    // 64 zeros: what stands in the element until the file is signed.
    static QString placeholder();
};
