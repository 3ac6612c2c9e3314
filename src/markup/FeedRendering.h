#pragma once

#include "markup/FeedStyleSheet.h"
#include "platform/base/Value.h"

/// Feed items as HTML, from their dictionaries (Feed.h). Titles, bylines and links stand in the page as they
/// are in the item: markup that a title was written with in entities is markup again.
namespace caddis {
inline namespace FeedExtensions {

/// One item as it is shown; what is absent is empty.
struct FeedItemParts {
    String icon; ///< an image's URL
    String title;
    String content;
    String description; ///< shown when there is no content
    String link;
    String date {}; ///< as the feed has it
    String author {};
    Array enclosures {}; ///< dictionaries with "url" and, where it is known, "length"
};

/// Writes one item. A date that can be read is written as people write it, in the default zone.
void AppendItem2Feed(MutableString& html, const FeedItemParts& item);

/// A page for an index: author and tags in the head, neither date, byline nor enclosures shown.
String stringByConvertingItemToSearchableHTML(const Dictionary& item);
/// A page to be read.
String stringByConvertingItemToDisplayHTML(const Dictionary& item,
    FeedStyleSheet form = FeedStyleSheet::Linked, const FeedSettings& settings = FeedSettings::standard());

/// One page for all items, in their order. A style sheet is always linked.
String stringByConvertingItemsToSearchableHTML(const Array& items);
String stringByConvertingItemsToDisplayHTML(
    const Array& items, const FeedSettings& settings = FeedSettings::standard());

} // namespace FeedExtensions
} // namespace caddis
