#include "foundation/MIMETypes.h"

#include "platform/base/MutableString.h"
#include "platform/files/SharedMIMEDatabase.h"
#include "text/CharacterTables.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

struct Row {
    std::u16string_view extension, type;
};

constexpr Row table[] = {
    { u"bmp", u"image/bmp" },
    { u"css", u"text/css" },
    { u"dib", u"image/bmp" },
    { u"epub", u"application/epub+zip" },
    { u"gif", u"image/gif" },
    { u"htm", u"text/html" },
    { u"html", u"text/html" },
    { u"jpe", u"image/jpeg" },
    { u"jpeg", u"image/jpeg" },
    { u"jpg", u"image/jpeg" },
    { u"js", u"text/javascript" },
    { u"m4a", u"audio/mp4" },
    { u"mp2", u"audio/mpeg" },
    { u"mp2a", u"audio/mpeg" },
    { u"mp3", u"audio/mpeg" },
    { u"mp4", u"video/mp4" },
    { u"mp4v", u"video/mp4" },
    { u"mpg4", u"video/mp4" },
    { u"mpga", u"audio/mpeg" },
    { u"otf", u"font/otf" },
    { u"pdf", u"application/pdf" },
    { u"png", u"image/png" },
    { u"rtf", u"application/rtf" },
    { u"shtml", u"text/html" },
    { u"svg", u"image/svg+xml" },
    { u"svgz", u"image/svg+xml" },
    { u"tif", u"image/tiff" },
    { u"tiff", u"image/tiff" },
    { u"ttf", u"font/ttf" },
    { u"txt", u"text/plain" },
    { u"webp", u"image/webp" },
    { u"woff", u"font/woff" },
    { u"woff2", u"font/woff2" },
    { u"xht", u"application/xhtml+xml" },
    { u"xhtml", u"application/xhtml+xml" },
    { u"xml", u"application/xml" },
};

String lowercase(const String& text)
{
    MutableString result(text.length());
    for (const char16_t unit : text)
        result.append(toLower(unit));
    return std::move(result).take();
}

} // namespace

std::optional<String> MIMETypeForExtension(const String& extension)
{
    const String lower = lowercase(extension);
    const auto* const row = std::ranges::lower_bound(table, lower.view(), {}, &Row::extension);
    if (row != std::end(table) && row->extension == lower)
        return String(row->type);
    return SharedMIMEDatabase::system().typeForExtension(lower);
}

bool isMarkupMIMEType(const String& type)
{
    const std::u16string_view essence = trimmingWhiteSpaces(type.view().substr(0, type.view().find(u';')));
    return isEqualNoCase(essence, u"text/html") || isEqualNoCase(essence, u"text/xml")
        || isEqualNoCase(essence, u"application/xml") || hasSuffixNoCase(essence, u"+xml");
}

} // namespace NSStringOstraExtensions
} // namespace caddis
