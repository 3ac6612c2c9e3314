#include "platform/files/SharedMIMEDatabase.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"
#include "platform/files/XDGFolders.h"

#include <charconv>

namespace caddis {

namespace {

// Cuts the text at the mark and gives what stood before it.
std::string_view cutBefore(std::string_view& text, char mark)
{
    const std::string_view before = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(before.size() + 1, text.size()));
    return before;
}

} // namespace

const SharedMIMEDatabase& SharedMIMEDatabase::system()
{
    static const SharedMIMEDatabase database = [] {
        SharedMIMEDatabase result;
        for (const String& folder : XDGFolders::data()) {
            const String path = stringByAppendingPathComponent(folder, u"mime/globs2");
            if (const auto globs = FileSystem::contentsOfFile(path))
                result.add(globs->chars());
        }
        return result;
    }();
    return database;
}

void SharedMIMEDatabase::add(std::string_view globs2)
{
    while (!globs2.empty()) {
        std::string_view line = cutBefore(globs2, '\n');
        const std::string_view digits = cutBefore(line, ':');
        const std::string_view type = cutBefore(line, ':');
        const std::string_view pattern = cutBefore(line, ':');
        int weight = 0;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), weight).ec != std::errc())
            continue;
        if (type.empty() || !pattern.starts_with("*.") || pattern.find_first_of("*?[", 1) != pattern.npos)
            continue;
        const Entry entry { weight, String::fromUtf8(type) };
        const auto [present, added] = m_types.try_emplace(String::fromUtf8(pattern.substr(2)), entry);
        if (!added && present->second.weight < weight)
            present->second = entry;
    }
}

std::optional<String> SharedMIMEDatabase::typeForExtension(const String& extension) const
{
    const auto found = m_types.find(extension);
    return found == m_types.end() ? std::nullopt : std::optional(found->second.type);
}

} // namespace caddis
