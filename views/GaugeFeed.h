#pragma once
#include <QString>

class DocumentTables;
class QObject;

// Feeds the plots, dials and thermometers that follow a define with its new
// value, looked up in the dependents tables so that exactly those
// consumers are touched. The sender is a DataClass (its integer value,
// unsigned) or a value element (its value text read as a number).
class GaugeFeed
{
public:
    static int curves(DocumentTables *tables, QObject *sender);
    static int dials(DocumentTables *tables, QObject *sender);
    static int thermos(DocumentTables *tables, QObject *sender);

    // The value a sender feeds; false when it has none.
    static bool valueOf(QObject *sender, double *value);
};
