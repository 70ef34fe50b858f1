#include "config/OldConfigurationLoader.h"

#include "config/ConfigurationReader.h"
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
        if (line.startsWith(QLatin1String("#define Config_File"))) {
            description = line.mid(int(qstrlen("#define Config_File"))).trimmed();
            break;
        }
    }
    const QString beside = QDir(QFileInfo(fileName).absolutePath()).filePath(description);
    const QString inHome = QDir(m_host.homeFolder()).filePath(description);
    const QString path = QFileInfo(beside).isFile() ? beside : inHome;
    if (description.isEmpty() || !QFileInfo(path).isFile() || !m_host.openDescription(QFileInfo(path).absoluteFilePath())) {
        Report::scriptNotFound(description);
        return false;
    }

    // 2. What the form expects to hear about.
    QStringList expected;
    for (ActiveElement *element : m_host.tables().elementList) {
        const DefineText parts = DefineText::parse(element->define());
        if (element->define().isEmpty() || parts.registerName.isEmpty())
            continue;
        for (const QString &name : {parts.peripheral + QLatin1Char('_') + parts.registerName,
                                    parts.peripheral + QLatin1Char('.') + parts.registerName}) {
            if (!expected.contains(name))
                expected.append(name);
        }
    }

    // 3. Each "#define NAME VALUE" goes to the register it names.
    for (const QString &line : lines) {
        if (!line.startsWith(QLatin1String("#define ")))
            continue;
        const QStringList parts = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts.size() < 3)
            continue;
        const QString name = parts.at(1);
        if (name.compare(QLatin1String("NVXQuillon_Version"), Qt::CaseInsensitive) == 0
            || name.compare(QLatin1String("Config_File"), Qt::CaseInsensitive) == 0)
            continue;
        const QString value = parts.size() >= 4 ? parts.mid(2).join(QLatin1Char(' ')) : parts.at(2);
        bool applied = false;
        for (int at = name.indexOf(QLatin1Char('_')); at >= 0; at = name.indexOf(QLatin1Char('_'), at + 1)) {
            const Peripheral *peripheral = m_model.findPeripheral(name.left(at));
            const Register *reg = peripheral ? HardwareModel::findRegister(peripheral, name.mid(at + 1)) : nullptr;
            if (!reg)
                continue;
            expected.removeAll(name.left(at) + QLatin1Char('_') + reg->name);
            expected.removeAll(name.left(at) + QLatin1Char('.') + reg->name);
            applyToRegister(reg, value);
            applied = true;
            break;
        }
        if (!applied)
            unresolved.append(QStringLiteral("#define ") + name + QLatin1Char(' ') + value);
    }
    unseen = expected;

    // 4. The old file stays as it was, beside.
    const QString backup = fileName + QStringLiteral(".bak");
    QFile::remove(backup);
    QFile::copy(fileName, backup);
    return true;
}
