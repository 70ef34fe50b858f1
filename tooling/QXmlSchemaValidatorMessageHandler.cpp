#include "tooling/QXmlSchemaValidatorMessageHandler.h"

void QXmlSchemaValidatorMessageHandler::handleMessage(QtMsgType type, const QString &description,
                                                      const QUrl &identifier, const QSourceLocation &sourceLocation)
{
    Q_UNUSED(type)
    Q_UNUSED(identifier)
    m_description = description;
    m_sourceLocation = sourceLocation;
}
