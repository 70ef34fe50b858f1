#include "tooling/GuiXmlWriter.h"

#include "shell/Document.h"

GuiXmlWriter::GuiXmlWriter(Document &document)
    : m_document(document)
{
}

bool GuiXmlWriter::write(const QString &fileName)
{
    Q_UNUSED(fileName)
    m_errorText = QStringLiteral("Not written yet.");
    return false;
}
