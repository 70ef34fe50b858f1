#pragma once

class DescriptionReader;

// Registers the readers of the form's elements (value elements, displays,
// views) with a description reader. Containers and the structural elements
// (include, header, branch...) are the reader's own.
class ElementReaders
{
public:
    static void install(DescriptionReader &reader);
};
