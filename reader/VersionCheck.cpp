#include "reader/VersionCheck.h"

#include "shell/AppVersion.h"

#include <QStringList>

quint64 VersionCheck::number(const QString &version)
{
    QStringList parts = version.split(QLatin1Char('.'));
    while (parts.size() < 3)
        parts.append(QStringLiteral("0"));
    const quint64 a = parts.at(0).trimmed().toULongLong();
    const quint64 b = parts.at(1).trimmed().toULongLong();
    const quint64 c = parts.at(2).trimmed().toULongLong();
    return (a * 1000 + b) * 1000 + c;
}

VersionCheck::Verdict VersionCheck::check(const QString &rootName, const QString &version, bool homePage)
{
    const quint64 n = number(version);
    if (n >= 1 && n <= 9999 && !homePage)
        return OnlyV1;
    if (homePage)
        return Accepted;
    if (rootName == QLatin1String("nvxmlcfg") && n <= AppVersion::number())
        return Accepted;
    return TooNew;
}

QString VersionCheck::v1OnlyText()
{
    return QStringLiteral("Error: The selected configuration is supported by Quillon V1.x only.\n"
                          "Please refer to the Norvane homepage to download Quillon V1.x.");
}
