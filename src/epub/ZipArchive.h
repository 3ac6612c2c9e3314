#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"
#include "platform/zip/MappedZip.h"

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace caddis {

/// Read access to single members of a zip archive, without unpacking it.
///
/// The file stays mapped while the archive is open; a member is inflated in one call into one buffer of its
/// own size, which becomes the result. Failures are logged and answered with nil or false. Names are the
/// UTF-8 bytes in the archive's directory; ASCII letters match in either case.
///
/// For one thread at a time: each call moves the archive's current member.
class ZipArchive {
public:
    /// The zip library counts what it read in a signed 32-bit number.
    static constexpr std::uint64_t MostBytes = std::numeric_limits<std::int32_t>::max();

    /// Null when the file can't be read or is no zip archive.
    static std::unique_ptr<ZipArchive> initWithZipFile(const String& path);
    ~ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    bool testForNamedFile(const String& name);

    /// The member inflated, of a longer one the first `most` bytes. Checksums are not compared.
    ///
    /// Nil, with a log line: no such member, a damaged directory or member, a length that the member's bytes
    /// can't yield, or 2 GiB and more.
    std::optional<Data> dataForNamedFile(const String& name, std::uint64_t most = MostBytes);

    /// Opens another file with the library's own file functions, not mapped. False while an archive is open,
    /// and when the file is no zip archive.
    bool openZipFile(const String& path);
    /// False, and the archive stays as it is, when none is open.
    bool closeZipFile();

private:
    explicit ZipArchive(const String& path);
    void readPositions();
    std::optional<Data> readCurrentFile(const String& name, const unz_file_info64& info, std::uint64_t most);

    unzFile m_zipFile = nullptr;
    String m_archiveName;
    std::uint64_t m_archiveSize = 0;
    // Where each member stands in the directory, by its name in lower case; unset until one is asked for.
    std::optional<std::unordered_map<std::string, unz64_file_pos>> m_positions;
    zlib_filefunc64_def m_mmap_defs; // Lives as long as the archive is open, like the position it points to.
    std::int64_t m_pos = 0;
};

} // namespace caddis
