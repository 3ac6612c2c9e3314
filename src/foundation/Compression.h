#pragma once

#include "platform/base/String.h"

namespace caddis {
inline namespace NSFileManagerOstraExtensions {

/// Unpacks the zip archive at `path` into a new folder (0700) at `toPath`; true when all of it is there.
///
/// False, and nothing is left at `toPath`: something is there already, the file is no archive, a member is
/// damaged or encrypted, or a member's name or kind could lead out of the folder (an absolute name, "..", a
/// backslash, U+0000, a symbolic link). Of two members with one name the first is kept, which is the one that
/// ZipArchive finds. What is unpacked is bounded by what the archive's own bytes can yield.
bool decompressFileAtPath(const String& path, const String& toPath);

} // namespace NSFileManagerOstraExtensions
} // namespace caddis
