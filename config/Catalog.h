#pragma once
#include <QList>
#include <QPair>
#include <QString>

class QIODevice;

// One record of a catalog: its attributes in the file's order and its text.
struct CatalogRecord
{
    QList<QPair<QString, QString>> fields;
    QString text;

    // The value of a field; empty when the record has none.
    QString value(const QString &id) const;
    bool has(const QString &id) const;
};

// A catalog file: root `Catalog`, one `CatalogEntry` per record. Read for
// one dialog, in one pass.
class Catalog
{
public:
    // An open failure shows "Cannot open file %1:\n%2"; an XML error goes
    // to the console with its position, and the records before it stay.
    bool readFile(const QString &path);
    bool read(QIODevice *device, const QString &fileName);

    QList<CatalogRecord> records;
    QString fileName;
};
