#pragma once

#include "platform/base/Data.h"
#include "platform/base/URL.h"

#include <optional>

namespace caddis {
inline namespace NSURLOstraExtensions {

struct DataURLContents {
    String mimeType; ///< in lower case, without parameters; "text/plain" when the URL says none
    String charset; ///< empty when the URL says none
    Data data;
};

/// What a "data:" URL carries (RFC 2397): percent escapes removed, base64 decoded, in which white space and
/// whatever else is no digit does not count. Nil for other URLs, and without a comma.
std::optional<DataURLContents> contentsOfDataURL(const URL& url);

} // namespace NSURLOstraExtensions
} // namespace caddis
