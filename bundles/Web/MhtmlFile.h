#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace caddis::bundles {

/// The page of a web page saved as one message (RFC 2557).
struct MhtmlPage {
    std::string bytes; ///< the first HTML part, its transfer encoding undone
    std::string contentType; ///< as its header says: "text/html; charset=utf-8"
    std::string location; ///< the page's address; empty when it is not said
};

/// Nil when there is no HTML part. Takes time linear in the text.
std::optional<MhtmlPage> readMhtml(std::string_view file);

} // namespace caddis::bundles
