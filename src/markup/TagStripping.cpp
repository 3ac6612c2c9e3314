#include "markup/TagStripping.h"

#include "markup/TagAttributes.h"
#include "markup/TagScanner.h"
#include "platform/base/MutableString.h"
#include "platform/base/UnitBuffer.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {
inline namespace XmlExtensions {

namespace {

struct StripTagsHandler {
    MutableString result;

    Scan operator()(const TagEvent& event)
    {
        if (event.text.length == 0)
            return Scan::Continue;
        if (result.isEmpty() || !whiteCharacterSetRep().contains(result[result.length() - 1]))
            result.append(u' ');
        result.append(event.units(event.text));
        return Scan::Continue;
    }
};

// A result that does not exist until something changes: a text without a match is handed back as it is.
struct LazyResult {
    std::optional<MutableString> text = std::nullopt;

    // All up to the event's tag is in the result.
    MutableString& upToTag(const TagEvent& event)
    {
        if (text)
            return text->append(event.units(event.text));
        text.emplace(event.string.length());
        return text->append(event.units({ 0, event.tag.location }));
    }
    // Text run and tag are kept.
    void keep(const TagEvent& event)
    {
        if (text)
            text->append(event.units(event.text)).append(event.units(event.tag));
    }
    String take(const String& unchanged) && { return text ? std::move(*text).take() : unchanged; }
};

struct StripTagHandler {
    UpperAscii name;
    LazyResult result {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs(name))
            result.upToTag(event);
        else
            result.keep(event);
        return Scan::Continue;
    }
};

struct StripTagAttributesHandler {
    UpperAscii name;
    LazyResult result {};

    Scan operator()(const TagEvent& event)
    {
        if (event.nameIs(name))
            rewrite(event, result.upToTag(event));
        else
            result.keep(event);
        return Scan::Continue;
    }

    void rewrite(const TagEvent& event, MutableString& text) const
    {
        if (event.isEndTag()) {
            appendName(text.append(u"</")).append(u'>');
            return;
        }
        const std::u16string_view tag = event.units(event.tag);
        std::u16string_view attribute = u" HREF=\"";
        auto link = rangeOfNamedValue(tag, "HREF", TagSyntax);
        if (!link) {
            attribute = u" SRC=\"";
            link = rangeOfNamedValue(tag, "SRC", TagSyntax);
        }
        if (!link && event.isSelfClosing())
            return;
        appendName(text.append(u'<'));
        if (link)
            text.append(attribute).append(unitsInRange(tag, *link)).append(u'"');
        text.append(event.isSelfClosing() ? u"/>" : u">");
    }

    MutableString& appendName(MutableString& text) const
    {
        for (std::size_t index = 0; index < name.length(); ++index)
            text.append(name[index]);
        return text;
    }
};

// Follows the element that an entry has begun until it is left.
struct ListedElement {
    TagEntries entries;
    std::u16string_view name {};
    std::size_t depth = 0;

    bool isBegunBy(const TagEvent& event) const
    {
        const auto begins = [tag = event.units(event.tag)](
                                std::u16string_view entry) { return hasPrefixNoCase(tag, entry); };
        return event.isStartTag() && event.name.isFound() && std::ranges::any_of(entries, begins);
    }

    // A script or style element is a single event that opens nothing.
    void enter(const TagEvent& event)
    {
        name = event.units(event.name);
        depth = event.isWholeElement() ? 0 : 1;
    }

    void follow(const TagEvent& event)
    {
        if (!event.name.isFound() || !isEqualNoCase(event.units(event.name), name))
            return;
        if (event.isStartTag())
            depth += event.isWholeElement() ? 0 : 1;
        else if (isTagClosed(event.units(event.tag)))
            --depth;
    }
};

struct StripTagBodiesHandler {
    ListedElement element;
    LazyResult result {};

    Scan operator()(const TagEvent& event)
    {
        if (element.depth) {
            element.follow(event);
        } else if (element.isBegunBy(event)) {
            result.upToTag(event);
            element.enter(event);
        } else {
            result.keep(event);
        }
        return Scan::Continue;
    }
};

struct StripTagBodiesExceptHandler {
    ListedElement element;
    MutableString result {};

    Scan operator()(const TagEvent& event)
    {
        if (element.depth) {
            result.append(event.units(event.text)).append(event.units(event.tag));
            element.follow(event);
        } else if (element.isBegunBy(event)) {
            result.append(event.units(event.tag));
            element.enter(event);
        } else {
            return Scan::Continue;
        }
        if (!element.depth)
            result.append(u'\n');
        return Scan::Continue;
    }
};

bool isForbiddenInXml(char16_t unit)
{
    return unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r';
}

} // namespace

String stripTags(const String& text)
{
    StripTagsHandler handler { MutableString(text.length()) };
    return parseXmlWithHandler(text, handler) ? std::move(handler.result).take() : text;
}

String stripTag(const String& text, UpperAscii name)
{
    StripTagHandler handler { name };
    return parseXmlWithHandler(text, handler) ? std::move(handler.result).take(text) : text;
}

String stripAttributesOfTag(const String& text, UpperAscii name)
{
    StripTagAttributesHandler handler { name };
    return parseXmlWithHandler(text, handler) ? std::move(handler.result).take(text) : text;
}

String stripTagBodies(const String& text, TagEntries entries)
{
    if (entries.empty())
        return text;
    StripTagBodiesHandler handler { { entries } };
    return parseXmlWithHandler(text, handler) ? std::move(handler.result).take(text) : text;
}

std::optional<String> stripTagBodiesExcept(const String& text, TagEntries entries)
{
    StripTagBodiesExceptHandler handler { { entries } };
    if (entries.empty() || !parseXmlWithHandler(text, handler))
        return std::nullopt;
    return std::move(handler.result).take();
}

String fixedXml(const String& text)
{
    UnitBuffer buffer;
    if (std::ranges::none_of(text, isForbiddenInXml) || !buffer.tryAllocate(text.length()))
        return text;
    std::ranges::replace_copy_if(text, buffer.data(), isForbiddenInXml, u' ');
    return String({ buffer.data(), text.length() });
}

} // namespace XmlExtensions
} // namespace caddis
