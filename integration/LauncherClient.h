#pragma once
#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;
class QStatusBar;

// Announces this program to the Lantern launcher's local REST service: it
// registers a tool port and reports a running state with the document in
// use. The service may not be there at all; then every call fails quietly,
// in the background, and nobody waits for it.
class LauncherClient : public QObject
{
    Q_OBJECT
public:
    // The service's port and the first tool port offered to it.
    static constexpr int kServicePort = 50000;
    // A service that accepts a request and never answers is given up after
    // this long.
    static constexpr int kTransferTimeoutMs = 5000;

    struct Manifest
    {
        bool found = false;
        QString toolFeatureId;
        QString version; // "Unknown" when the manifest names none
    };

    // The launcher's manifest of this install, META-INF/MANIFEST.MF in the
    // folder above the program's.
    static Manifest readManifest(const QString &programFolder);
    static Manifest parseManifest(const QByteArray &text);
    // "product: <name>; " or empty.
    static QString payload(const QString &description, bool disableProductStateStorage);
    static QByteArray registerBody(const QString &toolFeatureId, int port);
    static QByteArray stateBody(const QString &payload);

    explicit LauncherClient(QObject *parent = nullptr);

    // Reads the manifest beside the program (see readManifest).
    void readManifestOf(const QString &programFolder);
    // "Quillon - Version %1" or the text for an install without launcher.
    QString versionText() const;
    // Puts the version text and "Ready" into a status bar.
    void decorateStatusBar(QStatusBar *bar) const;

    QString toolFeatureId;
    int toolPort = kServicePort;
    bool disableProductStateStorage = false;
    void setServicePort(int port) { m_servicePort = port; }
    int servicePort() const { return m_servicePort; }
    void setTransferTimeoutMs(int ms) { m_transferTimeoutMs = ms; }

    // The launcher's help tool, started by showHelp; false when this install
    // has no launcher beside it.
    bool startHelp(const QString &programFolder);
    static QString launcherProgram(const QString &programFolder);

public slots:
    // Begins the flow for the document just opened: list, register if
    // needed (walking up the ports), then report the state.
    void checkRegisteredTools(const QString &description);
    void checkRegisteredTools();
    void setLanternState();
    void registerTool();
    void readingRegisteredTools(QNetworkReply *rep);
    void onToolRegisterAttempt(QNetworkReply *rep);

signals:
    // The state was posted and its answer (or failure) came back; the flow
    // for this document has ended.
    void stateReported();

private:
    // One request with a manager of its own that goes away with its reply.
    QNetworkAccessManager *send(const QByteArray &verb, const QString &path, const QByteArray &body);

    int m_servicePort = kServicePort;
    int m_transferTimeoutMs = kTransferTimeoutMs;
    QString m_description;
    Manifest m_manifest;
};
