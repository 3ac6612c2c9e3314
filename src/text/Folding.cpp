#include "text/Folding.h"

#include "platform/base/MutableString.h"
#include "platform/unicode/Normalization.h"
#include "text/CharacterTables.h"

#include <algorithm>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

// A template, so that the mapping is inlined into both loops.
template <typename Map> String mapped(const String& text, Map map)
{
    const auto* const changed
        = std::ranges::find_if(text, [map](char16_t unit) { return map(unit) != unit; });
    if (changed == text.end())
        return text;
    MutableString result(text.length());
    result.append({ text.begin(), changed });
    char16_t* const rest = result.appendUninitialized(static_cast<std::size_t>(text.end() - changed));
    std::transform(changed, text.end(), rest, map);
    return std::move(result).take();
}

constexpr auto Fold = [](char16_t unit) { return umlautsToAscii(unit); };
constexpr auto FoldToLower = [](char16_t unit) { return umlautsToLowerAscii(unit); };
constexpr auto FoldToUpper = [](char16_t unit) { return umlautsToUpperAscii(unit); };
constexpr auto Ascii = [](char16_t unit) { return toAscii(unit); };
constexpr auto LowerAscii = [](char16_t unit) { return toLowerAscii(unit); };
constexpr auto UpperAscii = [](char16_t unit) { return toUpperAscii(unit); };

String formC(const String& text) { return precomposedStringWithCanonicalMapping(text); }

bool isInside(const String& text, Range range)
{
    return range.location <= text.length() && range.length <= text.length() - range.location;
}

} // namespace

String nonUmlautedString(const String& text) { return mapped(text, Fold); }
String lowercaseNonUmlautedString(const String& text) { return mapped(text, FoldToLower); }
String uppercaseNonUmlautedString(const String& text) { return mapped(text, FoldToUpper); }

String nonUmlautedNormalizedString(const String& text) { return mapped(formC(text), Fold); }
String lowercaseNonUmlautedNormalizedString(const String& text) { return mapped(formC(text), FoldToLower); }
String uppercaseNonUmlautedNormalizedString(const String& text) { return mapped(formC(text), FoldToUpper); }

String asciiString(const String& text) { return mapped(formC(text), Ascii); }
String lowercaseAsciiString(const String& text) { return mapped(formC(text), LowerAscii); }
String uppercaseAsciiString(const String& text) { return mapped(formC(text), UpperAscii); }

bool isUmlautedString(std::u16string_view text)
{
    return std::ranges::any_of(text, [](char16_t unit) { return umlautsToAscii(unit) != unit; });
}

bool isNonUmlautedEqualToStringNoCase(std::u16string_view left, std::u16string_view right)
{
    return std::ranges::equal(left, right, {}, FoldToUpper, FoldToUpper);
}

bool isAsciiEqualToStringNoCase(std::u16string_view left, std::u16string_view right)
{
    return std::ranges::equal(left, right, {}, UpperAscii, UpperAscii);
}

bool isNonUmlautedEqualToNoCase(const String& text, Range range, std::u16string_view other)
{
    return isInside(text, range) && isNonUmlautedEqualToStringNoCase(text.view(range), other);
}

bool isAsciiEqualToNoCase(const String& text, Range range, std::u16string_view other)
{
    return isInside(text, range) && isAsciiEqualToStringNoCase(text.view(range), other);
}

} // namespace NSStringOstraExtensions
} // namespace caddis
