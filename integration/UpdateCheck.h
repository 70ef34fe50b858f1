#pragma once
#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

#include "integration/BlockingGet.h"

class Preferences;

// Looks once at start on the launcher's update sites whether a newer
// feature of this program is published there. It is a text search in the
// sites' directory listings, not a package client: a listing names files
// like "<prefix>2.6.0.v2024.jar", and the largest version above our own
// wins. Nothing is ever reported as an error: no network, a bad site or an
// odd listing just end the check.
class UpdateCheck
{
public:
    struct Site
    {
        QString host;
        quint16 port = 80;
        QString path;
    };

    struct Candidate
    {
        QString version;    // "major.minor.patch"
        quint64 number = 0; // 0: none
    };

    static const QString &defaultPrefix();

    // The seconds that must pass since the last answer, by UpdatePeriod.
    static qint64 thresholdSeconds(int period);
    // Whether a check is due; an invalid lastUpdate counts as now.
    static bool isDue(int period, const QDateTime &lastUpdate, const QDateTime &now);
    // The feature prefix of this installation, from the program's folder.
    static QString featurePrefix(const QString &programFolder);
    // (major * 1000 + minor) * 1000 + patch
    static quint64 versionNumber(quint64 major, quint64 minor, quint64 patch);
    // The newest version in a listing above ownNumber; numbers from 1 to
    // 9999 are ignored.
    static Candidate newestIn(const QByteArray &listing, const QString &prefix, quint64 ownNumber);
    // The two sites in the order they are tried; a host of "name[:port]",
    // an empty host leaves its site out.
    static QList<Site> sites(const QString &internalHost, const QString &publicHost);

    explicit UpdateCheck(Preferences &preferences);

    void setSites(const QList<Site> &sites) { m_sites = sites; }
    void setOwnNumber(quint64 number) { m_ownNumber = number; }
    void setPrefix(const QString &prefix) { m_prefix = prefix; }
    void setTimeoutMs(int ms) { m_timeoutMs = ms; }

    // Runs the check; returns the newer version found (empty: none, or no
    // check was due).
    QString run(const QDateTime &now = QDateTime::currentDateTimeUtc());

    // Tells the user about a newer version; true when "Never remind me" was
    // checked. The default shows the box (in quiet mode: a console line).
    std::function<bool(const QString &version)> tell;
    // Fetches one site's listing; the default is a BlockingGet.
    std::function<BlockingGet::Result(const Site &site, int timeoutMs)> fetch;

private:
    void storeLastUpdate(const QDateTime &when);
    void storeNeverRemind();

    Preferences &m_preferences;
    QList<Site> m_sites;
    quint64 m_ownNumber = 0;
    QString m_prefix;
    int m_timeoutMs = BlockingGet::kDefaultTimeoutMs;
};
