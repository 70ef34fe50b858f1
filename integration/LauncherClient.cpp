#include "integration/LauncherClient.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QStatusBar>
#include <QUrl>

LauncherClient::Manifest LauncherClient::parseManifest(const QByteArray &text)
{
    Manifest m;
    m.found = true;
    m.version = QStringLiteral("Unknown");
    // Taken whole: a NUL byte in the file must not hide the lines behind it.
    const QStringList lines = QString::fromUtf8(text.constData(), text.size()).split(QLatin1Char('\n'));
    for (QString line : lines) {
        line.remove(QLatin1Char('\r'));
        const QStringList parts = line.split(QStringLiteral(": "));
        // A line without ": " gives nothing; the keys stay as they are.
        if (line.contains(QLatin1String("Bundle-SymbolicName:")) && parts.size() > 1) {
            const QString name = parts.at(1).split(QLatin1Char(';')).first().trimmed();
            if (!name.isEmpty())
                m.toolFeatureId = name + QStringLiteral(".feature");
        } else if (line.contains(QLatin1String("Bundle-Version:")) && parts.size() > 1) {
            m.version = parts.at(1).trimmed();
        }
    }
    return m;
}

LauncherClient::Manifest LauncherClient::readManifest(const QString &programFolder)
{
    const QString path = QDir(programFolder).filePath(QStringLiteral("../META-INF/MANIFEST.MF"));
    if (!QFileInfo(path).isFile())
        return Manifest();
    QFile file(path);
    // An unreadable manifest still marks a launcher install, of unknown version.
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.read(1024 * 1024) : QByteArray();
    return parseManifest(text);
}

QString LauncherClient::payload(const QString &description, bool disableProductStateStorage)
{
    const QString base = QFileInfo(description).baseName();
    if (base.isEmpty() || disableProductStateStorage || base == QLatin1String("index"))
        return QString();
    return QStringLiteral("product: ") + base + QStringLiteral("; ");
}

QByteArray LauncherClient::registerBody(const QString &toolFeatureId, int port)
{
    return QStringLiteral("{\"request\":\"registerToolPort\",\"requestingToolFeatureId\":\"%1\",\"port\":\"%2\"}")
        .arg(toolFeatureId)
        .arg(port)
        .toUtf8();
}

QByteArray LauncherClient::stateBody(const QString &payload)
{
    return QStringLiteral("{\"request\":\"setCurrentState\",\"currentState\":{\"state\":\"RUNNING\","
                          "\"payload\":\"%1description: tool started.\"}}")
        .arg(payload)
        .toUtf8();
}

LauncherClient::LauncherClient(QObject *parent)
    : QObject(parent)
{
}

void LauncherClient::readManifestOf(const QString &programFolder)
{
    m_manifest = readManifest(programFolder);
    toolFeatureId = m_manifest.toolFeatureId;
}

QString LauncherClient::versionText() const
{
    if (!m_manifest.found)
        return tr("Quillon - Unsupported Version (Use the Norvane Lantern to get support)");
    return tr("Quillon - Version %1").arg(m_manifest.version);
}

void LauncherClient::decorateStatusBar(QStatusBar *bar) const
{
    auto *version = new QLabel(versionText(), bar);
    version->setObjectName(QStringLiteral("versionStatusLabel"));
    bar->addWidget(version);
    auto *ready = new QLabel(tr("Ready"), bar);
    ready->setObjectName(QStringLiteral("readyStatusLabel"));
    bar->addPermanentWidget(ready);
}

QString LauncherClient::launcherProgram(const QString &programFolder)
{
    const QDir dir(programFolder);
    for (const char *name : {"../../../Norvane-Lantern", "../../../Norvane-Lantern.exe"}) {
        const QString path = QDir::cleanPath(dir.filePath(QLatin1String(name)));
        if (QFileInfo(path).isFile())
            return path;
    }
    return QString();
}

bool LauncherClient::startHelp(const QString &programFolder)
{
    const QString program = launcherProgram(programFolder);
    if (program.isEmpty())
        return false;
    // The process object stays for the run, like the launcher it starts.
    auto *process = new QProcess(this);
    process->start(program, {QStringLiteral("-lantern.service"),
                             QStringLiteral("doStartTool com.nvx.ln.help.feature.feature.jar")});
    return true;
}

QNetworkAccessManager *LauncherClient::send(const QByteArray &verb, const QString &path, const QByteArray &body)
{
    auto *manager = new QNetworkAccessManager(this);
    // The service is on this machine: a proxy from the environment must not
    // get in between.
    manager->setProxy(QNetworkProxy::NoProxy);
    connect(manager, &QNetworkAccessManager::finished, manager, &QObject::deleteLater);
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(m_servicePort);
    url.setPath(path);
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("text/plain"));
    if (!body.isEmpty())
        request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    request.setTransferTimeout(m_transferTimeoutMs);
    if (verb == "GET")
        manager->get(request);
    else
        manager->sendCustomRequest(request, verb, body);
    return manager;
}

void LauncherClient::checkRegisteredTools(const QString &description)
{
    m_description = description;
    checkRegisteredTools();
}

void LauncherClient::checkRegisteredTools()
{
    toolPort = kServicePort;
    QNetworkAccessManager *manager = send("GET", QStringLiteral("/lantern-service/register/allTools"), QByteArray());
    connect(manager, &QNetworkAccessManager::finished, this, &LauncherClient::readingRegisteredTools);
}

namespace {

// The reply as text; a reply aborted by its time-out has nothing to read.
QString replyText(QNetworkReply *rep)
{
    const QByteArray data = rep->isOpen() ? rep->readAll() : QByteArray();
    return QString::fromUtf8(data.constData(), data.size());
}

} // namespace

void LauncherClient::readingRegisteredTools(QNetworkReply *rep)
{
    const QString text = replyText(rep);
    if (text.contains(toolFeatureId, Qt::CaseInsensitive))
        setLanternState();
    else
        registerTool();
}

void LauncherClient::registerTool()
{
    QNetworkAccessManager *manager =
        send("PUT", QStringLiteral("/lantern-service/register"), registerBody(toolFeatureId, toolPort));
    connect(manager, &QNetworkAccessManager::finished, this, &LauncherClient::onToolRegisterAttempt);
}

void LauncherClient::onToolRegisterAttempt(QNetworkReply *rep)
{
    const QString text = replyText(rep);
    // The walk goes up as long as the service refuses, but not past the
    // last port there is.
    if (text.contains(QLatin1String("port is already registered"), Qt::CaseInsensitive) && toolPort < 65535) {
        ++toolPort;
        registerTool();
    } else {
        setLanternState();
    }
}

void LauncherClient::setLanternState()
{
    QNetworkAccessManager *manager = send("POST", QStringLiteral("/lantern-service/state/") + toolFeatureId,
                                          stateBody(payload(m_description, disableProductStateStorage)));
    connect(manager, &QNetworkAccessManager::finished, this, &LauncherClient::stateReported);
}
