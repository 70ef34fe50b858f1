#pragma once
#include <QAbstractMessageHandler>
#include <QSourceLocation>
#include <QString>

// Keeps the last message of a schema validation instead of showing it: the
// schema check prints it in its own words, with a link to the place.
class QXmlSchemaValidatorMessageHandler : public QAbstractMessageHandler
{
    Q_OBJECT
public:
    explicit QXmlSchemaValidatorMessageHandler(QObject *parent = nullptr) : QAbstractMessageHandler(parent) {}

    QString statusMessage() const { return m_description; }
    qint64 line() const { return m_sourceLocation.line(); }
    qint64 column() const { return m_sourceLocation.column(); }

protected:
    void handleMessage(QtMsgType type, const QString &description, const QUrl &identifier,
                       const QSourceLocation &sourceLocation) override;

private:
    QString m_description;
    QSourceLocation m_sourceLocation;
};
