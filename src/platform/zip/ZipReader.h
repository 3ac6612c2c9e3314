#pragma once

#include "platform/base/FunctionRef.h"
#include "platform/base/String.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace caddis {

/// Visits the members of a zip archive in the order of its directory, the file mapped.
///
/// Nothing in an archive can be trusted, so what one yields is bounded by its own size: see
/// canYieldDeclaredSize(), and members that together claim more compressed bytes than the archive has are
/// refused, which ends archives whose members share their bytes.
class ZipReader {
public:
    struct Member {
        std::string name; ///< as it stands in the archive; any bytes, NUL and ".." among them
        std::uint64_t size; ///< that it says it has
        bool isEncrypted;
        bool isSymbolicLink;
    };
    using Sink = FunctionRef<bool(std::span<const std::uint8_t>)>;

    /// Null when the file can't be read or is no zip archive.
    static std::unique_ptr<ZipReader> open(const String& path);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// Calls `visit` for each member until it answers false; true when all were visited and the directory is
    /// sound.
    bool forEachMember(FunctionRef<bool(const Member&)> visit);

    /// Hands the visited member's bytes over in pieces; false when the sink answers so, or when the member is
    /// damaged: its length, its checksum or its claims don't hold.
    bool readMember(Sink sink);

private:
    struct Archive;
    explicit ZipReader(std::unique_ptr<Archive> archive);

    std::unique_ptr<Archive> m_archive;
};

} // namespace caddis
