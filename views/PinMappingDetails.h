#pragma once
#include <QColor>
#include <QList>
#include <QString>

class DocumentTables;
class HardwareModel;
class PinMappingDocument;

// The rows of the details table, built without a view: a row per pin, a
// row per function that can sit on it, and under each function a row per
// condition with its explanation. Holding conditions (and their functions)
// are marked bold.
class PinMappingDetails
{
public:
    struct Row
    {
        enum Kind { PinRow, FunctionRow, ConditionRow };
        Kind kind = PinRow;
        // Columns "Pin", "Function", "Condition", "Explanation".
        QString pin;
        QString function;
        QString condition;
        QString explanation;
        bool bold = false;
        QColor background;
        // The element a double click goes to (empty: none).
        QString define;
    };

    // `connectedOnly` leaves out pins that no holding condition uses.
    static QList<Row> rows(const PinMappingDocument &document, bool connectedOnly, DocumentTables *tables = nullptr);

    // A condition as shown: a line feed after each "&" and "|".
    static QString conditionText(const QString &cond);
    // "Set <field> to <value>" for each "define==value" part whose define is
    // bound to the SVD; an enumerated value is named in quotes. Parts are
    // joined by ",\n".
    static QString explanation(const QString &cond, DocumentTables *tables, HardwareModel *model);
    // The first name of the form in a condition (for going there).
    static QString firstDefine(const QString &cond, DocumentTables *tables);
};
