#include "foundation/DataURL.h"

#include "platform/base/Ascii.h"
#include "platform/base/Base64.h"
#include "platform/base/HexDigit.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace NSURLOstraExtensions {

namespace {

std::string withoutEscapes(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        const int escaped = text[index] == '%' ? hexByte(text.substr(index + 1)) : -1;
        bytes += escaped < 0 ? text[index] : static_cast<char>(escaped);
        index += escaped < 0 ? 0 : 2;
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
    const String type(head.substr(0, parameters));
    contents.mimeType = type.isEmpty() ? u"text/plain"_s : lowercaseAscii(type);
    const std::size_t charset = head.find(Charset);
    if (charset != head.npos) {
        const std::u16string_view name = head.substr(charset + Charset.size());
        contents.charset = String(name.substr(0, name.find(u';')));
    }
    const Data body = Data::adopt(withoutEscapes(String(text.substr(comma + 1)).utf8()));
    contents.data
        = isBase64 ? *dataFromBase64(String::fromLatin1(body.chars()), Base64Reading::Lenient) : body;
    return contents;
}

} // namespace NSURLOstraExtensions
} // namespace caddis
