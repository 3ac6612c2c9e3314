#pragma once

#include "markup/FeedRendering.h"
#include "markup/TagScanner.h"

namespace caddis {
inline namespace FeedExtensions {

/// What is known of the feed and of the present item. Texts are empty while nothing has been seen of them.
struct FeedContext {
    std::optional<URL> feedURL;
    std::size_t contentStart = NotFound; ///< behind the present content element's tag
    std::size_t descriptionStart = NotFound; ///< behind the present description element's tag
    MutableString* html = nullptr; ///< the page, or null when items are collected
    Array* items = nullptr; ///< the collected items, or null when a page is written
    Array tags {};
    FeedItemParts item {};
    String pendingSection {}; ///< the last CDATA section, waiting for the next end tag
    String guid {};
    bool inItem = false; ///< the first item has begun; what stands behind an item belongs to the next one
    bool bodyStarted = false; ///< the page's head is closed
    bool isFeed = false; ///< the root element has been seen
    bool inAuthor = false; ///< in an author element whose name has not come yet
    bool contentIsHTML = false; ///< the present content element's "TYPE" is "html"
    bool guidNotPermaLink = false; ///< the present guid's "isPermaLink" is "false"
};

/// Makes the context one of an item of which nothing is known.
void ReleaseFeedContext(FeedContext& context);

/// Which references a text's conversion takes.
enum class FeedEntities { None, Standard, All };

/// The trimmed text of an element, its entities converted. Empty: nothing is left.
String CreateFeedContent(std::u16string_view text, FeedEntities entities);

struct FeedTextElement;

/// Writes a feed as HTML or collects its items, in one scan.
class Feed2HTMLHandler {
public:
    Feed2HTMLHandler(const std::optional<URL>& feedURL, const FeedSettings& settings, MutableString& html);
    Feed2HTMLHandler(const std::optional<URL>& feedURL, const FeedSettings& settings, Array& items);

    Scan operator()(const TagEvent& tag);
    const FeedContext& context() const { return m_context; }

private:
    Scan readRoot(const TagEvent& tag);
    void readOutsideItems(const TagEvent& tag, std::u16string_view name);
    void readSection(const TagEvent& section);
    void readInItem(const TagEvent& tag, std::u16string_view name);
    void readLink(const TagEvent& tag);
    void beginElement(const TagEvent& tag, std::u16string_view name);
    void endElement(const TagEvent& tag, std::u16string_view name);
    void endTextElement(const TagEvent& tag, const FeedTextElement& element);
    void readGuid(const TagEvent& tag);
    void addCategory(const TagEvent& tag);
    void addEnclosure(const TagEvent& tag);
    void startBody();
    void finishItem();

    FeedContext m_context;
    const FeedSettings& m_settings;
};

} // namespace FeedExtensions
} // namespace caddis
