#pragma once

#include "markup/FeedSettings.h"
#include "platform/base/MutableString.h"

namespace caddis {
inline namespace FeedExtensions {

/// How a page has its style sheet.
enum class FeedStyleSheet {
    None,
    Inline, ///< its text, in the page itself
    Linked, ///< a link to the file
};

/// Writes the start of a page up to its style sheet. A sheet that cannot be read is left out.
void appendFeedPageHead(MutableString& html, FeedStyleSheet form, const FeedSettings& settings);

/// A page that was rendered with a linked style sheet, with the text of that sheet's present file in it; the
/// link simply goes when there is no such file. Same: returns `page` itself when it has no such link.
String stringByReplacingLinkedStyleSheet(
    const String& page, const FeedSettings& settings = FeedSettings::standard());

} // namespace FeedExtensions
} // namespace caddis
