#pragma once
#include <QVector>

class DocumentTables;
class PinMappingDocument;

// Which functions sit on which pins for the current values of the form:
// the map conditions that hold, in file order, each with its entry, its
// pin and its place among the functions already on that pin. Drawing,
// export and the details table all read the same evaluation.
class PinMappingState
{
public:
    struct Placement
    {
        int condition = -1;
        int entry = -1;
        int pin = -1;
        // 0 for the first function on the pin, 1 for the next, ...
        int order = 0;
    };

    // One pass over the conditions; a condition whose function or pin is
    // unknown is skipped. `tables` null: the current document.
    static PinMappingState evaluate(const PinMappingDocument &document, DocumentTables *tables = nullptr);

    const QVector<Placement> &placements() const { return m_placements; }
    // Per condition: whether it holds (whatever its function).
    const QVector<bool> &holding() const { return m_holding; }
    // Functions drawn per pin.
    const QVector<int> &countPerPin() const { return m_countPerPin; }

private:
    QVector<Placement> m_placements;
    QVector<bool> m_holding;
    QVector<int> m_countPerPin;
};
