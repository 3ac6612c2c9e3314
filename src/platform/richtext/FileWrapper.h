#pragma once

#include "platform/base/Data.h"
#include "platform/base/String.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace caddis {

/// What stands between a number and the name of a member whose name another one has already.
inline constexpr std::u16string_view CollisionMark = u"__#$!@%!#__";

/// A file or a folder in memory: what an attachment holds, and what an RTFD document is.
struct FileWrapper {
    /// As flat RTFD keeps them; what the last two words mean is not known.
    struct Attributes {
        std::uint32_t modificationTime = 0; ///< seconds since 1970-01-01 00:00:00 UTC
        std::uint32_t mode = 0666;
        std::uint32_t words[2] = { 0, 0 };

        friend bool operator==(const Attributes&, const Attributes&) = default;
    };
    /// Where a folder's record of its members' attributes stands among them.
    static constexpr std::size_t NoRecord = static_cast<std::size_t>(-1);

    static FileWrapper file(String name, Data contents);
    static FileWrapper folder(String name, std::vector<FileWrapper> members);

    String name; ///< one path component, or empty
    bool isDirectory = false;
    Data contents; ///< a file's; shares the bytes it was read from
    std::vector<FileWrapper> members; ///< a folder's
    Attributes attributes;
    std::size_t recordIndex = NoRecord;

    /// Null pointer when there is no member of that name.
    const FileWrapper* member(std::u16string_view wanted) const;

    friend bool operator==(const FileWrapper&, const FileWrapper&) = default;
};

/// A name that a member may have on disk, made of `name`: its last path component, neither empty nor "." nor
/// "..", without control characters. Same: returns `name` itself when it is one already.
String safeMemberName(const String& name);

/// The folder or file at `path`; files are mapped. Nil when it can't be read, or is deeper than 32 folders.
/// Links are not followed and, like sockets and devices, left out.
std::optional<FileWrapper> readFileWrapper(const String& path);

/// Writes the wrapper to `path`, whole or not at all: it is made beside the target and put in its place when
/// all is written. What stood there is replaced. False, with nothing changed, when it can't be written.
bool writeFileWrapper(const FileWrapper& wrapper, const String& path);

} // namespace caddis
