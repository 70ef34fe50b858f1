#include "tooling/SchemaCheck.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QXmlSchema>
#include <QXmlSchemaValidator>

#include "elements/MessageSink.h"
#include "tooling/QXmlSchemaValidatorMessageHandler.h"

QString SchemaCheck::defaultSchemaPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/QLN.xsd");
}

bool SchemaCheck::checkXsd(const QString &fileName, const QString &schemaPath)
{
    const QString schemaFile = schemaPath.isEmpty() ? defaultSchemaPath() : schemaPath;
    QXmlSchemaValidatorMessageHandler schemaMessages;
    QXmlSchema schema;
    schema.setMessageHandler(&schemaMessages);
    // A missing schema file simply fails to load: "XSD is not valid".
    if (QFileInfo::exists(schemaFile))
        schema.load(QUrl(QStringLiteral("file:") + schemaFile));
    consolePrint(QStringLiteral("<font color=\"blue\">  <b>Starting xsd check:</b></font> File: %2<br>").arg(fileName));
    if (!schema.isValid()) {
        consolePrint(QStringLiteral("<font color=\"red\"> <b>XSD is not valid.</b></font> <br>"));
        return false;
    }
    QFile file(fileName);
    file.open(QIODevice::ReadOnly);
    QXmlSchemaValidatorMessageHandler handler;
    QXmlSchemaValidator validator(schema);
    validator.setMessageHandler(&handler);
    // A file that can't be opened is empty here; the validator says why it
    // is no document.
    const bool valid = validator.validate(file.readAll(), QUrl::fromLocalFile(QFileInfo(fileName).absoluteFilePath()));
    if (valid) {
        consolePrint(QStringLiteral("<font color=\"green\"> <b>Document is valid.</b></font><br>"));
    } else {
        QString description = handler.statusMessage();
        description.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
        QString linkFile = fileName;
        linkFile.replace(QLatin1Char(':'), QStringLiteral("$$$COLON$$$"));
        const QString link = QStringLiteral("$xmlopen$%1$-n%2$-c%3").arg(linkFile).arg(handler.line()).arg(handler.column());
        consolePrint(QStringLiteral("<font color=\"red\"> <b>xsd-ERROR: xml <a href=\"%1\">file</a> is invalid at line %2, column %3</b></font><b>: %4<br>")
                         .arg(link)
                         .arg(handler.line())
                         .arg(handler.column())
                         .arg(description));
    }
    consolePrint(QStringLiteral("<font color=\"blue\"> <b>Finished xsd check.</b></font><br>"));
    return valid;
}
