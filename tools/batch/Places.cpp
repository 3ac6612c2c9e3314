#include "Places.h"

#include <cstdlib>
#include <filesystem>

namespace caddis::tool {

String absolutePath(const std::string& path)
{
    std::error_code error; // An empty path has none.
    return String::fromUtf8(std::filesystem::absolute(path, error).lexically_normal().string());
}

String helperPath()
{
    if (const char* chosen = std::getenv("CADDIS_HELPER"))
        return absolutePath(chosen);
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    for (const char* place : { "CaddisHelper", "../libexec/caddis/CaddisHelper" }) {
        if (std::filesystem::exists(folder / place))
            return String::fromUtf8((folder / place).lexically_normal().string());
    }
    return String::fromUtf8((folder / "CaddisHelper").string());
}

} // namespace caddis::tool
