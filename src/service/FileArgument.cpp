#include "service/FileArgument.h"

#include "platform/base/Log.h"
#include "platform/files/Bookmark.h"

namespace caddis {

FileArgument::FileArgument(const std::optional<Value>& argument)
{
    if (!argument)
        return;
    if (const auto* bookmark = argument->as<Data>()) {
        const auto resolved = URLByResolvingBookmarkData(*bookmark);
        if (resolved.url)
            access(*resolved.url);
        else if (resolved.error)
            log(u"%@", *resolved.error);
    } else if (const auto* url = argument->as<URL>())
        access(*url);
    else if (const auto* path = argument->as<String>())
        m_path = *path;
}

void FileArgument::access(const URL& url)
{
    m_access = SecurityScopedAccess::start(url);
    if (m_access)
        m_path = url.path();
}

} // namespace caddis
