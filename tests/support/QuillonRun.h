#pragma once
#include <QString>
#include <QStringList>

// Runs the real quillon binary headless and collects what it left behind.
struct QuillonRun
{
    int exitCode = -1;
    bool finished = false;   // false: it had to be killed (a hang)
    QString standardOutput;
    QString standardError;

    // Runs quillon with the arguments, offscreen, with its own settings
    // folder, and waits at most timeoutMs.
    static QuillonRun run(const QStringList &arguments, int timeoutMs = 60000, const QString &workingDir = QString());

    // Path of the binary under test and of the build folder beside it.
    static QString binary();
    static QString buildDir();
    static QString sourceDir();
};

// Reads a whole text file; empty when it can't be read.
QString readTextFile(const QString &path);
// Writes a text file, creating its folder.
bool writeTextFile(const QString &path, const QByteArray &content);
// A description text with a correct digest (the placeholder replaced).
QByteArray signedDescription(QByteArray text);
// The text of a description of the version, unsigned (its checksum a
// placeholder), with `body` in its root.
QByteArray descriptionText(const QByteArray &body, const QByteArray &version = "2.0.0");
// Writes a signed description of version 2.0.0: its root holds `head`
// (the svd element and the like) and then `body`.
bool writeDescription(const QString &path, const QByteArray &head, const QByteArray &body);
// An SVD file of the device MINI: peripheral P at 0x40000000 whose 32-bit
// register R at offset 0 has the <field> elements given, then the further
// <register> elements.
QByteArray miniSvd(const QByteArray &fields = QByteArray(), const QByteArray &moreRegisters = QByteArray());
