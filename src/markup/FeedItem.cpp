#include "markup/FeedItem.h"

#include "markup/TagStripping.h"
#include "text/FastComparison.h"
#include "text/StringUtilities.h"

namespace caddis {
inline namespace FeedExtensions {

bool isEmptyFeedItem(const Dictionary& item)
{
    const auto part = [&](std::u16string_view key) { return item.stringForKey(key).value_or(String()); };
    if (!part(u"icon").isEmpty())
        return false;
    const String title = part(u"title");
    const String content = part(u"content");
    const String text = content.isEmpty() ? part(u"description") : content;
    return isWhiteString(text) || isEqualNoCase(title, text)
        || equalStringsNoCaseUsingCharacterSetRep(title, text, alphaCharacterSetRep())
        || isEqualNoCase(stripTag(text, "IFRAME"), title);
}

} // namespace FeedExtensions
} // namespace caddis
