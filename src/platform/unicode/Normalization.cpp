#include "platform/unicode/Normalization.h"

#include "platform/base/MutableString.h"

#include <algorithm>
#include <limits>
#include <unicode/unorm2.h>

namespace caddis {

namespace {

// Every unit below is a character of its own that no later one changes, except for combining marks above.
constexpr char16_t FirstCombiningMark = 0x0300;

// Nil when the form has more units than `capacity`, which then tells their number.
std::optional<String> normalized(
    const UNormalizer2* normalizer, std::u16string_view units, std::size_t& capacity)
{
    MutableString result(capacity);
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length
        = unorm2_normalize(normalizer, units.data(), static_cast<std::int32_t>(units.size()),
            result.appendUninitialized(capacity), static_cast<std::int32_t>(capacity), &status);
    if (U_FAILURE(status)) {
        capacity = status == U_BUFFER_OVERFLOW_ERROR ? static_cast<std::size_t>(length) : 0;
        return std::nullopt;
    }
    result.truncate(static_cast<std::size_t>(length));
    return std::move(result).take();
}

} // namespace

String precomposedStringWithCanonicalMapping(const String& text)
{
    const bool mayChange
        = std::ranges::any_of(text, [](char16_t unit) { return unit >= FirstCombiningMark; });
    if (!mayChange || text.length() > std::numeric_limits<std::int32_t>::max() / 4)
        return text;
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFCInstance(&status);
    const auto length = static_cast<std::int32_t>(text.length());
    if (unorm2_spanQuickCheckYes(normalizer, text.data(), length, &status) == length || U_FAILURE(status))
        return text;
    std::size_t capacity = text.length();
    auto result = normalized(normalizer, text, capacity);
    if (!result && capacity > 0)
        result = normalized(normalizer, text, capacity);
    return !result || *result == text ? text : *result;
}

} // namespace caddis
