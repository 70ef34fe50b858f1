#pragma once
#include <QString>

class PinMappingDocument;
class QIODevice;
class QXmlStreamReader;

// Reads a `pinmapping` file in one forward pass. Children of the root come
// in any order and unknown ones are skipped; values that can't be used
// (a colour of two parts, a negative size) keep their default with a
// warning on the console, so an author sees every slip at once.
class PinMappingReader
{
public:
    // Reads the file into `document` (cleared first). An open failure shows
    // "Cannot open file %1:\n%2"; an XML error (a wrong root is one) goes to
    // the console with its position, and the document stays empty.
    static bool readFile(const QString &path, PinMappingDocument &document);
    // The same from an open device; `fileName` names it in messages.
    static bool read(QIODevice *device, const QString &fileName, PinMappingDocument &document);

    // "r;g;b" as three decimals 0..255; false (and `color` untouched) for
    // anything else.
    static bool parseColor(const QString &text, class QColor &color);
    // "x;y"; false for anything but two numbers.
    static bool parsePoint(const QString &text, class QPointF &point);
};
