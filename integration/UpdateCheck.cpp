#include "integration/UpdateCheck.h"

#include "shell/AppVersion.h"
#include "shell/Dialogs.h"
#include "shell/Preferences.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QSettings>

namespace {

// A version text between prefix and ".jar" is short; anything longer is a
// match inside some other text.
const int kMaxVersionText = 128;

bool decimal(const QByteArray &text, quint64 *value)
{
    if (text.isEmpty() || text.size() > 9)
        return false;
    for (char c : text) {
        if (c < '0' || c > '9')
            return false;
    }
    *value = text.toULongLong();
    return true;
}

} // namespace

const QString &UpdateCheck::defaultPrefix()
{
    static const QString prefix = QStringLiteral("com.nvx.ln.legacy.qlpanel.feature_");
    return prefix;
}

qint64 UpdateCheck::thresholdSeconds(int period)
{
    // Ten times a day, a week and a month: the values as they have always
    // been shipped, kept so that installed copies do not all start asking.
    switch (period) {
    case 1: return 864000;
    case 2: return 6048000;
    case 3: return 25920000;
    default: return 6048000;
    }
}

bool UpdateCheck::isDue(int period, const QDateTime &lastUpdate, const QDateTime &now)
{
    if (period == 0)
        return false;
    const QDateTime last = lastUpdate.isValid() ? lastUpdate : now;
    return last.secsTo(now) > thresholdSeconds(period);
}

QString UpdateCheck::featurePrefix(const QString &programFolder)
{
    const QString marker = QStringLiteral("/plugins/");
    const int at = programFolder.indexOf(marker);
    if (at < 0)
        return defaultPrefix();
    const QString rest = programFolder.mid(at + marker.size());
    const int underscore = rest.indexOf(QLatin1Char('_'));
    const QString plugin = underscore < 0 ? rest : rest.left(underscore);
    if (plugin.isEmpty())
        return defaultPrefix();
    return plugin + QStringLiteral(".feature_");
}

quint64 UpdateCheck::versionNumber(quint64 major, quint64 minor, quint64 patch)
{
    return (major * 1000 + minor) * 1000 + patch;
}

UpdateCheck::Candidate UpdateCheck::newestIn(const QByteArray &listing, const QString &prefixText, quint64 ownNumber)
{
    Candidate best;
    const QByteArray prefix = prefixText.toUtf8();
    if (prefix.isEmpty())
        return best;
    int jar = -1;
    int from = 0;
    while (true) {
        const int at = listing.indexOf(prefix, from);
        if (at < 0)
            break;
        const int start = at + prefix.size();
        from = start;
        // One ".jar" serves every prefix before it: a single forward pass
        // even over a listing of megabytes.
        if (jar < start) {
            jar = listing.indexOf(".jar", start);
            if (jar < 0)
                break;
        }
        if (jar - start > kMaxVersionText)
            continue;
        const QList<QByteArray> parts = listing.mid(start, jar - start).split('.');
        quint64 major = 0, minor = 0, patch = 0;
        if (parts.size() < 3 || !decimal(parts.at(0), &major) || !decimal(parts.at(1), &minor)
            || !decimal(parts.at(2), &patch))
            continue;
        const quint64 number = versionNumber(major, minor, patch);
        if ((number >= 1 && number <= 9999) || number <= ownNumber || number <= best.number)
            continue;
        best.number = number;
        best.version = QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(patch);
    }
    return best;
}

QList<UpdateCheck::Site> UpdateCheck::sites(const QString &internalHost, const QString &publicHost)
{
    QList<Site> list;
    const struct { QString host; const char *path; } configured[] = {
        {internalHost.trimmed(), "/updatesite/stable/plugins"},
        {publicHost.trimmed(), "/stable/features"},
    };
    for (const auto &c : configured) {
        if (c.host.isEmpty())
            continue;
        Site site;
        site.path = QLatin1String(c.path);
        site.host = c.host;
        // "name", "name:port", "[v6]" or "[v6]:port"; a bare IPv6 address
        // has more than one colon and no port.
        QString portText;
        if (c.host.startsWith(QLatin1Char('['))) {
            const int close = c.host.indexOf(QLatin1Char(']'));
            if (close < 0)
                continue;
            site.host = c.host.mid(1, close - 1);
            if (c.host.mid(close + 1).startsWith(QLatin1Char(':')))
                portText = c.host.mid(close + 2);
            else if (close + 1 != c.host.size())
                continue;
        } else if (c.host.count(QLatin1Char(':')) == 1) {
            const int colon = c.host.indexOf(QLatin1Char(':'));
            site.host = c.host.left(colon);
            portText = c.host.mid(colon + 1);
        }
        if (!portText.isNull()) {
            bool ok = false;
            const uint port = portText.toUInt(&ok);
            if (!ok || port == 0 || port > 65535 || site.host.isEmpty())
                continue;
            site.port = quint16(port);
        }
        list.append(site);
    }
    return list;
}

UpdateCheck::UpdateCheck(Preferences &preferences)
    : m_preferences(preferences)
    , m_ownNumber(AppVersion::number())
    , m_prefix(featurePrefix(QCoreApplication::applicationDirPath()))
{
    tell = [](const QString &version) {
        const QString title = QStringLiteral("A newer version of Quillon is available.");
        const QString text = QStringLiteral("A newer version of Quillon (V%1) is available.\n"
                                            "Please update with Norvane Lantern.").arg(version);
        if (Dialogs::quiet()) {
            Dialogs::message(nullptr, QMessageBox::Information, title, text);
            return false;
        }
        QMessageBox box(QMessageBox::Information, title, text, QMessageBox::Ok);
        auto *never = new QCheckBox(QStringLiteral("Never remind me (can be configured in \"Settings\" dialog)."), &box);
        box.setCheckBox(never);
        box.exec();
        return never->isChecked();
    };
    fetch = [](const Site &site, int timeoutMs) { return BlockingGet::get(site.host, site.port, site.path, timeoutMs); };
}

void UpdateCheck::storeLastUpdate(const QDateTime &when)
{
    m_preferences.lastUpdate = when;
    QSettings s(QCoreApplication::organizationName(), Preferences::applicationKey());
    s.setValue(QStringLiteral("LastUpdate"), when);
}

void UpdateCheck::storeNeverRemind()
{
    m_preferences.updatePeriod = 0;
    QSettings s(QCoreApplication::organizationName(), Preferences::applicationKey());
    s.setValue(QStringLiteral("UpdatePeriod"), 0);
}

QString UpdateCheck::run(const QDateTime &now)
{
    if (m_sites.isEmpty() || !isDue(m_preferences.updatePeriod, m_preferences.lastUpdate, now))
        return QString();
    for (const Site &site : qAsConst(m_sites)) {
        const BlockingGet::Result answer = fetch(site, m_timeoutMs);
        if (!answer.ok || answer.body.isEmpty())
            continue;
        storeLastUpdate(now);
        const Candidate newest = newestIn(answer.body, m_prefix, m_ownNumber);
        if (newest.number == 0)
            continue;
        if (tell(newest.version))
            storeNeverRemind();
        return newest.version;
    }
    return QString();
}
