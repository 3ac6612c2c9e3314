#include "markup/StringURL.h"

#include "markup/Entities.h"
#include "markup/UpperAscii.h"
#include "platform/base/MutableString.h"
#include "platform/base/URL.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace XmlExtensions {

namespace {

// Removed wherever it stands, as browsers do with addresses that run over lines.
bool isLineBreak(char16_t unit) { return unit == u'\n' || unit == u'\r' || unit == u'\t'; }

bool mayShow(char16_t unit)
{
    constexpr std::u16string_view Never = u"\"<>`{}|^";
    return unit > u' ' && unit < 0x7F && Never.find(unit) == Never.npos;
}

void appendEscaped(MutableString& url, std::u16string_view units)
{
    constexpr std::u16string_view Digits = u"0123456789ABCDEF";
    for (const char byte : String(units).utf8()) {
        const auto value = static_cast<unsigned char>(byte);
        url.append(u'%').append(Digits[value >> 4]).append(Digits[value & 0xF]);
    }
}

} // namespace

std::optional<String> normalizedStringURL(const String& text)
{
    const String converted = stringByConvertingEntitiesToCharacters(text);
    const std::u16string_view units = trimmingWhiteSpaces(converted);
    if (units.empty())
        return std::nullopt;
    if (units.size() == text.length() && std::ranges::all_of(units, mayShow))
        return text;
    MutableString url(units.size());
    for (std::size_t at = 0; at < units.size();) {
        // Surrogate pairs must come whole to UTF-8, so escapes go by runs.
        std::size_t end = at;
        while (end < units.size() && !mayShow(units[end]) && !isLineBreak(units[end]))
            ++end;
        appendEscaped(url, units.substr(at, end - at));
        if (end < units.size() && !isLineBreak(units[end]))
            url.append(units[end]);
        at = end + 1;
    }
    return std::move(url).take();
}

bool isRemoteWebKitStringURL(const String& text)
{
    const auto url = URL::fromString(text);
    if (!url)
        return false;
    const String scheme = url->scheme();
    const bool isWeb = UpperAscii("HTTP").equalsNoCase(scheme) || UpperAscii("HTTPS").equalsNoCase(scheme);
    return isWeb && !url->host().isEmpty();
}

} // namespace XmlExtensions
} // namespace caddis
