#pragma once
#include <QString>

class DocumentTables;
class PinMappingDocument;
class QWidget;

// The pin list as CSV: one line per pin, its name, then each function the
// current form routes to it, every field followed by ";".
class PinMappingExport
{
public:
    static QString csvText(const PinMappingDocument &document, DocumentTables *tables = nullptr);
    // Asks for a file ("Save mapping to CSV") and writes it; a cancelled
    // dialog (and quiet mode) writes nothing. False when nothing was written.
    static bool exportToFile(const PinMappingDocument &document, QWidget *parent);
    // Writes the text whole or not at all.
    static bool writeFile(const QString &path, const QString &text, QString *error = nullptr);
};
