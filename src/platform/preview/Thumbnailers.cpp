#include "platform/preview/Thumbnailers.h"

#include "platform/base/Paths.h"
#include "platform/base/URL.h"
#include "platform/files/FileSystem.h"
#include "platform/image/ImageSource.h"
#include "platform/task/BoundedChild.h"

#include <algorithm>
#include <unordered_set>

namespace caddis {

namespace {

constexpr std::string_view EntryGroup = "Thumbnailer Entry";
constexpr std::uint64_t LargestEntry = 1 << 20; // Bytes.

std::string filled(char place, const ThumbnailerFiles& files)
{
    switch (place) {
    case 'i':
        return files.input;
    case 'u':
        return files.uri;
    case 'o':
        return files.output;
    case 's':
        return files.side;
    case '%':
        return "%";
    default:
        return {}; // Other places are out of use.
    }
}

// Programs choose by the extension at times; it is only taken along when it can't be read as anything else.
std::string safeExtension(const String& path)
{
    constexpr std::size_t Longest = 16;
    const std::string extension = pathExtension(path).utf8();
    const bool isSafe = !extension.empty() && extension.size() <= Longest
        && std::ranges::all_of(
            extension, [](unsigned char byte) { return byte < 0x80 && std::isalnum(byte); });
    return isSafe ? '.' + extension : std::string();
}

// What a program sees: the system's programs and their settings, one file, and the scratch folder.
std::vector<std::string> sandbox(
    const std::string& program, const std::string& file, const std::string& input, const std::string& scratch)
{
    return { program, "--unshare-all", "--die-with-parent", "--new-session", "--ro-bind", "/usr", "/usr",
        "--ro-bind-try", "/etc/fonts", "/etc/fonts", "--ro-bind-try", "/etc/alternatives",
        "/etc/alternatives", "--ro-bind-try", "/etc/ld.so.cache", "/etc/ld.so.cache", "--ro-bind-try",
        "/var/cache/fontconfig", "/var/cache/fontconfig", "--symlink", "usr/bin", "/bin", "--symlink",
        "usr/lib", "/lib", "--symlink", "usr/lib64", "/lib64", "--proc", "/proc", "--dev", "/dev", "--tmpfs",
        "/tmp", "--bind", scratch, scratch, "--ro-bind", file, input, "--chdir", scratch, "--" };
}

} // namespace

Thumbnailers::Thumbnailers(std::span<const String> dataFolders)
{
    std::unordered_set<String> seen;
    for (const String& dataFolder : dataFolders) {
        const String folder = stringByAppendingPathComponent(dataFolder, u"thumbnailers");
        for (const String& name : FileSystem::contentsOfDirectory(folder).value_or(std::vector<String>())) {
            const String path = stringByAppendingPathComponent(folder, name);
            if (pathExtension(name) != u"thumbnailer" || FileSystem::sizeOfFile(path) > LargestEntry
                || !seen.insert(name).second)
                continue;
            if (const auto text = FileSystem::contentsOfFile(path))
                add(KeyFile(text->chars()));
        }
    }
}

void Thumbnailers::add(const KeyFile& entry)
{
    const auto command = entry.value(EntryGroup, "Exec");
    for (const std::string_view type : entry.list(EntryGroup, "MimeType", ';')) {
        if (command)
            m_commands.try_emplace(String::fromUtf8(type), *command);
    }
}

const std::string* Thumbnailers::commandForType(const String& type) const
{
    const auto found = m_commands.find(type);
    return found == m_commands.end() ? nullptr : &found->second;
}

std::optional<Bitmap> Thumbnailers::thumbnail(
    const String& path, const String& type, std::uint32_t side, std::chrono::milliseconds deadline) const
{
    const std::string* const command = commandForType(type);
    const auto bubblewrap = command ? installedProgram("bwrap") : std::nullopt;
    if (!bubblewrap)
        return std::nullopt;
    const ScratchFolder scratch;
    const std::string input = "/tmp/document" + safeExtension(path);
    const String output = scratch.pathOf(String(u"thumbnail.png"));
    const auto words
        = wordsOfCommand(*command, { input, "file://" + input, output.utf8(), std::to_string(side) });
    if (words.empty() || !scratch.exists())
        return std::nullopt;
    auto arguments = sandbox(*bubblewrap, path.utf8(), input, scratch.path().utf8());
    arguments.insert(arguments.end(), words.begin(), words.end());
    if (!runBounded(std::move(arguments), scratch, {}, deadline).succeeded())
        return std::nullopt;
    const auto source = ImageSource::createWithFile(output);
    return source ? source->thumbnailAtIndex(0, { .maxPixelSize = side }) : std::nullopt;
}

std::vector<std::string> wordsOfCommand(std::string_view command, const ThumbnailerFiles& files)
{
    std::vector<std::string> words;
    bool isInWord = false;
    bool isQuoted = false;
    for (std::size_t index = 0; index < command.size(); ++index) {
        const char letter = command[index];
        const bool hasNext = index + 1 < command.size();
        if (letter == ' ' && !isQuoted) {
            isInWord = false;
            continue;
        }
        if (!isInWord)
            words.emplace_back();
        isInWord = true;
        if (letter == '"')
            isQuoted = !isQuoted;
        else if (letter == '\\' && isQuoted && hasNext)
            words.back() += command[++index];
        else if (letter == '%' && hasNext)
            words.back() += filled(command[++index], files);
        else
            words.back() += letter;
    }
    return isQuoted ? std::vector<std::string>() : words;
}

} // namespace caddis
