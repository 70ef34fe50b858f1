#include "views/PinMappingState.h"

#include "views/PinMappingDocument.h"

PinMappingState PinMappingState::evaluate(const PinMappingDocument &document, DocumentTables *tables)
{
    PinMappingState state;
    const int conditionCount = document.conditions.size();
    state.m_holding.resize(conditionCount);
    state.m_countPerPin.fill(0, document.pins.size());
    for (int i = 0; i < conditionCount; ++i) {
        const MapCondEntry &cond = document.conditions.at(i);
        const bool holds = cond.compiled.holds(tables);
        state.m_holding[i] = holds;
        if (!holds)
            continue;
        const int entry = document.functionIndex(cond.function);
        if (entry < 0)
            continue;
        const int pin = document.pinIndex(document.entries.at(entry).pinname);
        if (pin < 0)
            continue;
        Placement placement;
        placement.condition = i;
        placement.entry = entry;
        placement.pin = pin;
        placement.order = state.m_countPerPin[pin]++;
        state.m_placements.append(placement);
    }
    return state;
}
