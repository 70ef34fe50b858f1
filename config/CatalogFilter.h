#pragma once
#include <QList>
#include <QString>

#include "config/ParameterMap.h"

struct CatalogRecord;

// The filter of the catalog dialog: one row per parameter with `Filter`.
// Numeric rows (for "float" and "ul32") keep a range, both ends inclusive;
// the others keep a text the field must contain.
class CatalogFilter
{
public:
    struct Row
    {
        bool numeric = false;
        // Index of the parameter in the map.
        int column = -1;
        double minimum = 0;
        double maximum = 0;
        QString text;
        // A numeric row with both cells empty lets every record pass.
        bool active = false;
    };

    // A row from the two cells the user typed; `*badCell` tells which cell
    // held text where a number belongs (0 none, 1 Min, 2 Max, 3 both).
    static Row makeRow(const QList<Parameter> &parameters, int column, const QString &minCell,
                       const QString &maxCell, int *badCell = nullptr);

    // The field's own limits, from its `min` and `max` (open when empty).
    static double lowerLimit(const Parameter &parameter);
    static double upperLimit(const Parameter &parameter);
    // The first word of a field, read as a number.
    static bool fieldNumber(const QString &field, double *value);

    static bool rowPasses(const Row &row, const QList<Parameter> &parameters, const CatalogRecord &record);
    static bool passes(const QList<Row> &rows, const QList<Parameter> &parameters, const CatalogRecord &record);
};
