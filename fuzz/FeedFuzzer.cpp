// Feeds cut and mangled anywhere.
//
// Invariants: a page is its items, one behind the other; a text that is no feed comes back itself and has no
// items; every item has its texts, and what is complete is a feed.

#include "Fuzz.h"
#include "markup/Feed.h"
#include "markup/FeedItem.h"
#include "markup/FeedRendering.h"
#include "platform/base/Log.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogSink([](const String&) {}); // Dates that nobody can read.
    static const FeedSettings settings {};
    static const auto url = URL::fromString(u"https://example.org/a/feed.xml"_s);
    const String text = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    const String page = stringByConvertingFeed(text, url, FeedStyleSheet::None, settings);
    const Array items = getItemsOfFeed(text, url, settings);

    const FeedState state = isFeedComplete(text);
    INVARIANT(state.isFeed == isFeed(text) && state.isFeed >= state.complete);
    if (page.isIdenticalTo(text)) {
        INVARIANT(items.empty() && !state.isFeed);
        return 0;
    }
    const String list = stringByConvertingItemsToDisplayHTML(items, settings);
    const std::size_t body = list.view().find(u"</head>\n<body>\n");
    constexpr std::size_t Opening = 15;
    INVARIANT(items.empty() || page.view().ends_with(list.view().substr(body + Opening)));
    for (const Value& item : items) {
        for (const auto* key : { u"title", u"description", u"content", u"author", u"guid", u"date", u"link" })
            INVARIANT(item.as<Dictionary>()->stringForKey(key));
        isEmptyFeedItem(*item.as<Dictionary>());
        stringByConvertingItemToSearchableHTML(*item.as<Dictionary>());
    }
    return 0;
}
