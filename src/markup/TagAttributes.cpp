#include "markup/TagAttributes.h"

#include "text/NumericValues.h"
#include "text/StringUtilities.h"

namespace caddis {
inline namespace XmlExtensions {

namespace {

// The value's units; empty when there is none.
std::u16string_view value(std::u16string_view text, UpperAscii name, NamedValueSyntax syntax)
{
    const auto range = rangeOfNamedValue(text, name, syntax);
    return range ? unitsInRange(text, *range) : std::u16string_view();
}

std::optional<String> asString(std::u16string_view text, std::optional<Range> range)
{
    if (!range)
        return std::nullopt;
    return String(unitsInRange(text, *range));
}

} // namespace

std::optional<String> attributeOfTagCharacters(std::u16string_view tag, UpperAscii name)
{
    return asString(tag, rangeOfNamedValue(tag, name, TagSyntax));
}

std::optional<Range> rangeOfAttributeOfTagCharacters(
    std::u16string_view text, Range tag, UpperAscii name, Reading reading)
{
    auto range = rangeOfNamedValue(unitsInRange(text, tag), name, TagSyntax, reading);
    if (range)
        range->location += tag.location;
    return range;
}

std::optional<String> contentAttributeOfTagCharacters(std::u16string_view tag)
{
    return asString(tag, rangeOfNamedValue(tag, "CONTENT", TagSyntax, Reading::Lenient));
}

std::optional<String> attributeOfStyleWithName(std::u16string_view style, UpperAscii name)
{
    return asString(style, rangeOfNamedValue(style, name, StyleSyntax));
}

std::optional<TagSize> getTagWidth(std::u16string_view tag)
{
    constexpr std::size_t Shortest = 10;
    if (tag.size() < Shortest)
        return std::nullopt;
    TagSize size { intValue(value(tag, "WIDTH", TagSyntax)), 0 };
    if (size.width) {
        size.height = intValue(value(tag, "HEIGHT", TagSyntax));
        // Kept on purpose: it rescues pages that carry this typo.
        if (!size.height)
            size.height = intValue(value(tag, "HEIGH", TagSyntax));
    } else {
        const std::u16string_view style = value(tag, "STYLE", TagSyntax);
        size.width = intValue(value(style, "WIDTH", StyleSyntax));
        if (size.width)
            size.height = intValue(value(style, "HEIGHT", StyleSyntax));
    }
    if (size.width <= 0)
        return std::nullopt;
    return size;
}

std::optional<String> backgroundStyleURLOfTagCharacters(std::u16string_view tag)
{
    const std::u16string_view style = value(tag, "STYLE", TagSyntax);
    auto background = rangeOfNamedValue(style, "BACKGROUND-IMAGE", StyleSyntax);
    if (!background)
        background = rangeOfNamedValue(style, "BACKGROUND", StyleSyntax);
    if (!background)
        return std::nullopt;
    // The property's value goes on behind white space, as in `#fff url("a.png")`.
    for (std::size_t at = background->location; at < style.size() && style[at] != u';'; ++at) {
        if (!UpperAscii("URL(").isPrefixNoCaseOf(style.substr(at)))
            continue;
        const std::size_t start = at + 4;
        std::u16string_view url = trimmingWhiteSpaces(style.substr(start, style.find(u')', start) - start));
        if (url.size() >= 2 && (url.front() == u'"' || url.front() == u'\'') && url.back() == url.front())
            url = trimmingWhiteSpaces(url.substr(1, url.size() - 2));
        if (url.empty())
            return std::nullopt;
        return String(url);
    }
    return std::nullopt;
}

bool isTagOpen(std::u16string_view tag)
{
    return tag.size() >= 3 && tag.front() == u'<' && tag[1] != u'/' && tag[tag.size() - 2] != u'/';
}

bool isTagClosed(std::u16string_view tag)
{
    return tag.size() >= 4 && tag.front() == u'<' && (tag[1] == u'/' || tag[tag.size() - 2] == u'/');
}

bool isMetaTag(std::u16string_view tag)
{
    constexpr UpperAscii Start = "<META";
    if (tag.size() <= Start.length() || !Start.isPrefixNoCaseOf(tag))
        return false;
    const char16_t next = tag[Start.length()];
    return next == u'>' || next == u'/' || whiteCharacterSetRep().contains(next);
}

bool isRemarkTag(std::u16string_view tag) { return tag.starts_with(u"<!-"); }

} // namespace XmlExtensions
} // namespace caddis
