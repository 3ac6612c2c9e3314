#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace caddis {

inline std::string littleEndian(std::uint64_t value, int bytes)
{
    std::string result;
    for (int i = 0; i < bytes; ++i)
        result += static_cast<char>(value >> (8 * i));
    return result;
}

/// Writes compound files with sectors of 512 bytes: streams of 4096 bytes and more in sectors of their own,
/// shorter ones in the mini stream. A path "Storage/Stream" makes the storage.
class CompoundFileBuilder {
public:
    CompoundFileBuilder& add(const std::string& path, const std::string& bytes)
    {
        m_streams.emplace_back(path, bytes);
        return *this;
    }

    std::string bytes() const
    {
        Parts parts;
        std::string directory = node("Root Entry", 5, None, 1, None, 0); // filled in below
        std::string streams;
        std::uint32_t number = 1;
        for (std::size_t i = 0; i < m_streams.size(); ++i) {
            const auto& [path, content] = m_streams[i];
            const auto slash = path.find('/');
            const std::uint32_t next
                = i + 1 < m_streams.size() ? number + (slash == path.npos ? 1 : 2) : None;
            const bool isMini = content.size() < 4096;
            const std::uint32_t start = isMini ? parts.addMini(content) : parts.add(content);
            const std::string name = slash == path.npos ? path : path.substr(slash + 1);
            if (slash != path.npos)
                directory += node(path.substr(0, slash), 1, next, number + 1, None, 0);
            directory += node(name, 2, slash == path.npos ? next : None, None, start, content.size());
            number += slash == path.npos ? 1 : 2;
        }
        const std::uint32_t miniStart = parts.add(parts.mini);
        directory.replace(116, 8, littleEndian(miniStart, 4) + littleEndian(parts.mini.size(), 4));
        while (directory.size() % SectorSize != 0)
            directory += node("", 0, None, None, 0, 0);
        const std::uint32_t directoryStart = parts.add(directory);
        const std::uint32_t miniTable = parts.add(table(parts.miniFat));
        return finished(parts, directoryStart, miniTable);
    }

private:
    static constexpr std::size_t SectorSize = 512;
    static constexpr std::uint32_t None = 0xFFFFFFFF, EndOfChain = 0xFFFFFFFE, FatSector = 0xFFFFFFFD;

    struct Parts {
        std::string sectors {};
        std::vector<std::uint32_t> fat {};
        std::string mini {};
        std::vector<std::uint32_t> miniFat {};

        std::uint32_t add(const std::string& content) { return addTo(sectors, fat, content, SectorSize); }
        std::uint32_t addMini(const std::string& content) { return addTo(mini, miniFat, content, 64); }
        static std::uint32_t addTo(
            std::string& to, std::vector<std::uint32_t>& table, const std::string& content, std::size_t size)
        {
            if (content.empty())
                return EndOfChain;
            const auto start = static_cast<std::uint32_t>(table.size());
            to += content;
            to.resize((to.size() + size - 1) / size * size);
            while (table.size() < to.size() / size)
                table.push_back(static_cast<std::uint32_t>(table.size() + 1));
            table.back() = EndOfChain;
            return start;
        }
    };

    static std::string table(const std::vector<std::uint32_t>& entries)
    {
        std::string bytes;
        for (const std::uint32_t entry : entries)
            bytes += littleEndian(entry, 4);
        while (bytes.size() % SectorSize != 0)
            bytes += '\xFF';
        return bytes;
    }
    static std::string node(const std::string& name, int kind, std::uint32_t right, std::uint32_t child,
        std::uint32_t start, std::size_t size)
    {
        std::string units;
        for (const char c : name)
            units += littleEndian(static_cast<unsigned char>(c), 2);
        units.resize(64, '\0');
        return units + littleEndian(name.empty() ? 0 : 2 * name.size() + 2, 2) + static_cast<char>(kind)
            + '\1' + littleEndian(None, 4) + littleEndian(right, 4) + littleEndian(child, 4)
            + std::string(36, '\0') + littleEndian(start, 4) + littleEndian(size, 8);
    }
    // Header, sectors, and the FAT at the end.
    static std::string finished(Parts& parts, std::uint32_t directory, std::uint32_t miniTable)
    {
        const auto fatStart = static_cast<std::uint32_t>(parts.fat.size());
        const std::size_t perSector = SectorSize / 4;
        std::size_t fatSectors = 1;
        while ((parts.fat.size() + fatSectors + perSector - 1) / perSector > fatSectors)
            ++fatSectors;
        parts.fat.insert(parts.fat.end(), fatSectors, FatSector);
        std::string header = std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") + std::string(16, '\0')
            + littleEndian(0x3E, 2) + littleEndian(3, 2) + littleEndian(0xFFFE, 2) + littleEndian(9, 2)
            + littleEndian(6, 2) + std::string(10, '\0') + littleEndian(fatSectors, 4)
            + littleEndian(directory, 4) + littleEndian(0, 4) + littleEndian(4096, 4)
            + littleEndian(miniTable, 4) + littleEndian(1, 4) + littleEndian(EndOfChain, 4)
            + littleEndian(0, 4);
        for (std::size_t i = 0; i < fatSectors; ++i)
            header += littleEndian(fatStart + i, 4);
        header.resize(SectorSize, '\xFF');
        return header + parts.sectors + table(parts.fat);
    }

    std::vector<std::pair<std::string, std::string>> m_streams;
};

} // namespace caddis
