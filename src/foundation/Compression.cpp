#include "foundation/Compression.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/zip/ZipReader.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis {

namespace {

constexpr std::ptrdiff_t MostFolders = 64; // Inside one another; more would be hard to remove again.

// Only below the folder that it is unpacked into: relative, plain components.
bool isSafeName(std::string_view name)
{
    if (name.empty() || name.starts_with('/') || name.find('\\') != name.npos || name.find('\0') != name.npos)
        return false;
    if (std::ranges::count(name, '/') > MostFolders)
        return false;
    while (!name.empty()) {
        const std::string_view component = name.substr(0, name.find('/'));
        if (component == "..")
            return false;
        name.remove_prefix(std::min(component.size() + 1, name.size()));
    }
    return true;
}

bool writeAll(int file, std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool unpackFile(ZipReader& archive, const String& path)
{
    const auto native = fileSystemRepresentation(path);
    if (!native)
        return false;
    const int file
        = open(native->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return FileSystem::exists(path) && !FileSystem::isDirectory(path);
    const bool isWhole
        = archive.readMember([file](std::span<const std::uint8_t> piece) { return writeAll(file, piece); });
    return close(file) == 0 && isWhole;
}

bool unpackMember(ZipReader& archive, const ZipReader::Member& member, const String& folder)
{
    if (!isSafeName(member.name) || member.isSymbolicLink || member.isEncrypted)
        return false;
    const auto name = String::fromStrictUtf8(member.name);
    const String path
        = stringByAppendingPathComponent(folder, name ? *name : String::fromLatin1(member.name));
    if (member.name.ends_with('/'))
        return FileSystem::createDirectory(path);
    return FileSystem::createDirectory(stringByDeletingLastPathComponent(path)) && unpackFile(archive, path);
}

} // namespace

inline namespace NSFileManagerOstraExtensions {

bool decompressFileAtPath(const String& path, const String& toPath, std::uint64_t mostBytes)
{
    const auto archive = ZipReader::open(path);
    const auto folder = fileSystemRepresentation(toPath);
    if (!archive || !folder || mkdir(folder->c_str(), S_IRWXU) != 0)
        return false;
    // A member that yields more or less than it says is damaged, so what they say may be believed.
    std::uint64_t bytesLeft = mostBytes;
    const auto unpackNext = [&](const ZipReader::Member& member) {
        if (member.size > bytesLeft)
            return false;
        bytesLeft -= member.size;
        return unpackMember(*archive, member, toPath);
    };
    if (archive->forEachMember(unpackNext))
        return true;
    FileSystem::removeItem(toPath);
    return false;
}

} // namespace NSFileManagerOstraExtensions
} // namespace caddis
