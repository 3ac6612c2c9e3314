#pragma once

#include <string>
#include <string_view>

namespace caddis {

/// The MD5 digest (RFC 1321) as 32 hexadecimal digits in lower case. It only names files in caches: nothing
/// may be trusted because of it.
std::string MD5(std::string_view bytes);

} // namespace caddis
