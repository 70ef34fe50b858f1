#include "shell/AppVersion.h"

#include "BuildVersion.h"

namespace AppVersion {

unsigned major() { return QUILLON_VERSION_MAJOR; }
unsigned minor() { return QUILLON_VERSION_MINOR; }
unsigned patch() { return QUILLON_VERSION_PATCH; }

QString text()
{
    return QStringLiteral("%1.%2.%3").arg(major()).arg(minor()).arg(patch());
}

quint64 number()
{
    return (quint64(major()) * 1000 + minor()) * 1000 + patch();
}

} // namespace AppVersion
