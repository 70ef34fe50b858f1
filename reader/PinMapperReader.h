#pragma once

class DescriptionReader;

// Registers the reader of the `pinmapper` element: the chip drawing of the
// description's pin mapping, embedded in the form.
class PinMapperReader
{
public:
    static void install(DescriptionReader &reader);
};
