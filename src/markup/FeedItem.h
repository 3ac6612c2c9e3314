#pragma once

#include "platform/base/Value.h"

namespace caddis {
inline namespace FeedExtensions {

/// Whether the item shows nothing beyond its title: no icon, and a text (the content, else the description)
/// that is white or, frames aside, only the title once more.
bool isEmptyFeedItem(const Dictionary& item);

} // namespace FeedExtensions
} // namespace caddis
