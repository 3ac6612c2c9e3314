// Fields of an item are collected at end tags: the text run before the tag, or, for elements that hold markup
// of their own, everything from their start tag on. A CDATA section waits for the next end tag and goes to
// its element. The first text of a field counts. An item's end writes the item and clears the fields; it does
// not leave the items, so a feed with unclosed or nested items still gives all that it holds.

#include "markup/Feed2HTMLHandler.h"

#include "markup/Entities.h"
#include "markup/FeedLink.h"
#include "markup/FeedRecognition.h"
#include "markup/TagAttributes.h"
#include "platform/base/Format.h"
#include "text/StringUtilities.h"

#include <algorithm>
#include <array>

namespace caddis {
inline namespace FeedExtensions {

// An element that gives an item one of its texts.
struct FeedTextElement {
    enum class Counts { Always, InAuthor, AtEndTag };

    UpperAscii name;
    String FeedItemParts::*field;
    FeedEntities entities = FeedEntities::All;
    std::size_t FeedContext::*start = nullptr; // Where its text begins, if that is not the last text run.
    Counts counts = Counts::Always;
};

namespace {

using Text = std::u16string_view;
using Counts = FeedTextElement::Counts;
constexpr FeedEntities Standard = FeedEntities::Standard;

constexpr std::array TextElements {
    FeedTextElement { .name = "TITLE", .field = &FeedItemParts::title },
    FeedTextElement { .name = "NAME", .field = &FeedItemParts::author, .counts = Counts::InAuthor },
    FeedTextElement { .name = "AUTHOR", .field = &FeedItemParts::author, .counts = Counts::InAuthor },
    FeedTextElement { .name = "DC:CREATOR", .field = &FeedItemParts::author },
    FeedTextElement { .name = "ISSUED", .field = &FeedItemParts::date, .entities = Standard },
    FeedTextElement { .name = "DC:DATE", .field = &FeedItemParts::date, .entities = Standard },
    FeedTextElement { .name = "PUBDATE", .field = &FeedItemParts::date, .entities = Standard },
    FeedTextElement { .name = "UPDATED", .field = &FeedItemParts::date, .entities = Standard },
    FeedTextElement { .name = "PUBLISHED", .field = &FeedItemParts::date, .entities = Standard },
    FeedTextElement { .name = "SUMMARY", .field = &FeedItemParts::description },
    FeedTextElement { .name = "DESCRIPTION",
        .field = &FeedItemParts::description,
        .start = &FeedContext::descriptionStart },
    FeedTextElement {
        .name = "CONTENT", .field = &FeedItemParts::content, .start = &FeedContext::contentStart },
    FeedTextElement { .name = "CONTENT:ENCODED", .field = &FeedItemParts::content },
    FeedTextElement {
        .name = "LINK", .field = &FeedItemParts::link, .entities = Standard, .counts = Counts::AtEndTag },
};

bool closes(const TagEvent& tag) { return tag.isEndTag() || tag.isSelfClosing(); }

bool isItem(Text name)
{
    return UpperAscii("ITEM").equalsNoCase(name) || UpperAscii("ENTRY").equalsNoCase(name);
}

// The tag's name without the prefix of feeds that declare RSS as a namespace; empty when there is none.
Text elementName(const TagEvent& tag)
{
    constexpr UpperAscii Prefix = "RSS:";
    if (!tag.name.isFound())
        return {};
    const Text name = tag.units(tag.name);
    return name.size() > Prefix.length() && Prefix.isPrefixNoCaseOf(name) ? name.substr(Prefix.length())
                                                                          : name;
}

String attribute(const TagEvent& tag, UpperAscii name)
{
    return attributeOfTagCharacters(tag.units(tag.tag), name).value_or(String());
}

bool attributeIs(const TagEvent& tag, UpperAscii name, UpperAscii value)
{
    const auto range = rangeOfAttributeOfTagCharacters(tag.string, tag.tag, name);
    return range && value.equalsNoCase(tag.units(*range));
}

// Links that programs follow, not readers.
bool isServiceLink(const String& relation)
{
    return hasPrefixNoCase(relation, u"service.") || isEqualNoCase(relation, u"edit")
        || isEqualNoCase(relation, u"self");
}

Dictionary itemDictionary(const FeedContext& context)
{
    const FeedItemParts& item = context.item;
    Dictionary result { { u"title"_s, item.title }, { u"description"_s, item.description },
        { u"content"_s, item.content }, { u"author"_s, item.author }, { u"guid"_s, context.guid } };
    if (!context.tags.empty())
        result.set(u"tags"_s, Value(context.tags));
    if (!item.enclosures.empty())
        result.set(u"enclosures"_s, Value(item.enclosures));
    result.set(u"date"_s, Value(item.date));
    result.set(u"link"_s, Value(item.link));
    return result;
}

} // namespace

void ReleaseFeedContext(FeedContext& context)
{
    context.contentStart = context.descriptionStart = NotFound;
    context.tags.clear();
    context.item = {};
    context.pendingSection = context.guid = {};
    context.inAuthor = context.contentIsHTML = context.guidNotPermaLink = false;
}

String CreateFeedContent(std::u16string_view text, FeedEntities entities)
{
    String content(text);
    if (entities == FeedEntities::All)
        content = stringByConvertingEntitiesToCharacters(content);
    else if (entities == FeedEntities::Standard)
        content = stringByConvertingStandardEntitiesToCharacters(content);
    return stringByTrimmingWhiteSpaces(content);
}

Feed2HTMLHandler::Feed2HTMLHandler(
    const std::optional<URL>& feedURL, const FeedSettings& settings, MutableString& html)
    : m_context { .feedURL = feedURL, .html = &html }
    , m_settings(settings)
{
}

Feed2HTMLHandler::Feed2HTMLHandler(
    const std::optional<URL>& feedURL, const FeedSettings& settings, Array& items)
    : m_context { .feedURL = feedURL, .items = &items }
    , m_settings(settings)
{
}

Scan Feed2HTMLHandler::operator()(const TagEvent& tag)
{
    if (tag.tag.length == 0)
        return Scan::Continue;
    if (!m_context.isFeed)
        return readRoot(tag);
    const Text name = elementName(tag);
    if (!m_context.inItem)
        readOutsideItems(tag, name);
    else if (tag.kind == TagKind::Section)
        readSection(tag);
    else if (!name.empty())
        readInItem(tag, name);
    return Scan::Continue;
}

// Kept on purpose: "head" does not end the search here, as it does when a text is only asked whether it is a
// feed.
Scan Feed2HTMLHandler::readRoot(const TagEvent& tag)
{
    m_context.isFeed = isFeedRoot(tag);
    return tag.nameIs("HTML") || tag.nameIs("BODY") ? Scan::Stop : Scan::Continue;
}

void Feed2HTMLHandler::readOutsideItems(const TagEvent& tag, Text name)
{
    if (isItem(name))
        m_context.inItem = true;
    if (m_context.bodyStarted || !closes(tag) || !UpperAscii("TITLE").equalsNoCase(name))
        return;
    const String title = CreateFeedContent(tag.units(tag.text), FeedEntities::All);
    if (title.isEmpty())
        return;
    if (m_context.html)
        m_context.html->append(format(u"<title>%@</title>\n</head>\n<body><div class=\"page_header\">"
                                      u"<div class=\"page_title\"><nobr>%@</nobr></div></div>\n",
            title, title));
    m_context.bodyStarted = true;
}

// "<![CDATA[text]]>": the text begins behind the word and its bracket.
void Feed2HTMLHandler::readSection(const TagEvent& section)
{
    constexpr std::size_t Closing = 3;
    const Text units = section.units(section.tag);
    const auto isLetter = [](char16_t unit) { return alphaCharacterSetRep().contains(unit); };
    const auto word = std::ranges::find_if(units, isLetter);
    const auto bracket = std::find_if_not(word, units.end(), isLetter);
    const auto start = static_cast<std::size_t>(bracket - units.begin()) + 1;
    if (start + Closing < units.size())
        m_context.pendingSection = CreateFeedContent(units.substr(start, units.size() - Closing - start),
            m_context.contentIsHTML ? FeedEntities::None : FeedEntities::Standard);
}

void Feed2HTMLHandler::readInItem(const TagEvent& tag, Text name)
{
    if (UpperAscii("LINK").equalsNoCase(name))
        readLink(tag);
    else if (UpperAscii("GUID").equalsNoCase(name))
        readGuid(tag);
    if (!tag.isEndTag())
        beginElement(tag, name);
    if (closes(tag))
        endElement(tag, name);
}

void Feed2HTMLHandler::readLink(const TagEvent& tag)
{
    if (m_context.item.link.isEmpty() && !isServiceLink(attribute(tag, "REL")))
        m_context.item.link = stringByConvertingStandardEntitiesToCharacters(attribute(tag, "HREF"));
}

void Feed2HTMLHandler::readGuid(const TagEvent& tag)
{
    if (!tag.isEndTag()) {
        m_context.guidNotPermaLink |= attributeIs(tag, "ISPERMALINK", "FALSE");
        return;
    }
    if (!m_context.guidNotPermaLink)
        m_context.guid = CreateFeedContent(tag.units(tag.text), FeedEntities::Standard);
    m_context.guidNotPermaLink = false;
}

void Feed2HTMLHandler::beginElement(const TagEvent& tag, Text name)
{
    const std::size_t start = tag.isSelfClosing() ? NotFound : tag.tag.end();
    if (UpperAscii("AUTHOR").equalsNoCase(name)) {
        m_context.inAuthor |= !tag.isSelfClosing();
    } else if (UpperAscii("CONTENT").equalsNoCase(name)) {
        m_context.contentStart = start;
        m_context.contentIsHTML = start != NotFound && attributeIs(tag, "TYPE", "HTML");
    } else if (UpperAscii("DESCRIPTION").equalsNoCase(name)) {
        m_context.descriptionStart = start;
    }
}

void Feed2HTMLHandler::endElement(const TagEvent& tag, Text name)
{
    startBody();
    if (isItem(name))
        return finishItem();
    const auto* const element = std::ranges::find_if(
        TextElements, [name](const FeedTextElement& row) { return row.name.equalsNoCase(name); });
    if (element != TextElements.end())
        endTextElement(tag, *element);
    else if (UpperAscii("CATEGORY").equalsNoCase(name))
        addCategory(tag);
    else if (UpperAscii("ENCLOSURE").equalsNoCase(name))
        addEnclosure(tag);
    m_context.pendingSection = {};
}

void Feed2HTMLHandler::endTextElement(const TagEvent& tag, const FeedTextElement& element)
{
    if (element.counts == Counts::InAuthor && !std::exchange(m_context.inAuthor, false))
        return;
    String& field = m_context.item.*element.field;
    if (!field.isEmpty() || (element.counts == Counts::AtEndTag && !tag.isEndTag()))
        return;
    const std::size_t start = element.start ? m_context.*element.start : tag.text.location;
    if (!m_context.pendingSection.isEmpty())
        field = m_context.pendingSection;
    else if (start < tag.tag.location)
        field = CreateFeedContent(tag.units({ start, tag.tag.location - start }), element.entities);
}

void Feed2HTMLHandler::addCategory(const TagEvent& tag)
{
    String category = stringByConvertingStandardEntitiesToCharacters(attribute(tag, "TERM"));
    if (category.isEmpty())
        category = m_context.pendingSection;
    if (category.isEmpty())
        category = CreateFeedContent(tag.units(tag.text), FeedEntities::All);
    if (!category.isEmpty())
        m_context.tags.emplace_back(std::move(category));
}

void Feed2HTMLHandler::addEnclosure(const TagEvent& tag)
{
    const String url = stringByConvertingStandardEntitiesToCharacters(attribute(tag, "URL"));
    if (url.isEmpty())
        return;
    Dictionary enclosure { { u"url"_s, url } };
    const String length = attribute(tag, "LENGTH");
    if (!length.isEmpty())
        enclosure.set(u"length"_s, Value(length));
    m_context.item.enclosures.emplace_back(std::move(enclosure));
}

void Feed2HTMLHandler::startBody()
{
    if (m_context.html && !m_context.bodyStarted)
        m_context.html->append(u"</head>\n<body>\n");
    m_context.bodyStarted = true;
}

void Feed2HTMLHandler::finishItem()
{
    FeedItemParts& item = m_context.item;
    // Kept on purpose: some feed generators write this word for items that they have no text of.
    if (item.description != u"Array") {
        item.link = linkOfFeedItem(m_context.guid, item.link, m_context.feedURL, m_settings);
        if (m_context.html)
            AppendItem2Feed(*m_context.html, item);
        else
            m_context.items->emplace_back(itemDictionary(m_context));
    }
    ReleaseFeedContext(m_context);
}

} // namespace FeedExtensions
} // namespace caddis
