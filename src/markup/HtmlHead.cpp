// Title, date and canonical address of a page.

#include "markup/Entities.h"
#include "markup/HtmlMetaTags.h"
#include "markup/HtmlMetadata.h"
#include "markup/StringURL.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace HtmlExtensions {

namespace {

struct RetrieveTitleHandler {
    std::optional<Range> title = std::nullopt;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (!event.nameIs("TITLE") || !(event.isEndTag() || event.isSelfClosing()))
            return Scan::Continue;
        title = event.text;
        return Scan::Stop;
    }
};

struct RetrieveDateHandler {
    std::u16string_view date {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (event.nameIs("META") && namesDate(event))
            date = contentOf(event);
        return date.empty() ? Scan::Continue : Scan::Stop;
    }

private:
    static bool namesDate(const TagEvent& event)
    {
        const std::u16string_view name = attributeOf(event, "NAME");
        return isDateAttribute(name.empty() ? attributeOf(event, "PROPERTY") : name)
            || equalsNoCase(attributeOf(event, "HTTP-EQUIV"), u"last-modified");
    }
};

struct RetrieveCanonicalURLHandler {
    std::optional<String> url = std::nullopt;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        const bool isCanonical = event.nameIs("LINK") && !event.isEndTag()
            && equalsNoCase(attributeOf(event, "REL"), u"canonical");
        if (isCanonical)
            url = normalizedStringURL(String(attributeOf(event, "HREF")));
        return url ? Scan::Stop : Scan::Continue;
    }
};

bool startsWithNoCase(std::u16string_view text, std::u16string_view start)
{
    return equalsNoCase(text.substr(0, start.size()), start);
}

bool endsWithNoCase(std::u16string_view text, std::u16string_view end)
{
    return text.size() >= end.size() && equalsNoCase(text.substr(text.size() - end.size()), end);
}

} // namespace

std::optional<String> htmlTitle(const String& html)
{
    RetrieveTitleHandler handler;
    parseXmlWithHandler(html, handler);
    return handler.title ? std::optional(html.substring(*handler.title)) : std::nullopt;
}

std::optional<String> normalizedHtmlTitle(const String& html)
{
    const auto title = htmlTitle(html);
    if (!title)
        return std::nullopt;
    const String plain = stringByRemovingMultipleWhiteSpaces(stringByConvertingEntitiesToCharacters(*title));
    String normalized = stringByTrimmingWhiteSpaces(plain);
    return normalized.isEmpty() ? std::nullopt : std::optional(std::move(normalized));
}

bool isDateAttribute(std::u16string_view name)
{
    constexpr std::u16string_view Whole[] = { u"date", u"pdate", u"updated", u"dategen", u"displaydate" };
    constexpr std::u16string_view Starts[] = { u"date.", u"dc.date" };
    constexpr std::u16string_view Ends[] = { u"_date", u"pubDate", u"publicationDate", u"publishDate" };
    return std::ranges::any_of(Whole, [&](auto each) { return equalsNoCase(name, each); })
        || std::ranges::any_of(Starts, [&](auto each) { return startsWithNoCase(name, each); })
        || std::ranges::any_of(Ends, [&](auto each) { return endsWithNoCase(name, each); });
}

std::optional<String> htmlDate(const String& html)
{
    RetrieveDateHandler handler;
    parseXmlWithHandler(html, handler);
    return handler.date.empty() ? std::nullopt : std::optional(String(handler.date));
}

std::optional<String> htmlCanonicalURL(const String& html)
{
    RetrieveCanonicalURLHandler handler;
    parseXmlWithHandler(html, handler);
    return handler.url;
}

} // namespace HtmlExtensions
} // namespace caddis
