#include "markup/FeedRendering.h"

#include "markup/TagStripping.h"
#include "platform/base/Format.h"
#include "platform/base/Paths.h"
#include "platform/dates/DateFormatter.h"
#include "text/DateReader.h"
#include "text/NumericValues.h"
#include "text/StringUtilities.h"

namespace caddis {
inline namespace FeedExtensions {

namespace {

enum class Purpose { Search, Display };

String stringOf(const Dictionary& dictionary, std::u16string_view key)
{
    return dictionary.stringForKey(key).value_or(String());
}

const Array& arrayOf(const Dictionary& dictionary, std::u16string_view key)
{
    static const Array none;
    const Value* value = dictionary.find(key);
    const Array* array = value ? value->as<Array>() : nullptr;
    return array ? *array : none;
}

String shownDate(const String& text)
{
    const auto instant = text.isEmpty() ? std::nullopt : date(text);
    return instant ? DateFormatter::dateTimeFormatter().stringFromDate(*instant) : text;
}

String byline(const FeedItemParts& item)
{
    String dateText = shownDate(item.date);
    if (item.author.isEmpty())
        return dateText;
    return dateText.isEmpty() ? item.author : format(u"%@ - %@", item.author, dateText);
}

void appendTitle(MutableString& html, const FeedItemParts& item)
{
    if (item.link.isEmpty())
        html.append(item.title).append(u"<br/>");
    else
        html.append(format(u"<a class=\"feed_link\" href=\"%@\">%@</a><br/>", item.link, item.title));
    const String line = byline(item);
    if (!line.isEmpty())
        html.append(format(u"<font class=\"feed_date\">%@</font>", line));
}

void appendEnclosure(MutableString& html, const Dictionary& enclosure)
{
    const String url = stringOf(enclosure, u"url");
    const String length = stringOf(enclosure, u"length");
    html.append(format(u"<a class=\"feed_enclosure\" href=\"%@\">%@</a>", url, lastPathComponent(url)));
    if (integerValue(length) > 0)
        html.append(containsAlphaCharacter(length) ? format(u"&nbsp;(%@)", length)
                                                   : format(u"&nbsp;(%@ bytes)", length));
    html.append(u"<br/>\n");
}

void appendEnclosures(MutableString& html, const Array& enclosures)
{
    if (enclosures.empty())
        return;
    html.append(u"<div class=\"feed_enclosures\"><p>\n");
    for (const Value& enclosure : enclosures) {
        if (const auto* dictionary = enclosure.as<Dictionary>())
            appendEnclosure(html, *dictionary);
    }
    html.append(u"</p></div>\n");
}

void appendItem(MutableString& html, const Dictionary& item, Purpose purpose)
{
    FeedItemParts parts { .icon = stringOf(item, u"icon"),
        .title = stringOf(item, u"title"),
        .content = stringOf(item, u"content"),
        .description = stringOf(item, u"description"),
        .link = stringOf(item, u"link") };
    if (purpose == Purpose::Display) {
        parts.date = stringOf(item, u"date");
        parts.author = stringOf(item, u"author");
        parts.enclosures = arrayOf(item, u"enclosures");
    }
    AppendItem2Feed(html, parts);
}

void appendMetaTags(MutableString& html, const Dictionary& item)
{
    const String author = stringOf(item, u"author");
    if (!author.isEmpty())
        html.append(format(u"<meta name=\"author\" content=\"%@\"/>\n", stripTags(author)));
    std::vector<String> tags;
    for (const Value& tag : arrayOf(item, u"tags")) {
        if (const auto* text = tag.as<String>())
            tags.push_back(*text);
    }
    if (!tags.empty())
        html.append(
            format(u"<meta name=\"keywords\" content=\"%@\"/>\n", componentsJoinedByString(tags, u", ")));
}

String stringByConvertingItemToHTML(
    const Dictionary& item, Purpose purpose, FeedStyleSheet form, const FeedSettings& settings)
{
    MutableString html;
    appendFeedPageHead(html, form, settings);
    appendMetaTags(html, item);
    html.append(u"</head>\n<body>\n");
    appendItem(html, item, purpose);
    html.append(u"\n</body>\n</html>");
    return std::move(html).take();
}

String stringByConvertingItemsToHTML(
    const Array& items, Purpose purpose, FeedStyleSheet form, const FeedSettings& settings)
{
    MutableString html;
    appendFeedPageHead(html, form, settings);
    html.append(u"</head>\n<body>\n");
    for (const Value& item : items) {
        if (const auto* dictionary = item.as<Dictionary>())
            appendItem(html, *dictionary, purpose);
    }
    html.append(u"\n</body>\n</html>");
    return std::move(html).take();
}

} // namespace

void AppendItem2Feed(MutableString& html, const FeedItemParts& item)
{
    html.append(u"\n<div class=\"feed_header\">");
    if (!item.icon.isEmpty())
        html.append(format(
            u"<table><tr><td valign=\"centered\"><img src=\"%@\"/></td><td valign=\"centered\">", item.icon));
    appendTitle(html, item);
    html.append(item.icon.isEmpty() ? u"</div>" : u"</td></table></div>");
    html.append(u"<div class=\"feed_article\">\n");
    html.append(stripTag(item.content.isEmpty() ? item.description : item.content, "SPAN")).append(u"\n");
    appendEnclosures(html, item.enclosures);
    html.append(u"</div>\n");
}

String stringByConvertingItemToSearchableHTML(const Dictionary& item)
{
    return stringByConvertingItemToHTML(item, Purpose::Search, FeedStyleSheet::None, {});
}

String stringByConvertingItemToDisplayHTML(
    const Dictionary& item, FeedStyleSheet form, const FeedSettings& settings)
{
    return stringByConvertingItemToHTML(item, Purpose::Display, form, settings);
}

String stringByConvertingItemsToSearchableHTML(const Array& items)
{
    return stringByConvertingItemsToHTML(items, Purpose::Search, FeedStyleSheet::None, {});
}

String stringByConvertingItemsToDisplayHTML(const Array& items, const FeedSettings& settings)
{
    return stringByConvertingItemsToHTML(items, Purpose::Display, FeedStyleSheet::Linked, settings);
}

} // namespace FeedExtensions
} // namespace caddis
