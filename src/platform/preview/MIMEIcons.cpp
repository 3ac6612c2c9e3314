#include "platform/preview/MIMEIcons.h"

#include "platform/base/Paths.h"
#include "platform/files/FileSystem.h"

#include <algorithm>

namespace caddis {

namespace {

// Lines "type:name".
void read(const String& path, std::unordered_map<String, std::string>& names)
{
    const auto text = FileSystem::contentsOfFile(path);
    for (std::string_view rest = text ? text->chars() : std::string_view(); !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (const std::size_t colon = line.find(':'); colon != line.npos)
            names.try_emplace(String::fromUtf8(line.substr(0, colon)), line.substr(colon + 1));
    }
}

} // namespace

MIMEIcons::MIMEIcons(std::span<const String> dataFolders)
{
    for (const String& folder : dataFolders) {
        read(stringByAppendingPathComponent(folder, u"mime/icons"), m_icons);
        read(stringByAppendingPathComponent(folder, u"mime/generic-icons"), m_genericIcons);
    }
}

std::vector<std::string> MIMEIcons::namesForType(const String& type) const
{
    std::vector<std::string> names;
    for (const Names* const known : { &m_icons, &m_genericIcons }) {
        if (known == &m_genericIcons) {
            std::string own = type.utf8();
            std::ranges::replace(own, '/', '-');
            names.push_back(std::move(own));
        }
        if (const auto found = known->find(type); found != known->end())
            names.push_back(found->second);
    }
    const std::string media = type.utf8().substr(0, type.utf8().find('/'));
    names.push_back(media + "-x-generic");
    names.emplace_back(media == "inode" ? "folder" : "text-x-generic");
    return names;
}

} // namespace caddis
