#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <optional>

/// Reads the path out of the "book" layout of bookmark data, which other platforms write.
///
/// Layout, little-endian, offsets counted from the end of the 48-byte header:
///
///     "book" or "alis"  u32 total size  u32  u32 header size (48)  32 bytes
///     u32 offset of the first table of contents
///     table    u32 size - 8  u32 0xFFFFFFFE  u32 id  u32 next table or 0  u32 count
///              count × { u32 key  u32 record offset  u32 0 }
///     record   u32 length  u32 type  data: 0x0101 UTF-8 text, 0x0601 array of u32 record offsets
///
/// Key 0x1004 is the array of path components.
namespace caddis {

bool isBookData(const Data& bookmark);

/// Nil when the data is damaged or names no path.
std::optional<String> pathOfBookData(const Data& bookmark);

} // namespace caddis
