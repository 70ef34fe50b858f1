#pragma once
#include <QList>
#include <QString>

class QIODevice;

// One field of a catalog record: where it goes and how it is shown.
struct Parameter
{
    QString nr;
    // Key of the field in the catalog's records.
    QString id;
    // The define (or plot, picture, label) the value goes to.
    QString varName;
    QString min;
    QString max;
    QString text;
    QString unit;
    // "float", "ul32" or "URL".
    QString type;
    QString comment;
    QString readonly;
    QString formula;
    QString filter;
    QString displayMask;
    // The element's own text.
    QString elementText;

    bool isNumeric() const;
    bool isUrl() const;
    bool hasFilter() const;
    bool isShown() const;
    // The header of a filter row: "Text (Unit)".
    QString headerText() const;
};

// The parameter map a description names: the fields of its catalogs, in
// file order with nested groups flattened.
class ParameterMap
{
public:
    // Reads the file; an open failure shows "Cannot open file %1:\n%2", an
    // XML error goes to the console with its position. What was read before
    // an error is kept.
    bool readFile(const QString &path);
    bool read(QIODevice *device, const QString &fileName);

    QList<Parameter> parameters;
    QString fileName;

    // A mark attribute that is set: not empty, not "0", "false" or "no".
    static bool isSet(const QString &mark);
};
