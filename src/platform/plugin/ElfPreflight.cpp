// Source of the layouts: the System V ABI's ELF chapters, and for DT_GNU_HASH the linker's own description.
//
// Addresses in the dynamic table are those of the loaded object; the PT_LOAD headers lead from them to places
// in the file. Symbols are found the way the loader will find them, by the hash table.

#include "platform/plugin/ElfPreflight.h"

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <optional>
#include <vector>

namespace caddis {

namespace {

#if defined(__x86_64__)
constexpr unsigned Machine = EM_X86_64;
#elif defined(__aarch64__)
constexpr unsigned Machine = EM_AARCH64;
#endif

class SharedObject {
public:
    explicit SharedObject(std::string_view bytes)
        : m_bytes(bytes)
    {
    }

    Preflight check(std::span<const std::string> symbols)
    {
        if (const Preflight verdict = checkHeader(); verdict != Preflight::Passed)
            return verdict;
        if (!readSegments() || !readDynamic())
            return Preflight::NotLoadable;
        const bool all = std::all_of(
            symbols.begin(), symbols.end(), [this](const std::string& symbol) { return defines(symbol); });
        return all ? Preflight::Passed : Preflight::MissingSymbol;
    }

private:
    template <typename Record> std::optional<Record> at(std::uint64_t offset) const
    {
        if (offset > m_bytes.size() || sizeof(Record) > m_bytes.size() - offset)
            return std::nullopt;
        Record record;
        std::memcpy(&record, m_bytes.data() + offset, sizeof record);
        return record;
    }

    // Of element `index` of a table at an address.
    template <typename Record> std::optional<Record> element(std::uint64_t address, std::uint64_t index) const
    {
        const auto start = offsetOf(address);
        return start && index < m_bytes.size() / sizeof(Record) ? at<Record>(*start + index * sizeof(Record))
                                                                : std::nullopt;
    }

    Preflight checkHeader()
    {
        const auto header = at<Elf64_Ehdr>(0);
        if (!m_bytes.starts_with(ELFMAG) || m_bytes.size() < EI_NIDENT)
            return Preflight::NotLoadable;
        if (m_bytes[EI_CLASS] != ELFCLASS64 || m_bytes[EI_DATA] != ELFDATA2LSB)
            return Preflight::WrongArchitecture;
        if (!header)
            return Preflight::NotLoadable;
        if (header->e_machine != Machine)
            return Preflight::WrongArchitecture;
        if (header->e_type != ET_DYN || header->e_phentsize != sizeof(Elf64_Phdr))
            return Preflight::NotLoadable;
        m_header = *header;
        return Preflight::Passed;
    }

    bool readSegments()
    {
        for (unsigned index = 0; index < m_header.e_phnum; ++index) {
            const auto segment = m_header.e_phoff <= m_bytes.size()
                ? at<Elf64_Phdr>(m_header.e_phoff + index * sizeof(Elf64_Phdr))
                : std::nullopt;
            if (!segment)
                return false;
            if (segment->p_type != PT_LOAD && segment->p_type != PT_DYNAMIC)
                continue;
            if (segment->p_offset > m_bytes.size() || segment->p_filesz > m_bytes.size() - segment->p_offset)
                return false;
            if (segment->p_type == PT_DYNAMIC)
                m_dynamic = *segment;
            else
                m_loads.push_back(*segment);
        }
        return m_dynamic && !m_loads.empty();
    }

