#include "EditorForm.h"

#include "QuillonRun.h"
#include "elements/ActiveElement.h"
#include "elements/DataClass.h"
#include "reader/DescriptionReader.h"
#include "shell/Document.h"

#include <QWidget>

EditorForm::EditorForm()
    : m_document(new Document(nullptr))
{
}

EditorForm::~EditorForm() = default;

bool EditorForm::load(const QByteArray &head, const QByteArray &body)
{
    const QString path = m_dir.filePath(QStringLiteral("form.xml"));
    if (!writeDescription(path, head, body)) {
        m_error = QStringLiteral("cannot write %1").arg(path);
        return false;
    }
    const bool ok = m_document->read(path, ReaderOptions());
    m_error = m_document->errorText();
    return ok && m_document->root();
}

QObject *EditorForm::find(const QString &name) const
{
    if (ActiveElement *element = m_document->tables().element(name)) {
        // A radio group is no widget; its element is the group itself.
        return dynamic_cast<QObject *>(element);
    }
    if (DataClass *data = m_document->tables().dataValue(name))
        return data;
    QWidget *root = m_document->root();
    if (!root)
        return nullptr;
    if (root->objectName() == name)
        return root;
    return root->findChild<QObject *>(name);
}
