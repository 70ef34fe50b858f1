#include "QuillonRun.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

QString QuillonRun::binary()
{
    return QStringLiteral(QUILLON_BINARY);
}

QString QuillonRun::buildDir()
{
    return QStringLiteral(QUILLON_BUILD_DIR);
}

QString QuillonRun::sourceDir()
{
    return QStringLiteral(QUILLON_SOURCE_DIR);
}

QuillonRun QuillonRun::run(const QStringList &arguments, int timeoutMs, const QString &workingDir)
{
    static QTemporaryDir configHome;
    QuillonRun result;
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome.path());
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), configHome.path());
    process.setProcessEnvironment(env);
    if (!workingDir.isEmpty())
        process.setWorkingDirectory(workingDir);
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(binary(), arguments);
    if (!process.waitForStarted(10000))
        return result;
    result.finished = process.waitForFinished(timeoutMs);
    if (!result.finished) {
        process.kill();
        process.waitForFinished(5000);
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.standardOutput = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.standardError = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

QString readTextFile(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    return QString::fromLatin1(f.readAll());
}

bool writeTextFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return f.write(content) == content.size();
}

QByteArray signedDescription(QByteArray text)
{
    const int close = text.indexOf("</checksum>");
    const int open = text.indexOf("<checksum>");
    if (close < 0 || open < 0)
        return text;
    // Computed here independently of the program's own checksum code.
    const QByteArray digest = QCryptographicHash::hash(text.mid(close), QCryptographicHash::Sha256).toHex();
    text.replace(open + 10, close - open - 10, digest);
    return text;
}

QByteArray descriptionText(const QByteArray &body, const QByteArray &version)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<nvxmlcfg version=\"" + version + "\">\n\t<checksum>"
        + QByteArray(64, '0') + "</checksum>\n" + body + "\n</nvxmlcfg>\n";
}

bool writeDescription(const QString &path, const QByteArray &head, const QByteArray &body)
{
    return writeTextFile(path, signedDescription(descriptionText(head + body)));
}

QByteArray miniSvd(const QByteArray &fields, const QByteArray &moreRegisters)
{
    return "<?xml version=\"1.0\"?>\n<device><name>MINI</name><peripherals>\n"
           "<peripheral><name>P</name><baseAddress>0x40000000</baseAddress><registers>\n"
           "<register><name>R</name><addressOffset>0x0</addressOffset><size>32</size><fields>\n"
        + fields + "</fields></register>\n" + moreRegisters + "</registers></peripheral></peripherals></device>\n";
}
