#include "bundles/support/CompoundFile.h"

#include "bundles/support/LittleEndian.h"
#include "platform/base/Utf.h"

#include <algorithm>

namespace caddis::bundles {

namespace {

constexpr std::size_t HeaderSize = 512;
constexpr std::size_t HeaderTableEntries = 109; // numbers of FAT sectors that stand in the header
constexpr std::size_t MiniSectorSize = 64;
constexpr std::uint64_t MiniStreamCutoff = 4096; // the format allows no other
constexpr std::uint32_t LargestSector = 0xFFFFFFFA; // above it are marks: end of chain, free
constexpr std::size_t NodeSize = 128;
constexpr std::uint32_t NoNode = 0xFFFFFFFF;
constexpr int MaximumDepth = 32;
enum class NodeKind : std::uint8_t { Storage = 1, Stream = 2, Root = 5 };

void appendTable(std::vector<std::uint32_t>& table, std::string_view bytes)
{
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
        table.push_back(u32(bytes, at));
}

std::string lowercase(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return result;
}

} // namespace

// One entry of the directory. The members of a storage form a tree of siblings below its child.
struct CompoundFile::Node {
    std::string_view bytes;

    NodeKind kind() const { return static_cast<NodeKind>(bytes[66]); }
    std::uint32_t left() const { return u32(bytes, 68); }
    std::uint32_t right() const { return u32(bytes, 72); }
    std::uint32_t child() const { return u32(bytes, 76); }
    std::uint32_t start() const { return u32(bytes, 116); }
    // Files with small sectors leave rubbish in the upper half.
    std::uint64_t size(bool isLarge) const
    {
        return u32(bytes, 120) | (isLarge ? std::uint64_t(u32(bytes, 124)) << 32 : 0);
    }
    // In UTF-16, its length in bytes and with a zero at its end.
    std::string name() const
    {
        const std::size_t length = std::min<std::size_t>(u16(bytes, 64), 64);
        std::u16string units;
        for (std::size_t at = 0; at + 2 < length; at += 2)
            units += static_cast<char16_t>(u16(bytes, at));
        return utf16ToUtf8(units);
    }
};

std::optional<CompoundFile> CompoundFile::open(std::string_view bytes)
{
    constexpr std::string_view Signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
    CompoundFile file(bytes);
    if (!bytes.starts_with(Signature) || bytes.size() < HeaderSize || !file.readTables())
        return std::nullopt;
    const std::string directory = file.chain(u32(bytes, 48), bytes.size());
    if (directory.size() < NodeSize)
        return std::nullopt;
    const Node root { std::string_view(directory).substr(0, NodeSize) };
    file.m_miniStream = file.chain(root.start(), root.size(file.m_sectorSize > HeaderSize));
    file.readDirectory(directory);
    return file;
}

// The numbers of the FAT's sectors are in the header and, of large files, in a chain of sectors whose last
// number leads to the next one.
bool CompoundFile::readTables()
{
    const unsigned shift = u16(m_bytes, 30);
    if (shift != 9 && shift != 12)
        return false;
    m_sectorSize = std::size_t(1) << shift;
    const std::size_t sectors = m_bytes.size() / m_sectorSize;
    Table places;
    appendTable(places, m_bytes.substr(76, 4 * HeaderTableEntries));
    std::uint32_t next = u32(m_bytes, 68);
    for (std::size_t count = 0; next <= LargestSector && count <= sectors; ++count) {
        const std::string_view table = sector(next);
        if (table.size() < m_sectorSize)
            break;
        appendTable(places, table.substr(0, m_sectorSize - 4));
        next = u32(table, m_sectorSize - 4);
    }
    for (const std::uint32_t place : places) {
        if (place <= LargestSector && m_fat.size() < sectors)
            appendTable(m_fat, sector(place));
    }
    appendTable(m_miniFat, chain(u32(m_bytes, 60), m_bytes.size()));
    return true;
}

// Empty outside the file; the last one may be short.
std::string_view CompoundFile::sector(std::uint32_t number) const
{
    const std::uint64_t offset = (std::uint64_t(number) + 1) << (m_sectorSize == HeaderSize ? 9 : 12);
    return offset < m_bytes.size() ? m_bytes.substr(offset, m_sectorSize) : std::string_view();
}

// A chain with more sectors than the file goes in a circle.
std::string CompoundFile::chain(std::uint32_t start, std::uint64_t size) const
{
    const std::uint64_t length = std::min<std::uint64_t>(size, m_bytes.size());
    std::string bytes;
    std::uint32_t next = start;
    while (bytes.size() < length) {
        const std::string_view piece = next <= LargestSector ? sector(next) : std::string_view();
        if (piece.empty())
            break;
        bytes.append(piece.substr(0, length - bytes.size()));
        next = next < m_fat.size() ? m_fat[next] : NoNode;
    }
    return bytes;
}

std::string CompoundFile::miniChain(std::uint32_t start, std::uint64_t size) const
{
    const std::uint64_t length = std::min<std::uint64_t>(size, m_miniStream.size());
    std::string bytes;
    std::uint32_t next = start;
    while (bytes.size() < length) {
        const std::uint64_t offset = std::uint64_t(next) * MiniSectorSize;
        if (next > LargestSector || offset >= m_miniStream.size())
            break;
        bytes.append(m_miniStream, offset, std::min<std::uint64_t>(MiniSectorSize, length - bytes.size()));
        next = next < m_miniFat.size() ? m_miniFat[next] : NoNode;
    }
    return bytes;
}

void CompoundFile::readDirectory(const std::string& directory)
{
    struct Place {
        std::uint32_t node;
        std::string folder;
        int depth;
    };
    const std::size_t count = directory.size() / NodeSize;
    const auto node = [&](std::uint32_t number) {
        return Node { std::string_view(directory).substr(number * NodeSize, NodeSize) };
    };
    std::vector<bool> isSeen(count);
    std::vector<Place> open { { node(0).child(), {}, 0 } };
    while (!open.empty() && m_streams.size() < MaximumStreams) {
        const Place place = std::move(open.back());
        open.pop_back();
        if (place.node >= count || isSeen[place.node] || place.depth > MaximumDepth)
            continue;
        isSeen[place.node] = true;
        const Node found = node(place.node);
        std::string path = place.folder + found.name();
        if (found.kind() == NodeKind::Stream) {
            m_places.try_emplace(lowercase(path), m_streams.size());
            m_streams.push_back({ path, found.start(), found.size(m_sectorSize > HeaderSize) });
        } else if (found.kind() == NodeKind::Storage) {
            open.push_back({ found.child(), path.append("/"), place.depth + 1 });
        }
        open.push_back({ found.right(), place.folder, place.depth });
        open.push_back({ found.left(), place.folder, place.depth });
    }
}

std::optional<std::string> CompoundFile::stream(std::string_view path) const
{
    const auto found = m_places.find(lowercase(path));
    return found == m_places.end() ? std::nullopt : std::optional(contents(m_streams[found->second]));
}

std::string CompoundFile::contents(const Entry& entry) const
{
    return entry.size < MiniStreamCutoff ? miniChain(entry.start, entry.size)
                                         : chain(entry.start, entry.size);
}

} // namespace caddis::bundles
