#include "markup/LinkTitles.h"

#include "foundation/URLResolution.h"
#include "markup/Entities.h"
#include "markup/StringURL.h"
#include "markup/TagAttributes.h"
#include "markup/TagScanner.h"
#include "platform/base/MutableString.h"
#include "text/StringUtilities.h"

namespace caddis {
inline namespace XmlExtensions {

namespace {

// A link is open from its start tag to the next start or end tag of the same name.
struct RetrieveLinkTitlesHandler {
    const URL& base;
    std::unordered_map<String, String> titles {};
    std::optional<String> openLink {};
    MutableString openTitle {};

    Scan operator()(const TagEvent& event)
    {
        if (openLink)
            openTitle.append(event.units(event.text));
        if (event.nameIs("A")) {
            closeLink();
            if (event.isStartTag())
                openLink = linkOf(event);
        } else if (openLink && event.nameIs("BR"))
            openTitle.append(u' ');
        return Scan::Continue;
    }

    std::optional<String> linkOf(const TagEvent& event) const
    {
        const auto value = attributeOfTagCharacters(event.units(event.tag), "HREF");
        const auto reference = value ? normalizedStringURL(*value) : std::nullopt;
        const auto url = reference ? URLRelativeTo(base, *reference) : std::nullopt;
        return url ? std::optional(url->absoluteString()) : std::nullopt;
    }

    void closeLink()
    {
        if (!openLink)
            return;
        const String text = stringByConvertingEntitiesToCharacters(std::exchange(openTitle, {}).take());
        const String title = stringByRemovingMultipleWhiteSpaces(stringByTrimmingWhiteSpaces(text));
        if (!title.isEmpty())
            titles.try_emplace(*openLink, title);
        openLink.reset();
    }
};

} // namespace

std::unordered_map<String, String> getLinkTitles(const String& html, const URL& base)
{
    RetrieveLinkTitlesHandler handler { base };
    parseXmlWithHandler(html, handler);
    handler.closeLink();
    return std::move(handler.titles);
}

} // namespace XmlExtensions
} // namespace caddis
