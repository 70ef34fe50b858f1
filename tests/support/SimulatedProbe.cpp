#include "SimulatedProbe.h"

#include "device/JLinkApi.h"

#include <QDir>
#include <QSettings>

#include <cstring>

SimulatedProbe::SimulatedProbe()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_store.path());
}

SimulatedProbe::~SimulatedProbe()
{
    JLinkApi::unload();
}

QString SimulatedProbe::folder(Variant variant)
{
    switch (variant) {
    case Full:
        return QStringLiteral(QUILLON_JLINK_SIM_DIR);
    case WithoutGo:
        return QStringLiteral(QUILLON_JLINK_PARTIAL_DIR);
    case Missing:
        break;
    }
    return QString();
}

bool SimulatedProbe::use(Variant variant)
{
    QSettings store(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("SEGGER"), QStringLiteral("J-Link"));
    store.setValue(QStringLiteral("InstallPath"), variant == Missing ? m_empty.path() : folder(variant));
    store.sync();
    JLinkApi::unload();
    if (m_library.isLoaded())
        m_library.unload();
    if (variant == Missing)
        return true;
    m_library.setFileName(QDir(folder(variant)).filePath(QStringLiteral("libjlinkarm.so")));
    if (!m_library.load())
        return false;
    reset();
    return true;
}

void SimulatedProbe::reset()
{
    if (auto f = fn<void (*)()>("SIMJLINK_Reset"))
        f();
}

void SimulatedProbe::setFailures(const QString &steps)
{
    if (auto f = fn<void (*)(const char *)>("SIMJLINK_SetFailures"))
        f(steps.toLatin1().constData());
}

void SimulatedProbe::setLogging(bool on)
{
    if (auto f = fn<void (*)(int)>("SIMJLINK_SetLogging"))
        f(on ? 1 : 0);
}

QStringList SimulatedProbe::log() const
{
    auto f = fn<int (*)(char *, int)>("SIMJLINK_Log");
    if (!f)
        return {};
    const int length = f(nullptr, 0);
    QByteArray text(length + 1, '\0');
    f(text.data(), text.size());
    text.truncate(length);
    return QString::fromLatin1(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void SimulatedProbe::clearLog()
{
    if (auto f = fn<void (*)()>("SIMJLINK_ClearLog"))
        f();
}

void SimulatedProbe::poke(quint32 address, const QByteArray &bytes)
{
    if (auto f = fn<int (*)(unsigned, unsigned, const void *)>("SIMJLINK_Poke"))
        f(address, unsigned(bytes.size()), bytes.constData());
}

void SimulatedProbe::pokeWord(quint32 address, quint32 value)
{
    poke(address, QByteArray(reinterpret_cast<const char *>(&value), 4));
}

QByteArray SimulatedProbe::peek(quint32 address, int count) const
{
    QByteArray bytes(count, '\0');
    if (auto f = fn<void (*)(unsigned, unsigned, void *)>("SIMJLINK_Peek"))
        f(address, unsigned(count), bytes.data());
    return bytes;
}

quint32 SimulatedProbe::peekWord(quint32 address) const
{
    quint32 v = 0;
    const QByteArray b = peek(address, 4);
    std::memcpy(&v, b.constData(), 4);
    return v;
}

long SimulatedProbe::reads() const
{
    auto f = fn<long (*)()>("SIMJLINK_Reads");
    return f ? f() : -1;
}

long SimulatedProbe::writes() const
{
    auto f = fn<long (*)()>("SIMJLINK_Writes");
    return f ? f() : -1;
}

bool SimulatedProbe::isOpen() const
{
    auto f = fn<int (*)()>("SIMJLINK_IsOpen");
    return f && f() != 0;
}
