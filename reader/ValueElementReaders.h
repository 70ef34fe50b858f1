#pragma once

class DescriptionReader;

// Registers the readers of the value elements with a description reader.
class ValueElementReaders
{
public:
    static void install(DescriptionReader &reader);
};
