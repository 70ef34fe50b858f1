#pragma once
#include <QString>

// Checks a description against the schema QLN.xsd of the nvxmlcfg format and
// reports the outcome on the console: the first violation with its line and
// column, as a link that opens the place in the external editor.
class SchemaCheck
{
public:
    // The schema beside the program.
    static QString defaultSchemaPath();

    // True when the file is valid. schemaPath empty: the default.
    static bool checkXsd(const QString &fileName, const QString &schemaPath = QString());
};
