#pragma once

#include "platform/base/Data.h"
#include "platform/base/URL.h"

#include <optional>

/// Bookmark data: a file reference that survives the renaming of the file and of the folders above it.
///
/// Layout, all numbers little-endian:
///
///     "cdbk"  u16 version (1)  u16 0
///     records, each: u16 tag  u16 0  u32 length  `length` bytes
///     u32 CRC-32 (as in zip) of everything before it
///
///     tag 1  path          UTF-8, absolute
///     tag 2  identities    u64 inode of each path component, outermost first
///     tag 3  device        u32 major  u32 minor
///     tag 4  birth         i64 seconds since 1970  u32 nanoseconds; left out where the file system knows
///     none tag 5  size          u64 bytes, when the bookmark was made tag 6  creator       u32 user id tag 7
///     flags         u32, BookmarkFlags
///
/// Unknown tags are passed over. There is no signature: who may hand a bookmark to the helper may as well
/// hand it a path.
///
/// Data that begins with "book" or "alis", the layout of another platform, is read for its path only.
namespace caddis {

enum class BookmarkFlags : std::uint32_t {
    None = 0,
    SecurityScoped = 1,
    ReadOnly = 2,
};

/// Nil when nothing exists at `path` or `path` is not absolute.
std::optional<Data> bookmarkDataForPath(
    const String& path, BookmarkFlags flags = BookmarkFlags::SecurityScoped);

/// What became of bookmark data: a URL, or an error that says why there is none.
struct ResolvedBookmark {
    std::optional<URL> url;
    std::optional<String> error;
    bool isStale
        = false; ///< the file lies elsewhere now, or another file took its place: make a new bookmark
};

/// Looks for the file at its path, then, component by component, under the names that its folders and the
/// file itself have now. Reads folders, never the file.
ResolvedBookmark URLByResolvingBookmarkData(const Data& bookmark);

} // namespace caddis
