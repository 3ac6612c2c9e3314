#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>
#include <string_view>

namespace caddis::MappedFile {

/// The smallest file that is worth mapping; shorter ones are read.
inline constexpr std::size_t LeastMappedSize = 64 * 1024;

/// The bytes of a plain file, mapped when that is safe and worth it: memory grows by the pages that are
/// touched, and a copy of the Data shares the mapping, which ends with the last one.
///
/// "Safe": whatever happens to the file, reading the Data never ends the process. A file that is cut short
/// meanwhile reads as zeros behind its new end (see FaultGuard.h); one that is overwritten shows its new
/// bytes, so a reader that checks bytes and then relies on them must have copied them.
///
/// Nil when the file can't be read or is not a plain file. An empty file gives empty Data.
std::optional<Data> open(const String& path);

/// Who reads a mapped file from front to back may say what lies behind: the pages no longer count as this
/// process's memory, and come back when they are read again. Nothing happens to bytes that no `open` of this
/// program or module has mapped.
void discard(std::string_view bytes);

} // namespace caddis::MappedFile
