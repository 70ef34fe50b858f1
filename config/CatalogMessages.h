#pragma once
#include <QString>

class QXmlStreamReader;

// The console lines of the catalog files: an XML error at its position in
// the file, and plain warnings.
class CatalogMessages
{
public:
    static void xmlError(const QXmlStreamReader &xml, const QString &fileName);
    static void warning(const QString &text);
};
