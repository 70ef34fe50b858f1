#pragma once
#include <QString>

class Document;

// Writes the live form of a document back out as one flat, signed
// description: includes and generated parts folded in, every element with
// the attributes the reader understands, read back from the widgets and the
// dynamic properties the reader kept on them. The form editor's "Save".
class GuiXmlWriter
{
public:
    explicit GuiXmlWriter(Document &document);

    // Writes and signs fileName. The file is replaced only when the whole
    // text was written; on failure errorText() says why and any former file
    // stands as it was.
    bool write(const QString &fileName);
    QString errorText() const { return m_errorText; }

    // The description's text as it will be written, before signing.
    QString text();

private:
    Document &m_document;
    QString m_errorText;
};
