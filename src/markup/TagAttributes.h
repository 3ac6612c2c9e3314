#pragma once

#include "markup/NamedValue.h"
#include "platform/base/String.h"

/// Reading a tag's text: its attributes, the properties of its style, and what kind of tag it is.
///
/// A tag is given as its units, from `<` through `>`; a String is its own units, and the forms that end in
/// InRange take the tag's place in a longer text. Names are found in any case, never inside values, and a
/// name is whole: `data-href` is not `href`. Values come as they are written, entities not converted, trimmed
/// at the end; an empty value counts as absent. All time is linear in the tag.
namespace caddis {
inline namespace XmlExtensions {

inline std::u16string_view unitsInRange(std::u16string_view text, Range range)
{
    return text.substr(range.location, range.length);
}

std::optional<String> attributeOfTagCharacters(std::u16string_view tag, UpperAscii name);
inline std::optional<String> attributeOfTagWithName(std::u16string_view tag, UpperAscii name)
{
    return attributeOfTagCharacters(tag, name);
}
inline std::optional<String> attributeOfTagInRange(std::u16string_view text, Range tag, UpperAscii name)
{
    return attributeOfTagCharacters(unitsInRange(text, tag), name);
}

/// The value's place in `text`, of which `tag` is the tag's.
std::optional<Range> rangeOfAttributeOfTagCharacters(
    std::u16string_view text, Range tag, UpperAscii name, Reading reading = Reading::Strict);

/// The "CONTENT" of a meta tag, read leniently: when its closing quote is missing, it ends with the tag.
std::optional<String> contentAttributeOfTagCharacters(std::u16string_view tag);

/// One property of a CSS declaration list: "10pt" for "FONT-SIZE" of `color: red; font-size: 10pt`. A value
/// ends at white space, unless it is quoted.
std::optional<String> attributeOfStyleWithName(std::u16string_view style, UpperAscii name);
inline std::optional<String> attributeOfStyleInRange(std::u16string_view text, Range style, UpperAscii name)
{
    return attributeOfStyleWithName(unitsInRange(text, style), name);
}

/// Pixels; 0 for a height that is not given.
struct TagSize {
    int width, height;

    friend bool operator==(const TagSize&, const TagSize&) = default;
};

/// From the tag's "WIDTH" and "HEIGHT", else from its style. Nil: no width above 0.
std::optional<TagSize> getTagWidth(std::u16string_view tag);
inline std::optional<TagSize> getTagWidth(std::u16string_view text, Range tag)
{
    return getTagWidth(unitsInRange(text, tag));
}

/// The URL inside the first `url(…)` of the style's background, without its quotes.
std::optional<String> backgroundStyleURLOfTagCharacters(std::u16string_view tag);

/// A tag that leaves an element open: at least 3 units, `<p>` but neither `</p>` nor `<p/>`.
bool isTagOpen(std::u16string_view tag);
inline bool isTagOpenCharacters(std::u16string_view text, Range tag)
{
    return isTagOpen(unitsInRange(text, tag));
}
inline bool isTagOpenInRange(std::u16string_view text, Range tag)
{
    return isTagOpen(unitsInRange(text, tag));
}

/// A tag that closes its element, `</p>` or `<p/>`: at least 4 units.
bool isTagClosed(std::u16string_view tag);
inline bool isTagClosedCharacters(std::u16string_view text, Range tag)
{
    return isTagClosed(unitsInRange(text, tag));
}
inline bool isTagClosedInRange(std::u16string_view text, Range tag)
{
    return isTagClosed(unitsInRange(text, tag));
}

/// `<meta …>`, in any case.
bool isMetaTag(std::u16string_view tag);
inline bool isMetaTagInRange(std::u16string_view text, Range tag)
{
    return isMetaTag(unitsInRange(text, tag));
}

/// A comment: `<!-…`.
bool isRemarkTag(std::u16string_view tag);
inline bool isRemarkTagInRange(std::u16string_view text, Range tag)
{
    return isRemarkTag(unitsInRange(text, tag));
}

} // namespace XmlExtensions
} // namespace caddis
