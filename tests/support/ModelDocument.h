#pragma once
#include <QString>
#include <QWidget>

#include "elements/DocumentTables.h"
#include "model/HardwareModel.h"

class FakeElement;
class Register;

// One open document for tests of the hardware model: its tables, its model
// and a widget that owns the elements, so everything goes with the test.
class ModelDocument
{
public:
    ModelDocument();
    ~ModelDocument();

    // A FakeElement named after the define, owned by the document.
    FakeElement *element(const QString &define, qint64 maximum = 1);
    // Makes an element and claims its define, as the description reader
    // would; the element's "svd" property is set when svdFile is given.
    FakeElement *claim(const QString &define, const QString &header = QStringLiteral("a.h"),
                       bool svdBound = true, const QString &svdFile = QString());

    Register *reg(const QString &peripheral, const QString &name) const;

    // Runs the SVD reader over the bytes; readError keeps the reader's text.
    bool read(const QByteArray &svd);
    QString readError;

    DocumentTables tables;
    HardwareModel model{&tables};
    QWidget owner;
};
