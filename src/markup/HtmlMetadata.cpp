#include "markup/HtmlMetadata.h"

#include "markup/Entities.h"
#include "markup/HtmlMetaTags.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <vector>

namespace caddis {
inline namespace HtmlExtensions {

namespace {

// Up to three names; the third one is accepted as a "PROPERTY" too.
using MetaNames = std::array<std::u16string_view, 3>;

constexpr MetaNames titleNames { u"title", u"dc.title", u"og:title" };
constexpr MetaNames indexTitleNames { u"IndexTitle" };
constexpr MetaNames keywordsNames { u"keywords", u"dc.keywords" };
constexpr MetaNames descriptionNames { u"description", u"dc.description", u"og:description" };
constexpr MetaNames dateNames { u"date", u"dc.date" };

bool isNamed(std::u16string_view name, std::u16string_view property, const MetaNames& accepted)
{
    const auto equals = [](std::u16string_view left, std::u16string_view right) {
        return !right.empty() && equalsNoCase(left, right);
    };
    return std::ranges::any_of(accepted, [&](std::u16string_view each) { return equals(name, each); })
        || equals(property, accepted[2]);
}

bool hasName(const TagEvent& event, const MetaNames& accepted)
{
    return isNamed(attributeOf(event, "NAME"), attributeOf(event, "PROPERTY"), accepted);
}

struct RetrieveMetaAttributeHandler {
    MetaNames names;
    JoinedText result {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (event.nameIs("META") && hasName(event, names))
            result.add(contentOf(event));
        return Scan::Continue;
    }
};

std::optional<String> metaAttribute(const String& html, const MetaNames& names)
{
    RetrieveMetaAttributeHandler handler { names };
    parseXmlWithHandler(html, handler);
    return handler.result.take();
}

struct RetrieveHTTPEquivHandler {
    std::u16string_view value;
    std::u16string_view result {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (event.nameIs("META") && equalsNoCase(attributeOf(event, "HTTP-EQUIV"), value))
            result = contentOf(event);
        return result.empty() ? Scan::Continue : Scan::Stop;
    }
};

struct RetrieveKeywordsDescriptionTitleDateHandler {
    JoinedText keywords {}, description {}, title {}, indexTitle {}, date {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (!event.nameIs("META"))
            return Scan::Continue;
        const std::u16string_view name = attributeOf(event, "NAME");
        const std::u16string_view property = attributeOf(event, "PROPERTY");
        const std::u16string_view content = contentOf(event);
        const std::pair<const MetaNames&, JoinedText&> texts[] = {
            { keywordsNames, keywords },
            { descriptionNames, description },
            { titleNames, title },
            { indexTitleNames, indexTitle },
            { dateNames, date },
        };
        for (const auto& [names, text] : texts) {
            if (isNamed(name, property, names))
                text.add(content);
        }
        if (equalsNoCase(attributeOf(event, "HTTP-EQUIV"), u"last-modified"))
            date.add(content);
        return Scan::Continue;
    }
};

String caseless(std::u16string_view name)
{
    std::u16string units(name);
    std::ranges::transform(units, units.begin(), toUpper);
    return String(units);
}

// Names are looked up by hash: a page may hold a million of them.
struct RetrieveMetaDataHandler {
    struct Attribute {
        std::u16string_view name;
        JoinedText content;
    };
    std::vector<Attribute> attributes {};
    std::unordered_map<String, std::size_t> positions {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        const std::u16string_view name
            = event.nameIs("META") ? attributeOf(event, "NAME") : std::u16string_view();
        const std::u16string_view content = name.empty() ? name : contentOf(event);
        if (content.empty())
            return Scan::Continue;
        const auto [position, isNew] = positions.try_emplace(caseless(name), attributes.size());
        if (isNew)
            attributes.push_back({ name, {} });
        attributes[position->second].content.add(content);
        return Scan::Continue;
    }
};

using Conversion = String (*)(const String&);

Dictionary retrieveMetaData(const String& html, Conversion convert)
{
    RetrieveMetaDataHandler handler;
    parseXmlWithHandler(html, handler);
    std::vector<Dictionary::Entry> entries;
    for (auto& [name, content] : handler.attributes)
        entries.push_back({ convert(String(name)), convert(*content.take()) });
    return Dictionary::adopt(std::move(entries));
}

// The result does not exist until the first match.
struct StripMetaAttributeHandler {
    std::u16string_view name;
    std::optional<MutableString> result = std::nullopt;
    std::size_t copied = 0;

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs("BODY"))
            return Scan::Stop;
        if (!event.nameIs("META") || !equalsNoCase(attributeOf(event, "NAME"), name))
            return Scan::Continue;
        if (!result)
            result.emplace(event.string.length());
        result->append(event.units({ copied, event.tag.location - copied }));
        copied = event.tag.end();
        return Scan::Continue;
    }
};

} // namespace

std::optional<String> htmlMetaTitle(const String& html) { return metaAttribute(html, titleNames); }

std::optional<String> htmlMetaIndexTitle(const String& html) { return metaAttribute(html, indexTitleNames); }

std::optional<String> htmlMetaKeywords(const String& html) { return metaAttribute(html, keywordsNames); }

std::optional<String> htmlMetaDescription(const String& html)
{
    return metaAttribute(html, descriptionNames);
}

std::optional<String> htmlMetaDate(const String& html) { return metaAttribute(html, dateNames); }

std::optional<String> htmlMetaAuthor(const String& html)
{
    return metaAttribute(html, { u"author", u"dc.author" });
}

std::optional<String> htmlMetaCopyright(const String& html)
{
    return metaAttribute(html, { u"copyright", u"dc.rights" });
}

std::optional<String> htmlMetaAttributeWithName(const String& html, std::u16string_view name)
{
    return metaAttribute(html, { name });
}

std::optional<String> htmlMetaHTTPEquiv(const String& html, std::u16string_view value)
{
    RetrieveHTTPEquivHandler handler { value };
    parseXmlWithHandler(html, handler);
    return handler.result.empty() ? std::nullopt : std::optional(String(handler.result));
}

std::optional<String> htmlMetaRefresh(const String& html) { return htmlMetaHTTPEquiv(html, u"refresh"); }

HtmlMetaSummary htmlMetaKeywordsDescriptionTitleIndexTitleDate(const String& html)
{
    RetrieveKeywordsDescriptionTitleDateHandler handler;
    parseXmlWithHandler(html, handler);
    return { handler.keywords.take(), handler.description.take(), handler.title.take(),
        handler.indexTitle.take(), handler.date.take() };
}

Dictionary htmlMetaAttributes(const String& html)
{
    return retrieveMetaData(html, [](const String& text) { return text; });
}

Dictionary htmlMetaAttributesByConvertingEntitiesToCharacters(const String& html)
{
    return retrieveMetaData(
        html, [](const String& text) { return stringByConvertingEntitiesToCharacters(text); });
}

String stringByStrippingMetaAttributeWithName(const String& html, std::u16string_view name)
{
    StripMetaAttributeHandler handler { name };
    if (!parseXmlWithHandler(html, handler) || !handler.result)
        return html;
    handler.result->append(html.view().substr(handler.copied));
    return std::move(*handler.result).take();
}

} // namespace HtmlExtensions
} // namespace caddis
