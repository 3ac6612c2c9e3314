#include "foundation/URLResolution.h"

#include "platform/base/MutableString.h"

#include <algorithm>
#include <vector>

namespace caddis {
inline namespace NSURLOstraExtensions {

namespace {

// The five parts of a URL or a reference; a part that is missing is not an empty one.
struct Parts {
    std::optional<std::u16string_view> scheme, authority;
    std::u16string_view path;
    std::optional<std::u16string_view> query, fragment;
};

bool isSchemeUnit(char16_t unit)
{
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return (lower >= u'a' && lower <= u'z') || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-'
        || unit == u'.';
}

// Cuts `text` at `mark` and gives what stood behind it; nil without one.
std::optional<std::u16string_view> cutBehind(std::u16string_view& text, char16_t mark)
{
    const std::size_t at = text.find(mark);
    if (at == text.npos)
        return std::nullopt;
    const std::u16string_view behind = text.substr(at + 1);
    text = text.substr(0, at);
    return behind;
}

Parts partsOf(std::u16string_view text)
{
    Parts parts;
    parts.fragment = cutBehind(text, u'#');
    parts.query = cutBehind(text, u'?');
    const std::size_t colon = text.find(u':');
    const bool beginsWithLetter = !text.empty() && (text[0] | 0x20) >= u'a' && (text[0] | 0x20) <= u'z';
    if (colon != text.npos && beginsWithLetter && std::ranges::all_of(text.substr(0, colon), isSchemeUnit)) {
        parts.scheme = text.substr(0, colon);
        text.remove_prefix(colon + 1);
    }
    if (text.starts_with(u"//")) {
        text.remove_prefix(2);
        const std::size_t slash = std::min(text.find(u'/'), text.size());
        parts.authority = text.substr(0, slash);
        text.remove_prefix(slash);
    }
    parts.path = text;
    return parts;
}

// "/a/./b/../c" is "/a/c"; ".." never leads above the root.
String withoutDotSegments(std::u16string_view path)
{
    const bool isRooted = path.starts_with(u'/');
    std::vector<std::u16string_view> segments;
    bool endsWithSlash = false;
    std::u16string_view rest = path.substr(isRooted ? 1 : 0);
    for (bool more = true; more;) {
        std::u16string_view segment = rest;
        const auto behind = cutBehind(segment, u'/');
        more = behind.has_value();
        rest = behind.value_or(std::u16string_view());
        endsWithSlash = segment == u"." || segment == u"..";
        if (segment == u".." && !segments.empty())
            segments.pop_back();
        if (!endsWithSlash)
            segments.push_back(segment);
    }
    MutableString result(path.size() + 1);
    for (const std::u16string_view& segment : segments)
        (isRooted || &segment != segments.data() ? result.append(u'/') : result).append(segment);
    if (endsWithSlash)
        result.append(u'/');
    return std::move(result).take();
}

String mergedPath(const Parts& base, std::u16string_view path)
{
    MutableString result(base.path.size() + path.size() + 1);
    if (base.authority && base.path.empty())
        result.append(u'/');
    else
        result.append(base.path.substr(0, base.path.rfind(u'/') + 1));
    return withoutDotSegments(result.append(path).view());
}

bool mustBeEscaped(unsigned char byte)
{
    constexpr std::string_view NeverInAURL = "\"<>\\^`{|}";
    return byte <= 0x20 || byte >= 0x7F
        || NeverInAURL.find(static_cast<char>(byte)) != std::string_view::npos;
}

String escaped(const String& reference)
{
    constexpr char16_t Digits[] = u"0123456789ABCDEF";
    MutableString result(reference.length());
    for (const char byte : reference.utf8()) {
        const auto value = static_cast<unsigned char>(byte);
        if (mustBeEscaped(value))
            result.append(u'%').append(Digits[value >> 4]).append(Digits[value & 15]);
        else
            result.append(value);
    }
    return std::move(result).take();
}

std::optional<URL> composed(const Parts& parts)
{
    MutableString text;
    if (parts.scheme)
        text.append(*parts.scheme).append(u':');
    if (parts.authority)
        text.append(u"//").append(*parts.authority);
    text.append(parts.path);
    if (parts.query)
        text.append(u'?').append(*parts.query);
    if (parts.fragment)
        text.append(u'#').append(*parts.fragment);
    return URL::fromString(std::move(text).take());
}

} // namespace

std::optional<URL> URLRelativeTo(const URL& base, const String& reference)
{
    const String text = escaped(reference);
    Parts target = partsOf(text);
    if (target.scheme)
        return composed(target);
    const Parts from = partsOf(base.absoluteString());
    String path;
    if (target.authority || target.path.starts_with(u'/'))
        path = withoutDotSegments(target.path);
    else if (!target.path.empty())
        path = mergedPath(from, target.path);
    else {
        path = String(from.path);
        if (!target.query)
            target.query = from.query;
    }
    target.scheme = from.scheme;
    if (!target.authority)
        target.authority = from.authority;
    target.path = path;
    return composed(target);
}

} // namespace NSURLOstraExtensions
} // namespace caddis
