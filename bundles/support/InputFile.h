#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace caddis::bundles {

/// The most that is read of a file which has to be in memory as a whole.
inline constexpr std::size_t MaximumFile = 64 * 1024 * 1024;

/// The first `limit` bytes of a plain file; nil when it can't be read or is none. Read, not mapped: the file
/// may be cut short at any time.
std::optional<std::string> readFile(const std::string& path, std::size_t limit = MaximumFile);

/// The part of the path behind its last slash.
std::string fileName(const std::string& path);

} // namespace caddis::bundles
