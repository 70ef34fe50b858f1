#include "config/HeaderExporter.h"

#include "elements/MessageSink.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

HeaderExporter::HeaderExporter(const HardwareModel &model, const Options &options)
    : m_model(model)
    , m_options(options)
{
}

QString HeaderExporter::registerLine(const QString &name, const QString &reg, const QString &value, bool failed)
{
    if (failed) {
        return reg.isEmpty() ? QStringLiteral("#define %1 %2\n\n").arg(name, value)
                             : QStringLiteral("#define %1_%2 %3\n\n").arg(name, reg, value);
    }
    if (value.startsWith(QLatin1Char('-')) || value.contains(QLatin1Char('.')) || value.contains(QLatin1String("e+"))
        || value.contains(QLatin1String("e-"))) {
        return reg.isEmpty() ? QStringLiteral("#define %1 (%2)\n\n").arg(name, value)
                             : QStringLiteral("#define %1_%2 (%3)\n\n").arg(name, reg, value);
    }
    const QString hex = QString::number(value.toULongLong(), 16).toUpper();
    return reg.isEmpty() ? QStringLiteral("#define %1 (0x%2) /*decimal %3*/\n\n").arg(name, hex, value)
                         : QStringLiteral("#define %1_%2 (0x%3) /*decimal %4*/\n\n").arg(name, reg, hex, value);
}

QMap<QString, QString> HeaderExporter::buildTexts() const
{
    QMap<QString, QString> texts;
    QStringList names = m_model.peripherals().keys();
    std::sort(names.begin(), names.end());
    for (const QString &peripheralName : names) {
        const Peripheral *peripheral = m_model.peripherals().value(peripheralName);
        for (const Register *reg : peripheral->registersByAddress()) {
            if (reg->header.isEmpty())
                continue;
            bool failed = false;
            const QString value = m_model.composeRegisterValue(reg, &failed);
            QString name = peripheralName;
            if (m_options.definePrefixes.contains(reg->header))
                name = m_options.definePrefixes.value(reg->header) + QLatin1Char('$') + peripheralName;
            texts[reg->header] += registerLine(name, reg->name, value, failed);
        }
    }
    return texts;
}

QString HeaderExporter::guardName(const QString &header)
{
    QStringList parts = header.split(QLatin1Char('#'));
    std::sort(parts.begin(), parts.end());
    QString guard = parts.join(QLatin1Char('#'));
    guard.remove(QLatin1String(".h"));
    return QStringLiteral("%1_H").arg(guard.toUpper());
}

QString HeaderExporter::versionBlock(const QString &header, const QString &versionText)
{
    QString version = versionText;
    if (version.isEmpty())
        return QString();
    if (version.startsWith(QLatin1Char('V')))
        version.remove(0, 1);
    const QStringList parts = version.split(QLatin1Char('.'));
    QString number = parts.first();
    for (int i = 1; i < parts.size(); ++i)
        number += QStringLiteral("%1").arg(parts.at(i).toInt(), 2, 10, QLatin1Char('0'));
    QString module = header.split(QLatin1Char('_')).first().trimmed();
    module.remove(QLatin1String(".h"));
    module = module.toUpper();
    return QStringLiteral("/* XML Version %1 */\n").arg(version)
        + QStringLiteral("#define %1_XML_VERSION (%2)\n\n").arg(module, number);
}

QString HeaderExporter::refusalLine(const QList<Conflict> &conflicts)
{
    QStringList links;
    for (const Conflict &c : conflicts)
        links << c.first + QStringLiteral("\">") + c.second;
    return QStringLiteral("<font color=\"red\"><b>Warning: </font></b> Could not export headerfiles. <a href=\"")
        + links.join(QStringLiteral("</a> and <a href=\"")) + QStringLiteral("</a> ")
        + (conflicts.size() == 1 ? QStringLiteral("is") : QStringLiteral("are"))
        + QStringLiteral(" in a conflicted state!<br>");
}

QString HeaderExporter::banner() const
{
    QFile file(m_options.disclaimerPath);
    if (m_options.disclaimerPath.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Disclaimer file \"%1\" is missing</b></font><br>")
                         .arg(m_options.disclaimerPath));
        return QString();
    }
    return QString::fromUtf8(file.readAll());
}

bool HeaderExporter::writeHeader(const QString &header, const QString &text, const QString &bannerText) const
{
    const QString path = QDir(m_options.exportFolder).absoluteFilePath(header);
    const QString guard = guardName(header);
    const QString version = m_options.headerVersions.value(header, m_options.versionText);
    QString content = bannerText;
    content += QStringLiteral("#ifndef ") + guard + QLatin1Char('\n');
    content += QStringLiteral("#define ") + guard + QStringLiteral("\n\n");
    content += versionBlock(header, version);
    content += text;
    content += QStringLiteral("#endif /* ") + guard + QStringLiteral(" */\n");

    // Written through a temporary file: the old header stays whole if the
    // disk fills up or the program is stopped halfway.
    QSaveFile file(path);
    const QByteArray bytes = content.toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text) || file.write(bytes) != bytes.size() || !file.commit()) {
        file.cancelWriting();
        consolePrint(QStringLiteral("<font color=\"orange\"><b>Could not write header file \"%1\"</b></font><br>").arg(path));
        return false;
    }
    consolePrint(QStringLiteral("<font color=\"blue\"><b>Exported headerfile:</b></font> %1<br>").arg(path));
    return true;
}

int HeaderExporter::exportHeaders(bool writeAll, QMap<QString, bool> &flags, const QList<Conflict> &conflicts)
{
    if (!conflicts.isEmpty()) {
        consolePrint(refusalLine(conflicts));
        return 0;
    }
    const QMap<QString, QString> texts = buildTexts();
    QString bannerText;
    bool bannerRead = false;
    int written = 0;
    for (auto it = texts.constBegin(); it != texts.constEnd(); ++it) {
        const bool needed = writeAll || !flags.contains(it.key()) || flags.value(it.key());
        if (!needed)
            continue;
        if (!bannerRead) {
            bannerText = banner();
            bannerRead = true;
        }
        if (writeHeader(it.key(), it.value(), bannerText)) {
            flags.insert(it.key(), false);
            ++written;
        }
    }
    return written;
}
