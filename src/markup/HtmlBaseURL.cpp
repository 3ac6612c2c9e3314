#include "markup/HtmlBaseURL.h"

#include "markup/HtmlMetaTags.h"
#include "markup/StringURL.h"
#include "platform/base/Log.h"

#include <algorithm>

namespace caddis {
inline namespace HtmlExtensions {

namespace {

bool isBaseTag(const TagEvent& event) { return event.nameIs("BASE") && !event.isEndTag(); }

struct RetrieveBaseURLHandler {
    std::optional<URL> url = std::nullopt;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        const auto address
            = isBaseTag(event) ? normalizedStringURL(String(attributeOf(event, "HREF"))) : std::nullopt;
        if (!address || address->view().starts_with(u'#'))
            return Scan::Continue;
        if (*address == u"/")
            return Scan::Stop;
        const String complete = address->view().starts_with(u"//") ? format(u"http:%@", *address) : *address;
        if (isRemoteWebKitStringURL(complete)) {
            url = URL::fromString(complete);
            return Scan::Stop;
        }
        log(u"Invalid base: '%@'", complete);
        return Scan::Continue;
    }
};

// Which part of the text the element takes the place of.
struct SetBaseURLHandler {
    Range place { 0, 0 };
    bool behindHead = false;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (isBaseTag(event)) {
            place = event.tag;
            return Scan::Stop;
        }
        const bool isHead = event.nameIs("HEAD") && !event.isEndTag();
        const bool isBeforeHead = event.nameIs("HTML") || event.nameIs("DOCTYPE") || event.nameIs("XML");
        if (!behindHead && (isHead || (isBeforeHead && !event.isEndTag())))
            place = { event.tag.end(), 0 };
        behindHead = behindHead || isHead;
        return Scan::Continue;
    }
};

// A quotation mark would end the attribute; the element's own line end is not written twice.
String baseElement(const URL& base)
{
    MutableString address;
    for (const char16_t unit : base.absoluteString()) {
        if (unit == u'"')
            address.append(u"%22");
        else
            address.append(unit);
    }
    return format(u"<BASE href=\"%@\"/>\n", address.view());
}

} // namespace

std::optional<URL> htmlBaseURL(const String& html)
{
    RetrieveBaseURLHandler handler;
    parseXmlWithHandler(html, handler);
    return handler.url;
}

String stringBySettingBaseURL(const String& html, const URL& base)
{
    SetBaseURLHandler handler;
    parseXmlWithHandler(html, handler);
    const Range place = handler.place;
    std::u16string_view rest = html.view().substr(place.end());
    if (place.length && rest.starts_with(u'\n'))
        rest.remove_prefix(1);
    MutableString result(html.length());
    result.append(html.view({ 0, place.location })).append(baseElement(base)).append(rest);
    return std::move(result).take();
}

String stringByAddingBaseURL(const String& html, const URL& base)
{
    return htmlBaseURL(html) ? html : stringBySettingBaseURL(html, base);
}

} // namespace HtmlExtensions
} // namespace caddis
