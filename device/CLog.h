#pragma once
#include <QString>

// Texts for the error codes of the ELF reader.
class CLog
{
public:
    enum Code {
        Ok = 0,
        FileNotFound = 1,
        FileUnreadable = 2,
        NotElf = 3,
        Truncated = 4,
        NoSymbolTable = 5,
        SymbolNotFound = 6,
        NoFileLoaded = 7,
        FileTooLarge = 8,
    };
    static QString ErrorCodeToString(int code);
};
