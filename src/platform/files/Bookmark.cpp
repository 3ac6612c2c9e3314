#include "platform/files/Bookmark.h"

#include "platform/base/Format.h"
#include "platform/files/BookData.h"
#include "platform/files/ByteReader.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace caddis {

namespace {

constexpr std::string_view Magic = "cdbk";
constexpr std::uint16_t Version = 1;
constexpr std::size_t MostFolderEntries = 200'000; // How far a renamed file is searched for in its folder.

enum Tag : std::uint16_t { Path = 1, Identities, Device, Birth, Size, Creator, Flags };

std::uint32_t checksum(std::string_view bytes)
{
    return static_cast<std::uint32_t>(
        crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

// The components of an absolute path: "/a//b/" is "a", "b".
std::vector<std::string> componentsOf(std::string_view path)
{
    std::vector<std::string> components;
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        if (!component.empty())
            components.emplace_back(component);
        path.remove_prefix(std::min(component.size() + 1, path.size()));
    }
    return components;
}

template <typename Number> void appendNumber(std::string& out, Number value)
{
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void appendRecord(std::string& out, Tag tag, std::string_view bytes)
{
    appendNumber(out, static_cast<std::uint16_t>(tag));
    appendNumber(out, std::uint16_t { 0 });
    appendNumber(out, static_cast<std::uint32_t>(bytes.size()));
    out.append(bytes);
}

template <typename... Numbers> void appendNumbers(std::string& out, Tag tag, Numbers... numbers)
{
    std::string bytes;
    (appendNumber(bytes, numbers), ...);
    appendRecord(out, tag, bytes);
}

std::optional<struct statx> statusOf(const std::string& path)
{
    struct statx status { };
    if (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return std::nullopt;
    return status;
}

std::optional<std::uint64_t> inodeOf(const std::string& path)
{
    const auto status = statusOf(path);
    return status ? std::optional<std::uint64_t>(status->stx_ino) : std::nullopt;
}

// The value of a birth record; nil where the file system knows no birth time.
std::optional<std::string> birthOf(const struct statx& status)
{
    if (!(status.stx_mask & STATX_BTIME))
        return std::nullopt;
    std::string bytes;
    appendNumber(bytes, status.stx_btime.tv_sec);
    appendNumber(bytes, status.stx_btime.tv_nsec);
    return bytes;
}

// What a bookmark says, as far as resolving needs it.
struct Contents {
    std::vector<std::string> components;
    std::vector<std::uint64_t> identities; // as many as components
    std::optional<std::string> birth; // of the file itself
};

std::optional<Contents> read(const Data& bookmark)
{
    const std::string_view bytes = bookmark.chars();
    if (bytes.size() < 12 || !bytes.starts_with(Magic))
        return std::nullopt;
    const std::string_view body = bytes.substr(0, bytes.size() - 4);
    if (ByteReader(bytes, body.size()).u32() != checksum(body))
        return std::nullopt;
    ByteReader reader(body, Magic.size());
    if (reader.u16() != Version)
        return std::nullopt;
    reader.skip(2);
    Contents contents;
    while (const auto tag = reader.u16()) {
        reader.skip(2);
        const auto length = reader.u32();
        const auto value = length ? reader.bytes(*length) : std::nullopt;
        const bool isPath = tag == Tag::Path;
        if (!value || (isPath && value->find('\0') != value->npos))
            return std::nullopt;
        if (isPath)
            contents.components = componentsOf(*value);
        if (*tag == Tag::Birth)
            contents.birth = std::string(*value);
        ByteReader numbers(*value);
        while (const auto identity = *tag == Tag::Identities ? numbers.u64() : std::nullopt)
            contents.identities.push_back(*identity);
    }
    const bool isWhole
        = !contents.components.empty() && contents.components.size() == contents.identities.size();
    return isWhole ? std::optional(std::move(contents)) : std::nullopt;
}

// The name in `folder` of the entry with this inode.
std::optional<std::string> nameOfInode(const std::string& folder, std::uint64_t inode)
{
    const std::unique_ptr<DIR, void (*)(DIR*)> stream(
        opendir(folder.c_str()), [](DIR* opened) { closedir(opened); });
    std::size_t visited = 0;
    while (stream && visited++ < MostFolderEntries) {
        const dirent* entry = readdir(stream.get());
        if (!entry)
            break;
        const std::string_view name = entry->d_name;
        if (entry->d_ino == inode && name != "." && name != "..")
            return std::string(name);
    }
    return std::nullopt;
}

// The name that the component has in `folder` now: its own; else, since a renamed file is still the same
// file, that of the entry with its inode; else nil. An inode is used again after its file's death, so the
// file itself must have the same time of birth too. A file that took the place of another is at least where
// it was.
std::optional<std::string> presentName(const Contents& contents, std::size_t index, const std::string& folder)
{
    const std::string& name = contents.components[index];
    const std::uint64_t identity = contents.identities[index];
    const auto present = inodeOf(folder + '/' + name);
    if (present == identity)
        return name;
    auto renamed = nameOfInode(folder + '/', identity);
    const auto status = renamed ? statusOf(folder + '/' + *renamed) : std::nullopt;
    const bool isLast = index + 1 == contents.components.size();
    if (status && (!isLast || birthOf(*status) == contents.birth))
        return renamed;
    return present ? std::optional(name) : std::nullopt;
}

String missing(const std::string& path)
{
    return format(u"The file \"%s\" of the bookmark doesn't exist.", path);
}

ResolvedBookmark resolved(const std::string& path, bool isStale)
{
    const auto text = String::fromStrictUtf8(path);
    if (!text)
        return { std::nullopt, u"The bookmark leads to a name that is not UTF-8."_s, false };
    return { URL::fileURLWithPath(*text), std::nullopt, isStale };
}

ResolvedBookmark resolveBook(const Data& bookmark)
{
    const auto path = pathOfBookData(bookmark);
    if (!path)
        return { std::nullopt, u"The bookmark data is damaged."_s, false };
    if (!inodeOf(path->utf8()))
        return { std::nullopt, missing(path->utf8()), false };
    return resolved(path->utf8(), true);
}

} // namespace

std::optional<Data> bookmarkDataForPath(const String& path, BookmarkFlags flags)
{
    const std::string file = path.utf8();
    if (!file.starts_with('/') || file.find('\0') != file.npos)
        return std::nullopt;
    const auto status = statusOf(file);
    if (!status)
        return std::nullopt;
    std::string identities;
    std::string prefix;
    for (const std::string& component : componentsOf(file)) {
        prefix += '/' + component;
        const auto inode = inodeOf(prefix);
        if (!inode)
            return std::nullopt;
        appendNumber(identities, *inode);
    }
    std::string out(Magic);
    appendNumber(out, Version);
    appendNumber(out, std::uint16_t { 0 });
    appendRecord(out, Tag::Path, file);
    appendRecord(out, Tag::Identities, identities);
    appendNumbers(out, Tag::Device, status->stx_dev_major, status->stx_dev_minor);
    if (const auto birth = birthOf(*status))
        appendRecord(out, Tag::Birth, *birth);
    appendNumbers(out, Tag::Size, status->stx_size);
    appendNumbers(out, Tag::Creator, geteuid());
    appendNumbers(out, Tag::Flags, flags);
    appendNumber(out, checksum(out));
    return Data::adopt(std::move(out));
}

ResolvedBookmark URLByResolvingBookmarkData(const Data& bookmark)
{
    if (isBookData(bookmark))
        return resolveBook(bookmark);
    const auto contents = read(bookmark);
    if (!contents)
        return { std::nullopt, u"The bookmark data is damaged."_s, false };
    std::string path;
    bool isStale = false;
    for (std::size_t index = 0; index < contents->components.size(); ++index) {
        const auto name = presentName(*contents, index, path);
        if (!name)
            return { std::nullopt, missing(path + '/' + contents->components[index]), false };
        isStale = isStale || *name != contents->components[index]
            || inodeOf(path + '/' + *name) != contents->identities[index];
        path += '/' + *name;
    }
    return resolved(path, isStale);
}

} // namespace caddis