    bool readDynamic()
    {
        for (std::uint64_t place = 0; place + sizeof(Elf64_Dyn) <= m_dynamic->p_filesz;
             place += sizeof(Elf64_Dyn)) {
            const auto entry = at<Elf64_Dyn>(m_dynamic->p_offset + place);
            if (!entry || entry->d_tag == DT_NULL)
                break;
            switch (entry->d_tag) {
            case DT_SYMTAB:
                m_symbols = entry->d_un.d_ptr;
                break;
            case DT_STRTAB:
                m_strings = entry->d_un.d_ptr;
                break;
            case DT_HASH:
                m_hash = entry->d_un.d_ptr;
                break;
            case DT_GNU_HASH:
                m_gnuHash = entry->d_un.d_ptr;
                break;
            case DT_FLAGS_1:
                if (entry->d_un.d_val & DF_1_PIE) // A program that may lie anywhere.
                    return false;
                break;
            default:
                break;
            }
        }
        return m_symbols && m_strings && (m_hash || m_gnuHash);
    }

    std::optional<std::uint64_t> offsetOf(std::uint64_t address) const
    {
        for (const Elf64_Phdr& segment : m_loads) {
            if (address >= segment.p_vaddr && address - segment.p_vaddr < segment.p_filesz)
                return segment.p_offset + (address - segment.p_vaddr);
        }
        return std::nullopt;
    }

    bool isDefined(std::uint64_t index, const std::string& name) const
    {
        const auto symbol = element<Elf64_Sym>(*m_symbols, index);
        if (!symbol || symbol->st_shndx == SHN_UNDEF)
            return false;
        const auto start = offsetOf(*m_strings);
        if (!start || symbol->st_name > m_bytes.size() - *start)
            return false;
        const std::string_view rest = m_bytes.substr(*start + symbol->st_name);
        return rest.size() > name.size() && rest.starts_with(name) && rest[name.size()] == '\0';
    }

    bool defines(const std::string& name) const
    {
        return m_gnuHash ? definesByGnuHash(*m_gnuHash, name) : definesByHash(*m_hash, name);
    }

    // Number of buckets, first hashed symbol, words of the filter, its shift; the filter; the buckets, each
    // the first symbol of a chain; for each hashed symbol its hash, whose lowest bit ends a chain.
    bool definesByGnuHash(std::uint64_t table, const std::string& name) const
    {
        std::uint32_t hash = 5381;
        for (const char byte : name)
            hash = hash * 33 + static_cast<std::uint8_t>(byte);
        const auto buckets = element<std::uint32_t>(table, 0);
        const auto first = element<std::uint32_t>(table, 1);
        const auto filterWords = element<std::uint32_t>(table, 2);
        if (!buckets || *buckets == 0 || !first || !filterWords)
            return false;
        const std::uint64_t bucketTable = 4 + 2 * std::uint64_t(*filterWords);
        const auto start = element<std::uint32_t>(table, bucketTable + hash % *buckets);
        if (!start || *start < *first)
            return false;
        for (std::uint64_t index = *start;; ++index) {
            const auto chain = element<std::uint32_t>(table, bucketTable + *buckets + (index - *first));
            if (!chain)
                return false;
            if ((*chain | 1U) == (hash | 1U) && isDefined(index, name))
                return true;
            if (*chain & 1U)
                return false;
        }
    }

    // Number of buckets and of symbols, then both tables. All symbols are looked at.
    bool definesByHash(std::uint64_t table, const std::string& name) const
    {
        const std::uint64_t count = element<std::uint32_t>(table, 1).value_or(0);
        for (std::uint64_t index = 0; index < count && element<Elf64_Sym>(*m_symbols, index); ++index) {
            if (isDefined(index, name))
                return true;
        }
        return false;
    }

    std::string_view m_bytes;
    Elf64_Ehdr m_header {};
    std::vector<Elf64_Phdr> m_loads;
    std::optional<Elf64_Phdr> m_dynamic;
    std::optional<std::uint64_t> m_symbols;
    std::optional<std::uint64_t> m_strings;
    std::optional<std::uint64_t> m_hash;
    std::optional<std::uint64_t> m_gnuHash;
};

} // namespace

Preflight preflightSharedObject(const Data& file, std::span<const std::string> symbols)
{
    return SharedObject(file.chars()).check(symbols);
}

} // namespace caddis
