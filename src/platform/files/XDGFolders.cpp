#include "platform/files/XDGFolders.h"

#include <cstdlib>

namespace caddis::XDGFolders {

namespace {

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value && *value == '/' ? value : "";
}

std::string folder(const char* name, const char* belowHome)
{
    std::string value = variable(name);
    return value.empty() ? variable("HOME") + belowHome : value;
}

} // namespace

std::vector<String> data()
{
    std::vector<String> folders { String::fromUtf8(folder("XDG_DATA_HOME", "/.local/share")) };
    const std::string others = variable("XDG_DATA_DIRS");
    for (std::string_view rest = others.empty() ? "/usr/local/share:/usr/share" : std::string_view(others);
         !rest.empty();) {
        const std::string_view one = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
        if (one.starts_with('/'))
            folders.push_back(String::fromUtf8(one));
    }
    return folders;
}

String cache() { return String::fromUtf8(folder("XDG_CACHE_HOME", "/.cache")); }

String config() { return String::fromUtf8(folder("XDG_CONFIG_HOME", "/.config")); }

} // namespace caddis::XDGFolders
