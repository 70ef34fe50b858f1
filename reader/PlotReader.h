#pragma once

class DescriptionReader;

// Reads `plot` (with its `curve` children), `dial` and `thermo`: the
// displays of live values, fed by the defines their `data` attributes name.
class PlotReader
{
public:
    static void install(DescriptionReader &reader);
};
