#include "device/CLog.h"

QString CLog::ErrorCodeToString(int code)
{
    switch (code) {
    case Ok:
        return QStringLiteral("No error");
    case FileNotFound:
        return QStringLiteral("File not found");
    case FileUnreadable:
        return QStringLiteral("File cannot be read");
    case NotElf:
        return QStringLiteral("Not an ELF file");
    case Truncated:
        return QStringLiteral("ELF file is truncated or damaged");
    case NoSymbolTable:
        return QStringLiteral("ELF file has no symbol table");
    case SymbolNotFound:
        return QStringLiteral("Symbol not found");
    case NoFileLoaded:
        return QStringLiteral("No ELF file loaded");
    case FileTooLarge:
        return QStringLiteral("ELF file is too large");
    default:
        return QStringLiteral("Unknown error %1").arg(code);
    }
}
