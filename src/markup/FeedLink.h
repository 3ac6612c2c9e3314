#pragma once

#include "markup/FeedSettings.h"
#include "platform/base/URL.h"

namespace caddis {

/// Where an item leads: its guid when that is a web address of its own, else its link; absolute when it
/// begins with a slash and `feedURL` is known, and taken out of an aggregator's redirection or of an `<a
/// href=…>` around it. Empty: nowhere.
String linkOfFeedItem(
    const String& guid, const String& link, const std::optional<URL>& feedURL, const FeedSettings& settings);

} // namespace caddis
