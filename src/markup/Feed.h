#pragma once

#include "markup/FeedRecognition.h"
#include "markup/FeedStyleSheet.h"
#include "platform/base/Value.h"

/// Feeds as pages and as lists of items.
///
/// A feed is read in one pass and never fails: what can be made out counts, whatever else the text holds. An
/// item is a dictionary:
///
///     "title" "description" "content" "author" "guid" "date" "link"    texts, "" where the feed says nothing
///     "tags"          array of texts; only when there are any
///     "enclosures"    array of dictionaries with "url" and perhaps "length"; only when there are any
///     "icon"          an image's URL; never set here, shown when the caller adds one
///
/// Descriptions and contents are HTML. The date is the feed's own text (DateReader reads it). The guid is
/// only kept when it is a link; the link is absolute when it was relative to the feed's host and `feedURL` is
/// given.
namespace caddis {
inline namespace FeedExtensions {

/// The whole feed as a page in UTF-8. Same: returns `text` itself when it is no feed.
String stringByConvertingFeed(const String& text, const std::optional<URL>& feedURL, FeedStyleSheet form,
    const FeedSettings& settings = FeedSettings::standard());

/// The same without the feed's URL.
inline String stringByConvertingFeedToDisplayHTMLUsingLinkedStyleSheet(
    const String& text, bool linked, const FeedSettings& settings = FeedSettings::standard())
{
    return stringByConvertingFeed(
        text, std::nullopt, linked ? FeedStyleSheet::Linked : FeedStyleSheet::Inline, settings);
}

/// The items' dictionaries, in the feed's order; none when it is no feed.
Array getItemsOfFeed(const String& text, const std::optional<URL>& feedURL = std::nullopt,
    const FeedSettings& settings = FeedSettings::standard());

} // namespace FeedExtensions
} // namespace caddis
