#include "platform/richtext/FileWrapper.h"

#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/MappedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t DeepestFolder = 32;
constexpr std::size_t MostMembers = 100000;
constexpr std::size_t LongestName = 255; // Bytes; what a file system takes.

bool isControl(char16_t unit) { return unit < 0x20 || unit == 0x7F; }

// Cut to the bytes that a file system takes, between characters.
String shortened(const String& name)
{
    std::string bytes = name.utf8();
    if (bytes.size() <= LongestName)
        return name;
    std::size_t end = LongestName;
    while (end > 0 && (static_cast<unsigned char>(bytes[end]) & 0xC0) == 0x80)
        --end;
    return String::fromUtf8(std::string_view(bytes).substr(0, end));
}

bool readFolder(const String& path, FileWrapper& folder, std::size_t depth, std::size_t& count);

bool readItem(const String& path, FileWrapper& item, std::size_t depth, std::size_t& count)
{
    item.name = lastPathComponent(path);
    struct stat status { };
    const auto native = fileSystemRepresentation(path);
    if (!native || lstat(native->c_str(), &status) != 0 || ++count > MostMembers)
        return false;
    item.attributes.mode = status.st_mode & 0777;
    if (S_ISDIR(status.st_mode))
        return readFolder(path, item, depth + 1, count);
    auto contents = S_ISREG(status.st_mode) ? MappedFile::open(path) : std::nullopt;
    if (!contents)
        return false;
    item.contents = *contents;
    return true;
}

// Members that can't be read are left out; only a tree beyond the limits fails as a whole.
bool readFolder(const String& path, FileWrapper& folder, std::size_t depth, std::size_t& count)
{
    folder.isDirectory = true;
    const auto names = FileSystem::contentsOfDirectory(path);
    if (depth > DeepestFolder || !names)
        return false;
    for (const String& name : *names) {
        FileWrapper member;
        if (readItem(format(u"%@/%@", path, name), member, depth, count))
            folder.members.push_back(std::move(member));
    }
    return count <= MostMembers;
}

bool writeAll(int file, std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool writeItem(const FileWrapper& item, const fs::path& path, std::size_t depth);

bool writeFile(const FileWrapper& file, const fs::path& path)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (descriptor < 0)
        return false;
    const bool isWritten = writeAll(descriptor, file.contents.span());
    return close(descriptor) == 0 && isWritten;
}

bool writeFolder(const FileWrapper& folder, const fs::path& path, std::size_t depth)
{
    if (depth > DeepestFolder || mkdir(path.c_str(), 0777) != 0)
        return false;
    std::set<String> names;
    for (const FileWrapper& member : folder.members) {
        String name = safeMemberName(member.name);
        for (int copy = 1; !names.insert(name).second; ++copy)
            name = shortened(format(u"%d%@%@", copy, String(CollisionMark), safeMemberName(member.name)));
        if (!writeItem(member, path / name.utf8(), depth + 1))
            return false;
    }
    return true;
}

bool writeItem(const FileWrapper& item, const fs::path& path, std::size_t depth)
{
    return item.isDirectory ? writeFolder(item, path, depth) : writeFile(item, path);
}

// Puts `made` in the place of `target`, whatever stands there; what stood there is then at `made`.
bool putInPlace(const fs::path& made, const fs::path& target)
{
    if (renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    return errno == EEXIST
        && renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0;
}

} // namespace

FileWrapper FileWrapper::file(String name, Data contents)
{
    FileWrapper wrapper;
    wrapper.name = std::move(name);
    wrapper.contents = std::move(contents);
    return wrapper;
}

FileWrapper FileWrapper::folder(String name, std::vector<FileWrapper> members)
{
    FileWrapper wrapper;
    wrapper.name = std::move(name);
    wrapper.isDirectory = true;
    wrapper.members = std::move(members);
    return wrapper;
}

const FileWrapper* FileWrapper::member(std::u16string_view wanted) const
{
    const auto found
        = std::ranges::find_if(members, [&](const FileWrapper& member) { return member.name == wanted; });
    return found == members.end() ? nullptr : &*found;
}

String safeMemberName(const String& name)
{
    String last = name.substringFrom(name.view().find_last_of(u'/') + 1);
    if (std::ranges::any_of(last, isControl) || !last.isWellFormed()) {
        MutableString clean(last.length());
        for (const char16_t unit : String::fromUtf8(last.utf8()))
            clean.append(isControl(unit) ? u'_' : unit);
        last = std::move(clean).take();
    }
    if (last.isEmpty() || last == u"." || last == u"..")
        return String(u"Attachment");
    return shortened(last);
}

std::optional<FileWrapper> readFileWrapper(const String& path)
{
    FileWrapper wrapper;
    std::size_t count = 0;
    if (!readItem(path, wrapper, 0, count))
        return std::nullopt;
    return wrapper;
}

bool writeFileWrapper(const FileWrapper& wrapper, const String& path)
{
    const auto native = fileSystemRepresentation(path);
    if (!native)
        return false;
    fs::path target(*native);
    if (!target.has_filename())
        target = target.parent_path();
    std::string pattern = (target.parent_path() / ".caddis-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        return false;
    const fs::path scratch(pattern);
    const fs::path made = scratch / "made";
    const bool isWritten = writeItem(wrapper, made, 0) && putInPlace(made, target);
    std::error_code ignored;
    fs::remove_all(scratch, ignored);
    return isWritten;
}

} // namespace caddis
