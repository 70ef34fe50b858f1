#include "config/CatalogMessages.h"

#include "elements/MessageSink.h"
#include "shell/Console.h"

#include <QXmlStreamReader>

void CatalogMessages::xmlError(const QXmlStreamReader &xml, const QString &fileName)
{
    const QString position = QStringLiteral("<b><a href=\"%1\">file</a> line %2, column %3</b><b>")
                                 .arg(Console::fileLink(fileName, xml.lineNumber(), xml.columnNumber()))
                                 .arg(xml.lineNumber())
                                 .arg(xml.columnNumber());
    consolePrint(QStringLiteral("<b><font color=\"red\"> XML Error: </font>%1 <a href=\"%2\">%3</a> (%4)<br>")
                     .arg(xml.errorString().toHtmlEscaped(), QString(), QString(), position));
}

void CatalogMessages::warning(const QString &text)
{
    consolePrint(QStringLiteral("<b><font color=\"orange\"> XML Warning: </font>%1<br>").arg(text.toHtmlEscaped()));
}
