#pragma once

class DescriptionReader;

// Reads `var` elements: values without a widget (DataClass records), which
// may be bound to a variable in the target's memory.
class VarReader
{
public:
    static void install(DescriptionReader &reader);
};
