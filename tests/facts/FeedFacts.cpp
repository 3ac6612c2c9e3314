#include "facts/Facts.h"

#include "markup/Feed.h"
#include "markup/MarkupData.h"
#include "platform/dates/DateFormatter.h"
#include "platform/dates/TimeZone.h"
#include "text/DateReader.h"
#include "text/NumericValues.h"

namespace caddis::facts {

Answer feedFact(const Question& question);

namespace {

std::optional<String> textOf(const Value* value)
{
    const auto* text = value ? value->as<String>() : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<String> inUTC(const std::optional<String>& text)
{
    TimeZone::setDefaultZone(TimeZone());
    const auto instant = text ? date(*text) : std::nullopt;
    if (!instant)
        return std::nullopt;
    return DateFormatter(u"yyyy-MM-dd'T'HH:mm:ss'Z'").stringFromDate(*instant);
}

const Value* elementAt(const Value* array, std::u16string_view index)
{
    const auto* elements = array ? array->as<Array>() : nullptr;
    const auto at = static_cast<std::size_t>(integerValue(index));
    return elements && at < elements->size() ? &(*elements)[at] : nullptr;
}

// "title", "dateUTC", "tags.count", "enclosures[0].url" of an item.
Answer itemFact(const Dictionary& item, std::u16string_view key)
{
    constexpr std::u16string_view Enclosure = u"enclosures[";
    if (key == u"dateUTC")
        return inUTC(item.stringForKey(u"date"));
    if (key == u"tags.count") {
        const Value* tags = item.find(u"tags");
        return decimal(tags ? tags->as<Array>()->size() : 0);
    }
    if (!key.starts_with(Enclosure))
        return textOf(item.find(key));
    const Value* enclosure = elementAt(item.find(u"enclosures"), key.substr(Enclosure.size()));
    return enclosure ? textOf(enclosure->as<Dictionary>()->find(key.substr(key.find(u'.') + 1)))
                     : std::nullopt;
}

} // namespace

Answer feedFact(const Question& question)
{
    const auto file = stringWithMarkupContentsOfFile(question.path, NSStringEncoding::UTF8);
    if (!file)
        return Answer::skip("no such file");
    const std::u16string_view key = question.key;
    if (key == u"isFeed")
        return yesOrNo(isFeed(file->text));
    if (key == u"isFeedComplete")
        return yesOrNo(isFeedComplete(file->text).complete);
    const Value items(getItemsOfFeed(file->text));
    if (key == u"itemCount")
        return decimal(items.as<Array>()->size());
    constexpr std::u16string_view Item = u"item[";
    if (!key.starts_with(Item))
        return Answer::skip("unknown key");
    const Value* item = elementAt(&items, key.substr(Item.size()));
    return item ? itemFact(*item->as<Dictionary>(), key.substr(key.find(u'.') + 1)) : std::nullopt;
}

} // namespace caddis::facts
