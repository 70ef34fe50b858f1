#include "integration/KeilToolStore.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

KeilToolStore::KeilToolStore(const QString &fileName)
    : m_fileName(fileName)
    , m_settings(new QSettings(fileName, QSettings::IniFormat))
{
}

KeilToolStore::~KeilToolStore() = default;

QString KeilToolStore::defaultFileName()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(QStringLiteral("Keil/uVision5/ToolM.ini"));
}

bool KeilToolStore::exists() const
{
    return QFileInfo(QFileInfo(m_fileName).absolutePath()).isDir();
}

QString KeilToolStore::key(const char *name, int index) const
{
    return QStringLiteral("ToolM/%1%2").arg(QLatin1String(name)).arg(index);
}

QVariant KeilToolStore::value(const char *name, int index) const
{
    return m_settings->value(key(name, index));
}

QString KeilToolStore::text(const char *name, int index) const
{
    const QVariant v = value(name, index);
    // A text with a comma comes back from the INI format as a list.
    if (v.type() == QVariant::StringList)
        return v.toStringList().join(QLatin1Char(','));
    return v.toString();
}

int KeilToolStore::flags(int index, bool *isNumber) const
{
    const QVariant v = value("Mfg", index);
    const QString s = v.toString().trimmed();
    bool ok = false;
    int n = 0;
    if (!v.isValid() || s.isEmpty()) {
        // A missing value reads as 0, as an absent registry value does.
        ok = true;
    } else {
        n = s.startsWith(QLatin1String("0x"), Qt::CaseInsensitive) ? s.mid(2).toInt(&ok, 16) : s.toInt(&ok, 10);
        if (!ok)
            n = -1;
    }
    if (isNumber)
        *isNumber = ok;
    return n;
}

void KeilToolStore::setValue(const char *name, int index, const QVariant &value)
{
    m_settings->setValue(key(name, index), value);
}

void KeilToolStore::clear()
{
    m_settings->remove(QStringLiteral("ToolM"));
}

bool KeilToolStore::sync()
{
    m_settings->sync();
    return m_settings->status() == QSettings::NoError;
}
