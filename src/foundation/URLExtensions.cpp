#include "foundation/URLExtensions.h"

#include <algorithm>

namespace caddis {
inline namespace NSURLOstraExtensions {

String stringURLWithoutAnchor(const String& url)
{
    return url.substringTo(std::min(url.view().find(u'#'), url.length()));
}

} // namespace NSURLOstraExtensions
} // namespace caddis
