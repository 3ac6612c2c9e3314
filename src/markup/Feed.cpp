#include "markup/Feed.h"

#include "markup/Feed2HTMLHandler.h"

namespace caddis {
inline namespace FeedExtensions {

String stringByConvertingFeed(
    const String& text, const std::optional<URL>& feedURL, FeedStyleSheet form, const FeedSettings& settings)
{
    MutableString html(text.length());
    appendFeedPageHead(html, form, settings);
    Feed2HTMLHandler handler(feedURL, settings, html);
    GetTagsOfString(text, handler);
    if (!handler.context().isFeed)
        return text;
    html.append(handler.context().bodyStarted ? u"\n</body>\n</html>" : u"\n</head>\n</html>");
    return std::move(html).take();
}

Array getItemsOfFeed(const String& text, const std::optional<URL>& feedURL, const FeedSettings& settings)
{
    Array items;
    Feed2HTMLHandler handler(feedURL, settings, items);
    GetTagsOfString(text, handler);
    return items;
}

} // namespace FeedExtensions
} // namespace caddis
