#include "foundation/DataURL.h"

#include "text/StringUtilities.h"

#include <algorithm>
#include <vector>

namespace caddis {
inline namespace NSURLOstraExtensions {

namespace {

// -1 for what is no digit of the base; "-" and "_" are those of the base for URLs.
int base64Digit(char character)
{
    if (character >= 'A' && character <= 'Z')
        return character - 'A';
    if (character >= 'a' && character <= 'z')
        return character - 'a' + 26;
    if (character >= '0' && character <= '9')
        return character - '0' + 52;
    if (character == '+' || character == '-')
        return 62;
    return character == '/' || character == '_' ? 63 : -1;
}

int hexDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string withoutEscapes(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool isEscape = text[index] == '%' && index + 2 < text.size() && hexDigit(text[index + 1]) >= 0
            && hexDigit(text[index + 2]) >= 0;
        if (isEscape) {
            bytes += static_cast<char>(hexDigit(text[index + 1]) << 4 | hexDigit(text[index + 2]));
            index += 2;
        } else {
            bytes += text[index];
        }
    }
    return bytes;
}

std::string fromBase64(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char character : text) {
        const int digit = base64Digit(character);
        if (digit < 0)
            continue;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

} // namespace

std::optional<DataURLContents> contentsOfDataURL(const URL& url)
{
    constexpr std::u16string_view Base64 = u";base64";
    constexpr std::u16string_view Charset = u";charset=";
    const std::u16string_view text = url.absoluteString();
    const std::size_t comma = text.find(u',');
    if (!isEqualNoCase(url.scheme(), u"data") || comma == text.npos)
        return std::nullopt;
    std::u16string_view head = text.substr(5, comma - 5);
    const bool isBase64 = hasSuffixNoCase(head, Base64);
    if (isBase64)
        head.remove_suffix(Base64.size());
    DataURLContents contents;
    const std::size_t parameters = std::min(head.find(u';'), head.size());
    std::u16string type(head.substr(0, parameters));
    std::ranges::transform(type, type.begin(), [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
    });
    contents.mimeType = type.empty() ? u"text/plain"_s : String(type);
    const std::size_t charset = head.find(Charset);
    if (charset != head.npos) {
        const std::u16string_view name = head.substr(charset + Charset.size());
        contents.charset = String(name.substr(0, name.find(u';')));
    }
    const std::string body = withoutEscapes(String(text.substr(comma + 1)).utf8());
    contents.data = Data::adopt(isBase64 ? fromBase64(body) : body);
    return contents;
}

} // namespace NSURLOstraExtensions
} // namespace caddis
