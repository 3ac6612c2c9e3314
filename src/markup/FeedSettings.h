#pragma once

#include "platform/base/String.h"

#include <optional>

namespace caddis {

/// What the application may choose about feeds.
struct FeedSettings {
    /// Path of the style sheet that pages link or take in; nil: pages have none. Its name must end in
    /// ".feeds.stylesheet.css", or stringByReplacingLinkedStyleSheet does not know its link.
    std::optional<String> linkableFeedStyleSheet;
    /// What, in any case, marks a guid as a short link to the article's discussion: it is never an item's
    /// link.
    String shortLinkMarker = u"://redd.it/"_s;
    /// What, in any case, the links of a news aggregator begin with that only lead on to the article; the
    /// article's own address is their "url" parameter.
    String redirectPrefix = u"http://news.google.com/news/url?"_s;

    /// The markers above and the style sheet that comes with this library, where it is installed.
    static const FeedSettings& standard();
};

} // namespace caddis
