#pragma once

class DescriptionReader;

// Reads `communication` elements: polling tasks of the stick link, kept in
// the document's task list for the polling thread. They make no widget.
class CommunicationReader
{
public:
    static void install(DescriptionReader &reader);
};
