#pragma once

class DescriptionReader;

// Registers the readers of the display elements with a description reader.
class DisplayElementReaders
{
public:
    static void install(DescriptionReader &reader);
};
