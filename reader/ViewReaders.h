#pragma once

class DescriptionReader;

// Registers the readers of the complex views (table, register view, SVD
// tree) with a description reader.
class ViewReaders
{
public:
    static void install(DescriptionReader &reader);
};
