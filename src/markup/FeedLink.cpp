#include "markup/FeedLink.h"

#include "foundation/URLResolution.h"
#include "markup/StringURL.h"
#include "text/StringUtilities.h"

namespace caddis {

namespace {

using Text = std::u16string_view;

String resolved(const String& link, const std::optional<URL>& feedURL)
{
    if (!feedURL || !link.view().starts_with(u'/'))
        return link;
    const auto url = URLRelativeTo(*feedURL, link);
    return url ? url->absoluteString() : link;
}

// The text before the first `end`; all of it without one.
Text upTo(Text text, Text end) { return text.substr(0, text.find(end)); }

Text unwrapped(Text link, const FeedSettings& settings)
{
    constexpr Text Quoted = u"<a href=\"";
    constexpr Text Unquoted = u"<a href=";
    if (!settings.redirectPrefix.isEmpty() && hasPrefixNoCase(link, settings.redirectPrefix)) {
        constexpr Text Parameter = u"&url=";
        const std::size_t at = link.find(u"&url=http");
        return at == Text::npos ? link : upTo(link.substr(at + Parameter.size()), u"&cid=");
    }
    if (hasPrefixNoCase(link, Quoted))
        return upTo(link.substr(Quoted.size()), u"\"");
    if (!hasPrefixNoCase(link, Unquoted))
        return link;
    const Text value = link.substr(Unquoted.size());
    std::size_t end = value.find(u' ');
    if (end == Text::npos)
        end = value.find(u'>');
    return end == Text::npos ? link : value.substr(0, end);
}

} // namespace

String linkOfFeedItem(
    const String& guid, const String& link, const std::optional<URL>& feedURL, const FeedSettings& settings)
{
    const bool guidLeads = isRemoteWebKitStringURL(guid) && !containsNoCase(guid, settings.shortLinkMarker);
    const String whole = resolved(guidLeads ? guid : link, feedURL);
    const Text inner = unwrapped(whole, settings);
    return inner.size() == whole.length() ? whole : String(inner);
}

} // namespace caddis
