#include "platform/files/FileSystem.h"

#include "platform/base/Ascii.h"
#include "platform/base/Paths.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis {

std::optional<std::string> fileSystemRepresentation(const String& path)
{
    if (path.isEmpty() || path.view().find(u'\0') != path.view().npos || !path.isWellFormed())
        return std::nullopt;
    return path.utf8();
}

} // namespace caddis

namespace caddis::FileSystem {

namespace fs = std::filesystem;

namespace {

// Folder extensions that stand for one document or one bundle.
constexpr std::array<std::u16string_view, 36> PackageExtensions {
    u"action",
    u"app",
    u"appex",
    u"band",
    u"bundle",
    u"chatlog",
    u"component",
    u"dsym",
    u"epub",
    u"fcpbundle",
    u"framework",
    u"graffle",
    u"ibooks",
    u"imovielibrary",
    u"key",
    u"kext",
    u"logicx",
    u"mdimporter",
    u"mellel",
    u"numbers",
    u"oo3",
    u"ooutline",
    u"pages",
    u"photoslibrary",
    u"pkg",
    u"plugin",
    u"prefpane",
    u"qlgenerator",
    u"rtfd",
    u"saver",
    u"scap",
    u"scptd",
    u"scriv",
    u"textbundle",
    u"workflow",
    u"xcodeproj",
};

std::optional<fs::path> nativePath(const String& path)
{
    auto bytes = fileSystemRepresentation(path);
    return bytes ? std::optional<fs::path>(std::move(*bytes)) : std::nullopt;
}

bool copyEntry(const fs::directory_entry& entry, const fs::path& to, std::uint64_t& bytesLeft)
{
    std::error_code error;
    if (entry.is_symlink(error)) {
        fs::copy_symlink(entry.path(), to, error);
    } else if (entry.is_directory(error)) {
        return mkdir(to.c_str(), S_IRWXU) == 0;
    } else if (entry.is_regular_file(error)) {
        const std::uint64_t size = entry.file_size(error);
        if (error || size > bytesLeft)
            return false;
        bytesLeft -= size;
        fs::copy_file(entry.path(), to, error);
    }
    return !error;
}

bool copyTree(const fs::path& from, const fs::path& to, std::uint64_t bytesLeft)
{
    std::error_code error;
    if (!copyEntry(fs::directory_entry(from, error), to, bytesLeft) || error)
        return false;
    if (fs::is_symlink(from, error) || !fs::is_directory(from, error))
        return true;
    for (auto entry = fs::recursive_directory_iterator(from, error); !error && entry != end(entry);
         entry.increment(error)) {
        if (!copyEntry(*entry, to / entry->path().lexically_relative(from), bytesLeft))
            return false;
    }
    return !error;
}

} // namespace

bool exists(const String& path)
{
    const auto native = nativePath(path);
    std::error_code error;
    return native && fs::exists(*native, error);
}

bool isDirectory(const String& path)
{
    const auto native = nativePath(path);
    std::error_code error;
    return native && fs::is_directory(*native, error);
}

std::uint64_t sizeOfFile(const String& path)
{
    const auto native = nativePath(path);
    std::error_code error;
    const auto size = native && fs::is_regular_file(*native, error) ? fs::file_size(*native, error) : 0;
    return error ? 0 : size;
}

bool isFilePackageAtPath(const String& path)
{
    const String extension = lowercaseAscii(pathExtension(path));
    return std::ranges::binary_search(PackageExtensions, extension.view()) && isDirectory(path);
}

std::optional<std::vector<String>> contentsOfDirectory(const String& path)
{
    const auto native = nativePath(path);
    if (!native)
        return std::nullopt;
    std::error_code error;
    std::vector<String> names;
    for (auto entry = fs::directory_iterator(*native, error); !error && entry != end(entry);
         entry.increment(error)) {
        if (auto name = String::fromStrictUtf8(entry->path().filename().native()))
            names.push_back(std::move(*name));
    }
    if (error)
        return std::nullopt;
    std::ranges::sort(names);
    return names;
}

std::optional<Data> contentsOfFile(const String& path)
{
    const auto native = fileSystemRepresentation(path);
    // Without O_NONBLOCK a named pipe would wait for its writer.
    const int file = native ? open(native->c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK) : -1;
    if (file < 0)
        return std::nullopt;
    struct stat status { };
    std::string bytes;
    bool isWhole = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    bytes.resize(isWhole ? static_cast<std::size_t>(status.st_size) : 0);
    std::size_t length = 0;
    while (isWhole && length < bytes.size()) {
        const ssize_t count = read(file, bytes.data() + length, bytes.size() - length);
        if (count == 0)
            break;
        isWhole = count > 0 || errno == EINTR;
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    close(file);
    bytes.resize(length);
    return isWhole ? std::optional(Data::adopt(std::move(bytes))) : std::nullopt;
}

bool copyItem(const String& from, const String& to, std::uint64_t mostBytes)
{
    const auto source = nativePath(from);
    const auto destination = nativePath(to);
    std::error_code error;
    if (!source || !destination || fs::symlink_status(*destination, error).type() != fs::file_type::not_found)
        return false;
    // A copy into its own original would never end.
    const auto original = fs::canonical(*source, error);
    const auto inside
        = error ? fs::path() : fs::weakly_canonical(*destination, error).lexically_relative(original);
    if (error || inside.empty() || *inside.begin() != "..")
        return false;
    if (copyTree(*source, *destination, mostBytes))
        return true;
    fs::remove_all(*destination, error);
    return false;
}

bool moveItem(const String& from, const String& to)
{
    const auto source = nativePath(from);
    const auto destination = nativePath(to);
    if (!source || !destination)
        return false;
    if (renameat2(AT_FDCWD, source->c_str(), AT_FDCWD, destination->c_str(), RENAME_NOREPLACE) == 0)
        return true;
    // EINVAL: some file systems can't promise to replace nothing.
    return (errno == EXDEV || errno == EINVAL) && copyItem(from, to) && removeItem(from);
}

bool removeItem(const String& path)
{
    const auto native = nativePath(path);
    std::error_code error;
    return native && fs::remove_all(*native, error) > 0 && !error;
}

bool createDirectory(const String& path)
{
    const auto native = fileSystemRepresentation(path);
    if (!native)
        return false;
    if (mkdir(native->c_str(), S_IRWXU) == 0 || isDirectory(path))
        return true;
    const String parent = stringByDeletingLastPathComponent(path);
    return errno == ENOENT && parent.length() < path.length() && createDirectory(parent)
        && mkdir(native->c_str(), S_IRWXU) == 0;
}

std::optional<String> canonicalPath(const String& path)
{
    const auto native = nativePath(path);
    std::error_code error;
    const auto canonical = native ? fs::canonical(*native, error) : fs::path();
    return native && !error ? String::fromStrictUtf8(canonical.native()) : std::nullopt;
}

} // namespace caddis::FileSystem
