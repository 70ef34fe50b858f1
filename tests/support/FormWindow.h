#pragma once
#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include "elements/DocumentTables.h"

class MainWindow;
class RecordingSink;

// A description opened by a quiet main window the way a user opens it, for
// tests of elements on a real form: the SVD file and the description are
// written to a folder of the test's own, and the messages of opening are
// kept apart from those that follow.
class FormWindow
{
public:
    ~FormWindow();

    // Writes `svd` as mini.svd and, as form.xml, a signed description that
    // names it, with `head` and then `form` in its root.
    bool write(const QByteArray &svd, const QByteArray &form, const QByteArray &head = QByteArray());
    // A new window (the previous one goes) opens the description and runs
    // its start-up step, shown when asked; its messages move to
    // openMessages and the sink starts empty.
    bool open(bool show = false);
    void close();

    DocumentTables &tables() const;
    template <class T>
    T *element(const QString &define) const
    {
        return dynamic_cast<T *>(tables().element(define));
    }

    QTemporaryDir dir;
    QString path;
    MainWindow *window = nullptr;
    RecordingSink *sink = nullptr;
    QStringList openMessages;
};
