#include "foundation/URLExtensions.h"

#include "platform/base/Format.h"
#include "platform/files/FileSystem.h"
#include "platform/web/Reachability.h"

#include <algorithm>

namespace caddis {
inline namespace NSURLOstraExtensions {

String stringURLWithoutAnchor(const String& url)
{
    return url.substringTo(std::min(url.view().find(u'#'), url.length()));
}

std::uint32_t connectionFlagsForHost(const String& host, double timeout)
{
    return Reachability::flagsForHost(host.utf8(), timeout);
}

static_assert(LocalOrDirect == (Reachability::IsLocalAddress | Reachability::IsDirect));

bool isLocal(const URL& url, double timeout)
{
    return url.isFileURL() || url.host().isEmpty()
        || connectionFlagsForHost(url.host(), timeout) & LocalOrDirect;
}

std::optional<URL> baseURLForWebKit(const URL& url)
{
    const String text = stringURLWithoutAnchor(url.absoluteString());
    const auto behindScheme = text.view().substr(url.scheme().length() + 1);
    if (!behindScheme.starts_with(u'/'))
        return std::nullopt;
    const auto path = url.isFileURL() && !text.view().ends_with(u'/') ? url.path() : std::nullopt;
    return URL::fromString(path && FileSystem::isDirectory(*path) ? format(u"%@/", text) : text);
}

} // namespace NSURLOstraExtensions
} // namespace caddis
