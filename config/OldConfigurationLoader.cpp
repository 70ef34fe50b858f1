#include "config/OldConfigurationLoader.h"

#include "config/ConfigurationReader.h"
#include "config/Migration.h"
#include "elements/ActiveElement.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "model/Peripheral.h"
#include "model/Register.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

OldConfigurationLoader::OldConfigurationLoader(ConfigurationHost &host, HardwareModel &model)
    : m_host(host)
    , m_model(model)
{
}

void OldConfigurationLoader::applyToRegister(const Register *reg, const QString &valueText)
{
    const QString normalised = normaliseNumber(valueText);
    bool isNumber = false;
    const quint64 number = normalised.toULongLong(&isNumber);
    for (auto it = reg->claims.constBegin(); it != reg->claims.constEnd(); ++it) {
        ActiveElement *element = it.value();
        const quint64 mask = it.key();
        if (!isNumber) {
            // A text can only go to an element that holds the whole register.
            if (mask != 0)
                break;
            element->loadValue(valueText);
            continue;
        }
        if (mask == 0) {
            element->loadValue(QString::number(number));
            continue;
        }
        const int lsb = element->property("lsb").toInt();
        const quint64 part = (number & mask) >> (lsb > 0 && lsb < 64 ? lsb : 0);
        element->loadValue(QString::number(part));
    }
}

bool OldConfigurationLoader::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(fileName, file.errorString());
        return false;
    }
    const QStringList lines = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'));
    file.close();

    // 1. The description the configuration was made with.
    QString description;
    for (const QString &line : lines) {
        // "#define Config_File_Version 3" is another define, not the name.
        static const QLatin1String key("#define Config_File");
        if (line.startsWith(key) && (line.size() == key.size() || line.at(key.size()).isSpace())) {
            description = line.mid(key.size()).trimmed();
            break;
        }
    }
    const QString beside = QDir(QFileInfo(fileName).absolutePath()).filePath(description);
    const QString inHome = QDir(m_host.homeFolder()).filePath(description);
    const QString path = QFileInfo(beside).isFile() ? beside : inHome;
    if (description.isEmpty() || !QFileInfo(path).isFile()
        || !m_host.openDescription(QFileInfo(path).absoluteFilePath(), QFileInfo(fileName).absoluteFilePath())) {
        Report::scriptNotFound(description);
        return false;
    }

    // Names that moved since the file was written go to their new place.
    Migration migration;
    QString reason;
    const QString migrationFile = m_host.migrationPath();
    if (!migration.read(migrationFile, &reason)) {
        Report::cannotOpenFile(migrationFile, reason);
        return false;
    }

    // 2. What the form expects to hear about, in form order.
    QStringList expected;
    QSet<QString> pending;
    for (ActiveElement *element : m_host.tables().elementList) {
        const DefineText parts = DefineText::parse(element->define());
        if (element->define().isEmpty() || parts.registerName.isEmpty())
            continue;
        for (const QString &name : {parts.peripheral + QLatin1Char('_') + parts.registerName,
                                    parts.peripheral + QLatin1Char('.') + parts.registerName}) {
            if (!pending.contains(name)) {
                pending.insert(name);
                expected.append(name);
            }
        }
    }

    // 3. Each "#define NAME VALUE" goes to the register it names.
    for (const QString &line : lines) {
        if (!line.startsWith(QLatin1String("#define ")))
            continue;
        const QStringList parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts.size() < 3)
            continue;
        QString name = parts.at(1);
        if (name.compare(QLatin1String("NVXQuillon_Version"), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String("Config_File"), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String("Config_File_Version"), Qt::CaseInsensitive) == 0 || migration.isDropped(name))
            continue;
        const QString moved = migration.newName(name);
        if (!moved.isEmpty())
            name = moved;
        const QString value = parts.size() >= 4 ? parts.mid(2).join(QLatin1Char(' ')) : parts.at(2);
        const Register *reg = Migration::registerNamed(m_model, name);
        if (!reg) {
            unresolved.append(QStringLiteral("#define ") + name + QLatin1Char(' ') + value);
            continue;
        }
        // The register's own spelling: the name may carry a peripheral
        // whose name itself has underscores.
        const QString peripheral = name.left(name.size() - reg->name.size() - 1);
        pending.remove(peripheral + QLatin1Char('_') + reg->name);
        pending.remove(peripheral + QLatin1Char('.') + reg->name);
        applyToRegister(reg, value);
    }
    for (const QString &name : qAsConst(expected)) {
        if (pending.contains(name))
            unseen.append(name);
    }

    // 4. The old file stays as it was, beside.
    const QString backup = fileName + QStringLiteral(".bak");
    QFile::remove(backup);
    QFile::copy(fileName, backup);
    return true;
}
