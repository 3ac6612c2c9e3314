#include "platform/files/HFSType.h"

#include "platform/base/Format.h"
#include "platform/files/FileSystem.h"

#include <array>
#include <sys/xattr.h>

namespace caddis {

String HFSTypeOfFile(const String& path)
{
    const auto file = fileSystemRepresentation(path);
    std::array<char, 32> information {};
    for (const char* const name : { "user.com.apple.FinderInfo", "com.apple.FinderInfo" }) {
        const ssize_t size
            = file ? getxattr(file->c_str(), name, information.data(), information.size()) : -1;
        if (size >= 4 && information[0] != 0)
            return format(u"'%s'", std::string_view(information.data(), 4));
    }
    return {};
}

} // namespace caddis
