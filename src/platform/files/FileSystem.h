#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace caddis {

/// The path's bytes for the operating system, which takes UTF-8 here; nil where no file can have that name:
/// no text, U+0000 or a lone surrogate in it.
std::optional<std::string> fileSystemRepresentation(const String& path);

} // namespace caddis

/// Files and folders by their paths. A path that no file can have names nothing; every failure is a result.
namespace caddis::FileSystem {

/// Symbolic links are followed: a broken one does not exist.
bool exists(const String& path);
bool isDirectory(const String& path);

/// Bytes; 0 for what is no plain file.
std::uint64_t sizeOfFile(const String& path);

/// Whether people see the folder at `path` as one document: a folder with the extension of a package type
/// (epub, rtfd, app …). A plain file is never a package.
bool isFilePackageAtPath(const String& path);

/// The names in a folder, sorted; nil when it can't be read. Names that are not UTF-8 are left out, since no
/// path could lead to them.
std::optional<std::vector<String>> contentsOfDirectory(const String& path);

/// The whole file, read at once; nil when it can't be read or is no plain file.
std::optional<Data> contentsOfFile(const String& path);

/// Copies a file or a whole folder to a path where nothing is yet; a failed copy leaves nothing there. It
/// fails, too, when there is more to copy than `mostBytes`. Symbolic links are copied as links; sockets and
/// devices are passed over. The copy's folders are the owner's to change whatever the originals allow, so
/// that the copy can be removed again.
bool copyItem(const String& from, const String& to,
    std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max());

/// Moves a file or a whole folder to a path where nothing is yet; between file systems by copying it.
bool moveItem(const String& from, const String& to);

/// Removes a file or a whole folder without following links; false when nothing was there or something
/// stayed.
bool removeItem(const String& path);

/// Makes a folder, and those above it that are missing, for this user alone (0700).
bool createDirectory(const String& path);

/// `path` with every link and ".." resolved; nil when nothing is there.
std::optional<String> canonicalPath(const String& path);

} // namespace caddis::FileSystem
