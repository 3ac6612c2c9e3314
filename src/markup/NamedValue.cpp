#include "markup/NamedValue.h"

namespace caddis {

namespace {

bool isQuote(char16_t unit) { return unit == u'"' || unit == u'\''; }

bool belongsToName(char16_t unit)
{
    return alphaNumCharacterSetRep().contains(unit) || unit == u'-' || unit == u'_';
}

std::size_t behindWhite(std::u16string_view text, std::size_t at)
{
    while (at < text.size() && whiteCharacterSetRep().contains(text[at]))
        ++at;
    return at;
}

// Where the value begins whose name ends at `at`; NotFound when nothing is assigned.
std::size_t behindAssignment(std::u16string_view text, std::size_t at, char16_t assignment)
{
    at = behindWhite(text, at);
    if (at == text.size() || text[at] != assignment)
        return NotFound;
    while (at < text.size() && text[at] == assignment)
        ++at;
    return behindWhite(text, at);
}

std::size_t startOfValue(std::u16string_view text, UpperAscii name, char16_t assignment)
{
    const ConversionTable& upper = upperCharsTable();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isQuote(text[at])) {
            at = text.find(text[at], at + 1);
            if (at == std::u16string_view::npos)
                return NotFound;
        } else if (upper[text[at]] == name[0] && (at == 0 || !belongsToName(text[at - 1]))
            && name.isPrefixNoCaseOf(text.substr(at))) {
            const std::size_t value = behindAssignment(text, at + name.length(), assignment);
            if (value != NotFound)
                return value;
        }
    }
    return NotFound;
}

std::size_t endOfQuoted(std::u16string_view text, std::size_t start, char16_t quote, char16_t end)
{
    const std::size_t closing = text.find(quote, start);
    if (closing != std::u16string_view::npos)
        return closing;
    return text.size() - (text.size() > start && text.back() == end);
}

// A '<' opens a level and a '>' closes one; below the first level stands the end of the value's own tag.
std::size_t endOfLenientlyQuoted(std::u16string_view text, std::size_t start, char16_t quote)
{
    std::size_t end = start;
    for (std::size_t level = 0; end < text.size() && text[end] != quote; ++end) {
        if (text[end] == u'<') {
            if (UpperAscii("<META").isPrefixNoCaseOf(text.substr(end)))
                break;
            ++level;
        } else if (text[end] == u'>' && level-- == 0) {
            break;
        }
    }
    const std::u16string_view value = text.substr(start, end - start);
    return end - (value.ends_with(u"</") ? 2 : value.ends_with(u'<') ? 1 : 0);
}

std::size_t endOfUnquoted(std::u16string_view text, std::size_t start, char16_t end)
{
    while (start < text.size() && text[start] != end && !whiteCharacterSetRep().contains(text[start]))
        ++start;
    return start;
}

} // namespace

std::optional<Range> rangeOfNamedValue(
    std::u16string_view text, UpperAscii name, NamedValueSyntax syntax, Reading reading)
{
    if (name.length() == 0 || text.size() <= name.length() + syntax.leastSurplus)
        return std::nullopt;
    std::size_t start = startOfValue(text, name, syntax.assignment);
    if (start == NotFound || start == text.size())
        return std::nullopt;
    std::size_t end = 0;
    if (isQuote(text[start])) {
        const char16_t quote = text[start++];
        end = reading == Reading::Lenient ? endOfLenientlyQuoted(text, start, quote)
                                          : endOfQuoted(text, start, quote, syntax.end);
    } else {
        end = endOfUnquoted(text, start, syntax.end);
    }
    while (end > start && whiteCharacterSetRep().contains(text[end - 1]))
        --end;
    if (end == start)
        return std::nullopt;
    return Range { start, end - start };
}

} // namespace caddis
