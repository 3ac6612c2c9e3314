#pragma once

#include "platform/base/Value.h"

#include <optional>

/// What a page says of itself in its head: title, meta tags, date, canonical address.
///
/// Names are compared whole and in any case. Everything stands before the start of the body; nil is returned
/// when nothing was found there. Values come as they are written, references not converted.
namespace caddis {
inline namespace HtmlExtensions {

/// The contents of all meta tags of the accepted names, in the order of the page, joined by spaces. An empty
/// content counts as none.
std::optional<String> htmlMetaTitle(const String& html);
std::optional<String> htmlMetaIndexTitle(const String& html);
std::optional<String> htmlMetaKeywords(const String& html);
std::optional<String> htmlMetaDescription(const String& html);
std::optional<String> htmlMetaDate(const String& html);
std::optional<String> htmlMetaAuthor(const String& html);
std::optional<String> htmlMetaCopyright(const String& html);
std::optional<String> htmlMetaAttributeWithName(const String& html, std::u16string_view name);

/// The content of the first meta tag with this "http-equiv".
std::optional<String> htmlMetaHTTPEquiv(const String& html, std::u16string_view value);
std::optional<String> htmlMetaRefresh(const String& html);

struct HtmlMetaSummary {
    std::optional<String> keywords, description, title, indexTitle;
    std::optional<String> date; ///< also from an "http-equiv" of "last-modified"
};

/// Five of the readers above in one pass.
HtmlMetaSummary htmlMetaKeywordsDescriptionTitleIndexTitleDate(const String& html);

/// Every meta tag with a name, under the name as it is first written; contents of a repeated name are joined
/// by spaces.
Dictionary htmlMetaAttributes(const String& html);
Dictionary htmlMetaAttributesByConvertingEntitiesToCharacters(const String& html);

/// The text without the meta tags of this name in its head. Same: returns `html` itself when there is none.
String stringByStrippingMetaAttributeWithName(const String& html, std::u16string_view name);

/// The text in front of the title's end tag, as it is written; empty for an empty title.
std::optional<String> htmlTitle(const String& html);
/// The title for people: references converted, runs of white space one space, none at the ends. Nil when
/// nothing is left.
std::optional<String> normalizedHtmlTitle(const String& html);

/// The content of the first meta tag that names a date, unread.
std::optional<String> htmlDate(const String& html);
/// date, pdate, updated, dategen, displaydate; date.…, dc.date…; …_date, …pubDate, …publicationDate,
/// …publishDate.
bool isDateAttribute(std::u16string_view name);

/// The address in `<link rel="canonical" href="…">`, normalised.
std::optional<String> htmlCanonicalURL(const String& html);

} // namespace HtmlExtensions
} // namespace caddis
