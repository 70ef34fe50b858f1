#pragma once
#include <QByteArray>
#include <QHash>

// The symbols of a firmware file: name -> address and size, read from the
// ELF symbol table (or the dynamic one when there is no other) in one pass
// with libelf. Codes and texts: CLog.
class ELFReader
{
public:
    // The parts of the file to read; only the symbols are kept.
    enum InfoRange { Headers = 1, Symbols = 2 };

    ELFReader();
    ~ELFReader();

    // Reads the file and replaces the symbols of a former one. 0 or a code.
    int Read(const char *path, int range = Symbols);
    // The same from the bytes of a file already in memory.
    int ReadBytes(const QByteArray &bytes);
    // 0 and the symbol's address and size, or a code.
    int GetAddress(const char *name, unsigned long *address, unsigned long *size) const;

    int symbolCount() const { return m_symbols.size(); }
    bool loaded() const { return m_loaded; }

    // Larger files are refused rather than read into memory.
    static constexpr qint64 MaxFileSize = 512ll * 1024 * 1024;

private:
    struct Symbol
    {
        quint64 address = 0;
        quint64 size = 0;
    };
    QHash<QByteArray, Symbol> m_symbols;
    bool m_loaded = false;
};
