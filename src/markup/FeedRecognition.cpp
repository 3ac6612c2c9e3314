#include "markup/FeedRecognition.h"

namespace caddis {
inline namespace FeedExtensions {

namespace {

bool belongsToPage(const TagEvent& tag)
{
    return tag.nameIs("HTML") || tag.nameIs("HEAD") || tag.nameIs("BODY");
}

struct RetrieveFeedHandler {
    bool isFeed = false;

    Scan operator()(const TagEvent& tag)
    {
        isFeed = isFeedRoot(tag);
        return isFeed || belongsToPage(tag) ? Scan::Stop : Scan::Continue;
    }
};

struct RetrieveCompleteFeedHandler {
    FeedState state {};

    Scan operator()(const TagEvent& tag)
    {
        constexpr std::size_t Shortest = 4;
        if (!isFeedRoot(tag))
            return belongsToPage(tag) ? Scan::Stop : Scan::Continue;
        state.isFeed = true;
        state.complete = tag.tag.length >= Shortest && (tag.isEndTag() || tag.isSelfClosing());
        return state.complete ? Scan::Stop : Scan::Continue;
    }
};

} // namespace

bool isFeedRoot(const TagEvent& tag)
{
    return tag.nameIs("RSS") || tag.nameIs("RDF:RDF") || tag.nameIs("FEED");
}

bool isFeed(const String& text)
{
    RetrieveFeedHandler handler;
    GetTagsOfString(text, handler);
    return handler.isFeed;
}

FeedState isFeedComplete(const String& text)
{
    RetrieveCompleteFeedHandler handler;
    GetTagsOfString(text, handler);
    return handler.state;
}

} // namespace FeedExtensions
} // namespace caddis
