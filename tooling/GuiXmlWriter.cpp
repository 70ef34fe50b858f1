#include "tooling/GuiXmlWriter.h"

#include "config/Checksum.h"
#include "reader/KeptElement.h"
#include "shell/AppVersion.h"
#include "shell/Document.h"
#include "tooling/ElementXmlWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QWidget>
#include <QXmlStreamWriter>

namespace {

// Root-level elements the header block writes from the document's state.
bool isHeaderElement(const QString &name)
{
    static const QStringList names = {QStringLiteral("checksum"), QStringLiteral("version"),
                                      QStringLiteral("fwversion"), QStringLiteral("svd"),
                                      QStringLiteral("migration"), QStringLiteral("disclaimer"),
                                      QStringLiteral("ioconfig"), QStringLiteral("loadsaveallowed"),
                                      QStringLiteral("infosource")};
    return names.contains(name);
}

bool isContainerName(const QString &name)
{
    return name.endsWith(QLatin1String("container"));
}

QString orFallback(const QString &text, const char *fallback)
{
    return text.isEmpty() ? QString::fromLatin1(fallback) : text;
}

} // namespace

GuiXmlWriter::GuiXmlWriter(Document &document)
    : m_document(document)
{
}

QString GuiXmlWriter::text()
{
    const DocumentState &state = m_document.state();
    QString out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();

    xml.writeStartElement(QStringLiteral("nvxmlcfg"));
    // The format version the description asked for stays; a form without
    // one is of this program's version.
    xml.writeAttribute(QStringLiteral("version"), state.rootVersion.isEmpty() ? AppVersion::text() : state.rootVersion);
    xml.writeTextElement(QStringLiteral("checksum"), Checksum::placeholder());
    xml.writeStartElement(QStringLiteral("version"));
    xml.writeAttribute(QStringLiteral("label"), orFallback(state.versionLabel, "0.0.0"));
    // The version text goes into the exported headers.
    if (!state.versionText.isEmpty())
        xml.writeCharacters(state.versionText);
    xml.writeEmptyElement(QStringLiteral("fwversion"));
    xml.writeAttribute(QStringLiteral("min"), orFallback(state.fwVersionMin, "2.2.1"));
    xml.writeAttribute(QStringLiteral("max"), orFallback(state.fwVersionMax, "*.*.*"));
    auto fileElement = [&xml](const char *name, const QString &file) {
        if (file.isEmpty())
            return;
        xml.writeEmptyElement(QLatin1String(name));
        xml.writeAttribute(QStringLiteral("file"), file);
    };
    fileElement("svd", state.svdName);
    fileElement("migration", state.migrationFile);
    if (state.disclaimerSet)
        fileElement("disclaimer", state.disclaimerName);
    if (!state.ioPort.isEmpty() || !state.ioSettings.isEmpty()) {
        xml.writeEmptyElement(QStringLiteral("ioconfig"));
        xml.writeAttribute(QStringLiteral("port"), state.ioPort);
        xml.writeAttribute(QStringLiteral("settings"), state.ioSettings);
    }
    if (state.loadSaveAllowedSet) {
        xml.writeEmptyElement(QStringLiteral("loadsaveallowed"));
        xml.writeAttribute(QStringLiteral("value"), state.loadSaveAllowed ? QStringLiteral("1") : QStringLiteral("0"));
    }
    if (!state.forumUrl.isEmpty()) {
        xml.writeEmptyElement(QStringLiteral("infosource"));
        xml.writeAttribute(QStringLiteral("forumurl"), state.forumUrl);
        if (!state.forumTooltip.isEmpty())
            xml.writeAttribute(QStringLiteral("tooltip"), state.forumTooltip);
    }

    ElementXmlWriter elements(xml, m_document.tables());
    const KeptElement *form = nullptr;
    if (state.kept) {
        elements.index(*state.kept);
        // The other root-level elements as read (parameter map, pin
        // mapping, ELF file, terminal, ...), then the form.
        for (const auto &child : state.kept->children) {
            if (isContainerName(child->name) && !form)
                form = child.get();
            else if (!isHeaderElement(child->name))
                ElementXmlWriter::copy(xml, child->text);
        }
    }
    if (form && (!form->hadTarget || form->target == m_document.root()))
        elements.writeKept(*form, nullptr, true);
    else if (QWidget *root = m_document.root())
        elements.writeLive(root);

    xml.writeEndElement(); // version
    xml.writeEndElement(); // nvxmlcfg
    xml.writeEndDocument();
    return out;
}

bool GuiXmlWriter::write(const QString &fileName)
{
    m_errorText.clear();
    if (fileName.isEmpty()) {
        m_errorText = QStringLiteral("No file name given.");
        return false;
    }
    // The whole text is signed before anything touches the disk, and the
    // file is replaced only once every byte was written.
    const QByteArray bytes = Checksum::signedText(text(), fileName);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        m_errorText = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size()) {
        m_errorText = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        m_errorText = file.errorString();
        return false;
    }
    return true;
}
