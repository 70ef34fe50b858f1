#pragma once
#include <QList>
#include <QSet>

class Document;
class QObject;
class QWidget;

// Takes elements out of a live form so that nothing points at them any
// more: the widget leaves its container, and it and everything inside it
// leave the document's tables (by define, the element list, the displays'
// feed tables, the claimed register bits) and the lock bookkeeping. The
// widgets themselves are kept, detached, until the remover goes, so that a
// cut element can still be pasted.
class ElementRemover
{
public:
    explicit ElementRemover(Document &document);
    ~ElementRemover();

    // Removes a form widget (for a radio anchor, the whole group with its
    // buttons). Refuses the root and anything outside the form. The text
    // of a refusal is in errorText().
    bool removeWidget(QWidget *widget);
    // Drops a hidden value from the document (the built-in ones stay).
    bool removeValue(QObject *data);

    // Drops every reference the tables hold to these objects.
    void forget(const QSet<QObject *> &objects);

    QString errorText() const { return m_errorText; }

private:
    Document &m_document;
    QList<QWidget *> m_detached;
    QString m_errorText;
};
