#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace caddis::bundles {

/// Undoes the compression of the rich text of mails (MS-OXRTFCP). Nil for bytes that don't begin as it does;
/// of damaged ones as much as there is. At most 16 MiB.
std::optional<std::string> decompressRtf(std::string_view bytes);

} // namespace caddis::bundles
