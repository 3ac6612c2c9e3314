#include "text/StringUtilities.h"

#include "platform/base/MutableString.h"
#include "text/CharacterTables.h"
#include "text/FastComparison.h"

#include <algorithm>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

// The first index from `index` on that is white, or that is not.
std::size_t skip(std::u16string_view units, std::size_t index, bool white)
{
    const CharacterSetRep& whiteSet = whiteCharacterSetRep();
    while (index < units.size() && whiteSet.contains(units[index]) == white)
        ++index;
    return index;
}

// Where the first white run begins that is not a single U+0020, or the end.
std::size_t firstRunToCollapse(std::u16string_view units)
{
    std::size_t start = 0;
    while ((start = skip(units, start, false)) < units.size()) {
        const std::size_t end = skip(units, start, true);
        if (end - start > 1 || units[start] != u' ')
            return start;
        start = end;
    }
    return start;
}

constexpr bool isLineEnd(char16_t unit)
{
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

} // namespace

std::u16string_view trimmingWhiteSpaces(std::u16string_view units)
{
    const CharacterSetRep& white = whiteCharacterSetRep();
    units.remove_prefix(skip(units, 0, true));
    while (!units.empty() && white.contains(units.back()))
        units.remove_suffix(1);
    return units;
}

String stringByTrimmingWhiteSpaces(const String& text)
{
    const std::u16string_view trimmed = trimmingWhiteSpaces(text);
    return trimmed.size() == text.length() ? text : String(trimmed);
}

String stringByRemovingMultipleWhiteSpaces(const String& text)
{
    const std::u16string_view units = text;
    std::size_t start = firstRunToCollapse(units);
    if (start == units.size())
        return text;
    MutableString result(units.size());
    result.append(units.substr(0, start));
    while (start < units.size()) {
        const std::size_t wordStart = skip(units, start, true);
        start = skip(units, wordStart, false);
        result.append(u' ').append(units.substr(wordStart, start - wordStart));
    }
    return std::move(result).take();
}

bool isWhiteString(std::u16string_view units) { return onlyWhiteCharacters(units); }

bool containsAlphaCharacter(std::u16string_view units)
{
    return std::ranges::any_of(units, [](char16_t unit) { return alphaCharacterSetRep().contains(unit); });
}

bool isEqualNoCase(std::u16string_view left, std::u16string_view right)
{
    return left.size() == right.size() && fastCaseInsensitiveCompareUnichars(left, right) == 0;
}

bool hasPrefixNoCase(std::u16string_view units, std::u16string_view prefix)
{
    return units.size() >= prefix.size() && isEqualNoCase(units.substr(0, prefix.size()), prefix);
}

bool hasSuffixNoCase(std::u16string_view units, std::u16string_view suffix)
{
    return units.size() >= suffix.size() && isEqualNoCase(units.substr(units.size() - suffix.size()), suffix);
}

bool containsNoCase(std::u16string_view units, std::u16string_view needle)
{
    return fastCaseInsensitiveContainsUnichars(units, needle) != nullptr;
}

String firstLine(const String& text)
{
    const auto* const end = std::ranges::find_if(text, isLineEnd);
    return text.substringTo(static_cast<std::size_t>(end - text.begin()));
}

std::vector<String> wordsUsingSeparators(const String& text, InnerPunctuation punctuation)
{
    const CharacterSetRep& alphaNum = alphaNumCharacterSetRep();
    const std::u16string_view units = text;
    const auto belongs = [&](std::size_t index) {
        if (index >= units.size() || alphaNum.contains(units[index]))
            return index < units.size();
        return punctuation == InnerPunctuation::Joins && !whiteCharacterSetRep().contains(units[index])
            && index + 1 < units.size() && alphaNum.contains(units[index + 1]);
    };
    std::vector<String> words;
    for (std::size_t index = 0; index < units.size(); ++index) {
        if (!alphaNum.contains(units[index]))
            continue;
        const std::size_t start = index;
        while (belongs(index))
            ++index;
        words.push_back(text.substring({ start, index - start }));
    }
    return words;
}

String componentsJoinedByString(std::span<const String> parts, std::u16string_view separator)
{
    if (parts.size() == 1)
        return parts.front();
    MutableString result;
    for (const String& part : parts) {
        if (&part != parts.data())
            result.append(separator);
        result.append(part);
    }
    return std::move(result).take();
}

} // namespace NSStringOstraExtensions
} // namespace caddis
