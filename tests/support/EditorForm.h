#pragma once
#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <memory>

class Document;
class QObject;

// A live form for the form editor's tests: a signed description with the
// given head and body in a folder of its own, read by a real Document (no
// window). Files the form names can be put beside it first.
class EditorForm
{
public:
    EditorForm();
    ~EditorForm();

    QString folder() const { return m_dir.path(); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    // Reads the description; false with the reader's text in error().
    bool load(const QByteArray &head, const QByteArray &body);
    QString error() const { return m_error; }

    Document &document() { return *m_document; }
    // The form object of that name (widgets, radio groups, data holders).
    QObject *find(const QString &name) const;

private:
    QTemporaryDir m_dir;
    std::unique_ptr<Document> m_document;
    QString m_error;
};
