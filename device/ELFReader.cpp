#include "device/ELFReader.h"

#include "device/CLog.h"

#include <QFile>
#include <QFileInfo>

#include <gelf.h>
#include <libelf.h>

namespace {

struct ElfHandle
{
    Elf *elf = nullptr;
    ~ElfHandle()
    {
        if (elf)
            elf_end(elf);
    }
};

bool wantedType(int type)
{
    return type == STT_OBJECT || type == STT_FUNC || type == STT_NOTYPE || type == STT_COMMON || type == STT_TLS;
}

} // namespace

ELFReader::ELFReader() = default;
ELFReader::~ELFReader() = default;

int ELFReader::Read(const char *path, int range)
{
    Q_UNUSED(range)
    m_symbols.clear();
    m_loaded = false;
    const QString name = QString::fromLocal8Bit(path ? path : "");
    const QFileInfo info(name);
    if (name.isEmpty() || !info.exists())
        return CLog::FileNotFound;
    if (!info.isFile())
        return CLog::FileUnreadable;
    if (info.size() > MaxFileSize)
        return CLog::FileTooLarge;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return CLog::FileUnreadable;
    const QByteArray bytes = file.readAll();
    file.close();
    return ReadBytes(bytes);
}

int ELFReader::ReadBytes(const QByteArray &input)
{
    m_symbols.clear();
    m_loaded = false;
    // libelf works on a writable image of its own.
    QByteArray bytes = input;
    if (bytes.size() < 4 || !bytes.startsWith("\x7f" "ELF"))
        return CLog::NotElf;

    if (elf_version(EV_CURRENT) == EV_NONE)
        return CLog::FileUnreadable;
    ElfHandle handle;
    handle.elf = elf_memory(bytes.data(), size_t(bytes.size()));
    if (!handle.elf || elf_kind(handle.elf) != ELF_K_ELF)
        return CLog::Truncated;
    GElf_Ehdr header;
    if (!gelf_getehdr(handle.elf, &header))
        return CLog::Truncated;
    size_t sectionCount = 0;
    if (elf_getshdrnum(handle.elf, &sectionCount) != 0)
        return CLog::Truncated;
    // The section table must lie inside the file; libelf reads it lazily.
    if (header.e_shoff != 0
        && quint64(header.e_shoff) + quint64(sectionCount) * header.e_shentsize > quint64(bytes.size()))
        return CLog::Truncated;

    Elf_Scn *chosen = nullptr;
    GElf_Shdr chosenHeader{};
    for (Elf_Scn *scn = elf_nextscn(handle.elf, nullptr); scn; scn = elf_nextscn(handle.elf, scn)) {
        GElf_Shdr sh;
        if (!gelf_getshdr(scn, &sh))
            return CLog::Truncated;
        if (sh.sh_type == SHT_SYMTAB || (sh.sh_type == SHT_DYNSYM && !chosen)) {
            chosen = scn;
            chosenHeader = sh;
        }
    }
    if (!chosen)
        return CLog::NoSymbolTable;
    if (chosenHeader.sh_offset + chosenHeader.sh_size > quint64(bytes.size()) || chosenHeader.sh_entsize == 0)
        return CLog::Truncated;
    Elf_Data *data = elf_getdata(chosen, nullptr);
    if (!data)
        return CLog::Truncated;
    const size_t count = chosenHeader.sh_size / chosenHeader.sh_entsize;
    m_symbols.reserve(int(qMin<size_t>(count, 1u << 20)));
    for (size_t i = 0; i < count; ++i) {
        GElf_Sym sym;
        if (!gelf_getsym(data, int(i), &sym))
            return CLog::Truncated;
        if (sym.st_name == 0 || sym.st_shndx == SHN_UNDEF || !wantedType(GELF_ST_TYPE(sym.st_info)))
            continue;
        const char *symbolName = elf_strptr(handle.elf, chosenHeader.sh_link, sym.st_name);
        if (!symbolName || !*symbolName)
            continue;
        const QByteArray key(symbolName);
        // A global definition wins over a local one of the same name.
        if (m_symbols.contains(key) && GELF_ST_BIND(sym.st_info) == STB_LOCAL)
            continue;
        m_symbols.insert(key, Symbol{sym.st_value, sym.st_size});
    }
    m_loaded = true;
    return CLog::Ok;
}

int ELFReader::GetAddress(const char *name, unsigned long *address, unsigned long *size) const
{
    if (!m_loaded)
        return CLog::NoFileLoaded;
    const auto it = m_symbols.constFind(QByteArray(name ? name : ""));
    if (it == m_symbols.constEnd())
        return CLog::SymbolNotFound;
    if (address)
        *address = static_cast<unsigned long>(it->address);
    if (size)
        *size = static_cast<unsigned long>(it->size);
    return CLog::Ok;
}
