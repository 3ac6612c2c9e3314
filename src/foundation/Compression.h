#pragma once

#include "platform/base/String.h"

#include <cstdint>

namespace caddis {
inline namespace NSFileManagerOstraExtensions {

/// The most that is unpacked, or copied to work on it: more than a book with its films has.
inline constexpr std::uint64_t MostUnpackedBytes = std::uint64_t(2) << 30;

/// Unpacks the zip archive at `path` into a new folder (0700) at `toPath`; true when all of it is there.
///
/// False, and nothing is left at `toPath`: something is there already, the file is no archive, a member is
/// damaged or encrypted, or a member's name or kind could lead out of the folder (an absolute name, "..", a
/// backslash, U+0000, a symbolic link). Of two members with one name the first is kept, which is the one that
/// ZipArchive finds. It fails, too, when the members have more than `mostBytes` together: ten megabytes may
/// yield ten gigabytes.
bool decompressFileAtPath(
    const String& path, const String& toPath, std::uint64_t mostBytes = MostUnpackedBytes);

} // namespace NSFileManagerOstraExtensions
} // namespace caddis
