#include "text/UnicodeConverters.h"

#include "platform/base/Utf.h"
#include "platform/unicode/TextEncoding.h"

#include <algorithm>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

bool continuesCharacter(char16_t unit) { return isLowSurrogate(unit); }
bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// `converted` is well formed.
template <typename Unit>
Conversion store(
    std::basic_string_view<Unit> converted, bool sourceWasWellFormed, std::span<Unit> destination)
{
    std::size_t length = std::min(converted.size(), destination.size());
    while (length > 0 && length < converted.size() && continuesCharacter(converted[length]))
        --length;
    std::copy_n(converted.begin(), length, destination.begin());
    if (length < converted.size())
        return { ConversionStatus::DestinationFull, length };
    return { sourceWasWellFormed ? ConversionStatus::Success : ConversionStatus::IllFormedSource, length };
}

} // namespace

Conversion convertUTF8ToUnicode(std::string_view source, std::span<char16_t> destination)
{
    if (destination.size() >= source.size()) {
        if (const auto length = strictUtf8ToUtf16(source, destination.data()))
            return { ConversionStatus::Success, *length };
        return { ConversionStatus::IllFormedSource, utf8ToUtf16(source, destination.data()) };
    }
    const auto strict = String::fromStrictUtf8(source);
    const String text = strict ? *strict : String::fromUtf8(source);
    return store(text.view(), strict.has_value(), destination);
}

Conversion convertUnicodeToUTF8(std::u16string_view source, std::span<char> destination)
{
    const bool wellFormed = firstLoneSurrogate(source) == NotFound;
    return store(std::string_view(utf16ToUtf8(source)), wellFormed, destination);
}

Conversion convertEncodingToUnicode(
    std::string_view source, CFStringEncoding sourceEncoding, std::span<char16_t> destination)
{
    if (const auto text = decodeText(source, sourceEncoding, IllFormed::Fail))
        return store(text->view(), true, destination);
    if (const auto text = decodeText(source, sourceEncoding))
        return store(text->view(), false, destination);
    return { ConversionStatus::UnknownEncoding, 0 };
}

} // namespace NSStringOstraExtensions
} // namespace caddis
