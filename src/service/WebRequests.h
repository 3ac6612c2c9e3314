#pragma once

#include "platform/base/Value.h"
#include "platform/web/WebResourceLoadDelegate.h"

#include <optional>

/// The requests that read pages.
namespace caddis {

/// The text of a web archive: "String", "Source", the main resource's markup, and "URL", its address, each
/// where there is one. Empty for what is no web archive.
Dictionary searchableTextOfWebArchive(const std::optional<String>& path);

/// What an HTML import may load: everything when `delegate` is null.
struct RTFDWithHTMLOptions {
    std::optional<URL> baseURL;
    WebResourceLoadDelegate* delegate = nullptr;
    String charset; ///< empty: the page says it
    float timeout = 15; ///< seconds of loading, after which the text comes without what is missing
};

/// A page as RTFD data. Nil when it would be too long for that.
std::optional<Data> RTFDWithHTML(const Data& html, const RTFDWithHTMLOptions& options);

} // namespace caddis
