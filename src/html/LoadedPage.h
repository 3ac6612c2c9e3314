#pragma once

#include "html/CSSStyleSheet.h"
#include "platform/base/Data.h"
#include "platform/base/URL.h"

#include <deque>
#include <map>
#include <memory>

namespace caddis::html {

/// Something that a page refers to.
struct Resource {
    URL url; ///< where it came from in the end
    Data data;
    String mimeType; ///< in lower case and without parameters; empty: nobody said
    String textEncodingName; ///< empty: nobody said
};

/// A page and all that could be had of what it is made of.
struct LoadedPage {
    explicit LoadedPage(Page parsed)
        : page(std::move(parsed))
    {
    }

    Page page;
    std::optional<URL> baseURL; ///< what its references are resolved against
    std::deque<css::StyleSheet> sheets; ///< in the order in which they count
    /// By the element that shows them. A resource that did not come is not there.
    std::map<NodeIndex, std::shared_ptr<const Resource>> resources;
    std::map<NodeIndex, std::unique_ptr<LoadedPage>> frames;
};

/// The URL that a reference on the page means; nil for one that is none.
std::optional<URL> resolved(const LoadedPage& page, std::u16string_view reference);

} // namespace caddis::html
