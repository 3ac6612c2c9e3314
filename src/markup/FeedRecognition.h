#pragma once

#include "markup/TagScanner.h"

/// Whether a text is a feed: RSS 0.9x or 2.0, RSS 1.0 in its RDF form, or Atom.
namespace caddis {
inline namespace FeedExtensions {

/// The first tag named "rss", "rdf:RDF" or "feed", or "html", "head" or "body", decides.
bool isFeed(const String& text);

struct FeedState {
    bool isFeed = false;
    bool complete = false; ///< the root element ends; a feed that is still being received does not
};
/// Reads on to the end of the root element.
FeedState isFeedComplete(const String& text);

/// Whether the tag, start or end, is named as the root element of a feed.
bool isFeedRoot(const TagEvent& tag);

} // namespace FeedExtensions
} // namespace caddis
