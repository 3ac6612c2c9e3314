#include "markup/CharsetFinder.h"

#include "markup/Charsets.h"
#include "markup/Entities.h"
#include "markup/HeaderFields.h"
#include "markup/TagAttributes.h"
#include "markup/TagScanner.h"
#include "text/NumericValues.h"

#include <algorithm>
#include <cmath>

namespace caddis {
inline namespace XmlExtensions {

namespace {

// Where the declared name stands; only one in a meta tag may hold entities.
struct RetrieveEncodingRangeHandler {
    std::optional<Range> range;
    bool inMetaTag = false;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (event.nameIs("META") && !event.isEndTag()) {
            range = rangeInMetaTag(event);
            inMetaTag = true;
        } else if (event.nameIs("XML") && event.characters[event.tag.location + 1] == u'?') {
            range = rangeOfAttributeOfTagCharacters(event.string, event.tag, "ENCODING");
            inMetaTag = false;
        }
        return range ? Scan::Stop : Scan::Continue;
    }

private:
    static std::optional<Range> rangeInMetaTag(const TagEvent& event)
    {
        const auto content
            = rangeOfAttributeOfTagCharacters(event.string, event.tag, "CONTENT", Reading::Lenient);
        const auto charset
            = content ? rangeOfHeaderFieldNamed(event.units(*content), "CHARSET") : std::nullopt;
        if (charset)
            return Range { content->location + charset->location, charset->length };
        return rangeOfAttributeOfTagCharacters(event.string, event.tag, "CHARSET");
    }
};

RetrieveEncodingRangeHandler declarationIn(const String& markup)
{
    RetrieveEncodingRangeHandler handler;
    parseXmlWithHandler(markup, handler);
    return handler;
}

} // namespace

std::optional<String> headerCharset(std::u16string_view header)
{
    return headerFieldNamed(header, "CHARSET");
}

NSStringEncoding headerEncoding(std::u16string_view header)
{
    const auto charset = headerCharset(header);
    return charset ? charset2NSStringEncoding(*charset) : NSStringEncoding::InvalidId;
}

std::optional<Range> markupCharsetRange(const String& markup) { return declarationIn(markup).range; }

std::optional<String> markupCharset(const String& markup)
{
    const RetrieveEncodingRangeHandler declaration = declarationIn(markup);
    if (!declaration.range)
        return std::nullopt;
    const String written = markup.substring(*declaration.range);
    return declaration.inMetaTag ? stringByConvertingEntitiesToCharacters(written) : written;
}

NSStringEncoding markupEncoding(const String& markup)
{
    const auto charset = markupCharset(markup);
    return charset ? charset2NSStringEncoding(*charset) : NSStringEncoding::InvalidId;
}

std::optional<String> headerRefresh(std::u16string_view header)
{
    auto url = headerFieldNamed(header, "URL");
    if (!url || url->length() < 2 || (*url)[0] != u'"' || (*url)[url->length() - 1] != u'"')
        return url;
    return url->substring({ 1, url->length() - 2 });
}

double refreshInterval(std::u16string_view header)
{
    const double seconds = doubleValue(header);
    return std::isfinite(seconds) ? std::max(seconds, 0.0) : 0;
}

} // namespace XmlExtensions
} // namespace caddis
