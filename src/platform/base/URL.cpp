#include "platform/base/URL.h"

#include "platform/base/Ascii.h"
#include "platform/base/HexDigit.h"
#include "platform/base/MutableString.h"

#include <algorithm>

namespace caddis {

namespace {

constexpr bool isSchemeUnit(char16_t unit)
{
    return isAsciiLetter(unit) || isAsciiDigit(unit) || unit == u'+' || unit == u'-' || unit == u'.';
}

// RFC 3986's characters of a path segment, and the "/" between segments.
constexpr bool isPathCharacter(unsigned char byte)
{
    return isAsciiLetter(byte) || isAsciiDigit(byte)
        || std::u16string_view(u"/-._~!$&'()*+,;=:@").find(byte) != std::u16string_view::npos;
}

} // namespace

std::optional<URL> URL::fromString(const String& text)
{
    const auto units = text.view();
    const std::size_t colon = units.find(u':');
    if (colon == 0 || colon == units.npos || !isAsciiLetter(units[0]))
        return std::nullopt;
    if (!std::ranges::all_of(units.substr(0, colon), isSchemeUnit))
        return std::nullopt;
    if (std::ranges::any_of(units, [](char16_t unit) { return unit <= u' ' || unit == 0x7F; }))
        return std::nullopt;
    return URL(text, colon);
}

URL URL::fileURLWithPath(const String& path)
{
    constexpr std::u16string_view Prefix = u"file://";
    constexpr char16_t Digits[] = u"0123456789ABCDEF";
    MutableString text(Prefix.size() + path.length());
    text.append(Prefix);
    for (const char byte : path.utf8()) {
        const auto value = static_cast<unsigned char>(byte);
        if (isPathCharacter(value))
            text.append(value);
        else
            text.append(u'%').append(Digits[value >> 4]).append(Digits[value & 15]);
    }
    return { std::move(text).take(), Prefix.size() - 3 };
}

Range URL::authority() const
{
    const auto units = m_text.view();
    const std::size_t begin = m_schemeLength + 3;
    if (units.substr(m_schemeLength, 3) != u"://")
        return { m_schemeLength + 1, 0 };
    return { begin, std::min(units.find_first_of(u"/?#", begin), units.size()) - begin };
}

String URL::host() const
{
    auto host = m_text.view(authority());
    host.remove_prefix(std::min(host.rfind(u'@') + 1, host.size()));
    const std::size_t bracket = host.rfind(u']');
    const std::size_t port = host.find(u':', bracket == host.npos ? 0 : bracket);
    return String(host.substr(0, port));
}

std::optional<String> URL::path() const
{
    const auto rest = m_text.substringFrom(authority().end());
    const std::size_t end = std::min(rest.view().find_first_of(u"?#"), rest.length());
    auto path = stringByRemovingPercentEscapes(rest.substringTo(end));
    if (!path || path->view().find(u'\0') != std::u16string_view::npos)
        return std::nullopt;
    if (path->length() > 1 && path->view().back() == u'/')
        return path->substringTo(path->length() - 1);
    return path;
}

bool URL::isFileURL() const
{
    const auto sameLetter = [](char16_t left, char16_t right) { return (left | 0x20) == right; };
    return std::ranges::equal(
        m_text.view().substr(0, m_schemeLength), std::u16string_view(u"file"), sameLetter);
}

std::optional<String> stringByRemovingPercentEscapes(const String& text)
{
    if (text.view().find(u'%') == std::u16string_view::npos)
        return text;
    const std::string escaped = text.utf8();
    std::string bytes;
    bytes.reserve(escaped.size());
    for (std::size_t index = 0; index < escaped.size(); ++index) {
        if (escaped[index] != '%') {
            bytes.push_back(escaped[index]);
            continue;
        }
        const int byte = hexByte(std::string_view(escaped).substr(index + 1));
        if (byte < 0)
            return std::nullopt;
        bytes.push_back(static_cast<char>(byte));
        index += 2;
    }
    return String::fromStrictUtf8(bytes);
}

} // namespace caddis
