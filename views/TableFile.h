#pragma once
#include <QByteArray>
#include <QString>

class Table;

// The small .qlnp-shaped file of a table's rows: root "qlnpxml", the
// description's file name and version, and one Table record with define and
// value (the table's whole value). Also writes the C export text.
class TableFile
{
public:
    // Reads the file; the element named by the record's define (usually
    // `table` itself) takes the value. Reports and returns false on a file
    // that can't be opened or read; nothing is loaded from a broken file.
    static bool load(const QString &fileName, Table *table);
    static bool save(const QString &fileName, const QString &define, const QString &value);
    // The file bytes of save().
    static QByteArray build(const QString &define, const QString &value);
    // Writes the whole text or, on failure, leaves the old file as it was.
    static bool writeText(const QString &fileName, const QByteArray &bytes);
};
