#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace caddis::bundles {

/// A compound file (MS-CFB): a small file system in one file, as old office documents and saved messages are.
///
///     header | sectors                 a sector has 512 or 4096 bytes
///     FAT                              for each sector the next one of its chain
///     directory, mini stream, mini FAT chains of sectors; streams below 4096 bytes lie in the mini stream,
///                                      whose sectors of 64 bytes the mini FAT chains
///
/// Made for hostile files: a chain that runs in a circle or out of the file ends there, every directory entry
/// counts once, and no stream is longer than the file.
class CompoundFile {
public:
    struct Entry {
        std::string path; ///< names in UTF-8 with "/" between them: "Storage/Stream"
        std::uint32_t start; ///< its first sector, or mini sector
        std::uint64_t size; ///< in bytes, as the directory says
    };

    /// The bytes stay the caller's and must outlive the reader. Nil when they begin with no such header, or
    /// there is no directory.
    static std::optional<CompoundFile> open(std::string_view bytes);

    /// The streams; storages stand in their paths only. At most MaximumStreams.
    const std::vector<Entry>& streams() const { return m_streams; }
    /// The contents of a stream; what can't be reached is missing at its end. Nil when there is none of that
    /// name, whose ASCII letters may be in either case.
    std::optional<std::string> stream(std::string_view path) const;
    std::string contents(const Entry& entry) const;

    static constexpr std::size_t MaximumStreams = 65'536;

private:
    using Table = std::vector<std::uint32_t>;
    struct Node;

    explicit CompoundFile(std::string_view bytes)
        : m_bytes(bytes)
    {
    }
    bool readTables();
    std::string_view sector(std::uint32_t number) const;
    std::string chain(std::uint32_t start, std::uint64_t size) const;
    std::string miniChain(std::uint32_t start, std::uint64_t size) const;
    void readDirectory(const std::string& directory);

    std::string_view m_bytes;
    std::size_t m_sectorSize = 0;
    Table m_fat;
    Table m_miniFat;
    std::string m_miniStream;
    std::vector<Entry> m_streams;
    std::unordered_map<std::string, std::size_t> m_places; ///< of streams, by their paths in lower case
};

} // namespace caddis::bundles
