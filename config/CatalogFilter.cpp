#include "config/CatalogFilter.h"

#include "config/Catalog.h"
#include "elements/NumberFormat.h"

#include <limits>

namespace {

bool readNumber(const QString &text, double *value)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    bool ok = false;
    double v = t.toDouble(&ok);
    if (!ok)
        v = normaliseNumber(t).toDouble(&ok);
    if (ok)
        *value = v;
    return ok;
}

} // namespace

double CatalogFilter::lowerLimit(const Parameter &parameter)
{
    double v = 0;
    return readNumber(parameter.min, &v) ? v : -std::numeric_limits<double>::infinity();
}

double CatalogFilter::upperLimit(const Parameter &parameter)
{
    double v = 0;
    return readNumber(parameter.max, &v) ? v : std::numeric_limits<double>::infinity();
}

bool CatalogFilter::fieldNumber(const QString &field, double *value)
{
    const QString first = field.trimmed().section(QLatin1Char(' '), 0, 0);
    return readNumber(first, value);
}

CatalogFilter::Row CatalogFilter::makeRow(const QList<Parameter> &parameters, int column, const QString &minCell,
                                          const QString &maxCell, int *badCell)
{
    Row row;
    row.column = column;
    if (badCell)
        *badCell = 0;
    if (column < 0 || column >= parameters.size())
        return row;
    const Parameter &p = parameters.at(column);
    row.numeric = p.isNumeric();
    if (!row.numeric) {
        row.text = minCell;
        row.active = !minCell.isEmpty();
        return row;
    }
    row.minimum = lowerLimit(p);
    row.maximum = upperLimit(p);
    int bad = 0;
    double v = 0;
    // A cell that is not a number counts as empty; the caller marks it.
    if (!minCell.trimmed().isEmpty()) {
        if (readNumber(minCell, &v)) {
            row.minimum = v;
            row.active = true;
        } else {
            bad |= 1;
        }
    }
    if (!maxCell.trimmed().isEmpty()) {
        if (readNumber(maxCell, &v)) {
            row.maximum = v;
            row.active = true;
        } else {
            bad |= 2;
        }
    }
    if (badCell)
        *badCell = bad;
    return row;
}

bool CatalogFilter::rowPasses(const Row &row, const QList<Parameter> &parameters, const CatalogRecord &record)
{
    if (!row.active || row.column < 0 || row.column >= parameters.size())
        return true;
    const QString field = record.value(parameters.at(row.column).id);
    if (!row.numeric)
        return field.indexOf(row.text) != -1;
    double v = 0;
    if (!fieldNumber(field, &v))
        return false;
    return v >= row.minimum && v <= row.maximum;
}

bool CatalogFilter::passes(const QList<Row> &rows, const QList<Parameter> &parameters, const CatalogRecord &record)
{
    for (const Row &row : rows) {
        if (!rowPasses(row, parameters, record))
            return false;
    }
    return true;
}
