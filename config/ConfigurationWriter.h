#pragma once
#include <QByteArray>
#include <QString>

class ActiveElement;
class DocumentTables;

// Writes the user's values of a form as a .qlnp document: one record per
// value element, in the order of last change (or sorted by define), with
// the digest over its tail filled in before anything touches the disk.
class ConfigurationWriter
{
public:
    // The whole document, digest included.
    static QByteArray build(const DocumentTables &tables, const QString &xmlFile, const QString &xmlVersion,
                            bool sorted);

    // Writes the bytes in one go through a temporary file that replaces the
    // target only when everything was written: a full disk or a crash never
    // leaves a short file, and the old one survives a failed save. Reports
    // "Write error in file %1\n" (or "Cannot open file") and returns false.
    static bool writeAtomically(const QString &path, const QByteArray &bytes);

    // The record element's name for an element, or empty when its class is
    // not saved (math labels and other derived values).
    static QString recordName(ActiveElement *element);

    // The saved text of a rich-text edit: its first font-family declaration
    // is dropped, so the configuration does not depend on the machine's fonts.
    static QString withoutFirstFontFamily(const QString &html);
};
