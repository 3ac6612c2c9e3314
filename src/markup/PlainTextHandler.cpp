#include "markup/PlainTextHandler.h"

#include "markup/HiddenStyle.h"
#include "markup/TagAttributes.h"
#include "markup/WhiteSpace.h"
#include "text/FastComparison.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis {

namespace {

// Nested elements of the same name lie inside the hidden one until it is closed.
void follow(std::uint64_t& hidden, const TagEvent& event)
{
    if (hidden) {
        hidden += event.isStartTag();
        hidden -= event.isEndTag();
    } else if (event.isStartTag()) {
        hidden = isHiddenTag(event.units(event.tag));
    }
}

// A flag of being inside an element.
void follow(bool& inside, const TagEvent& event)
{
    inside = event.isStartTag() || (inside && !event.isEndTag());
}

void changeDepth(std::int64_t& depth, const TagEvent& event, std::int64_t inElement)
{
    if (event.isStartTag())
        depth += inElement;
    else if (event.isEndTag() && !event.isSelfClosing())
        depth -= inElement;
}

} // namespace

Scan PlainTextHandler::operator()(const TagEvent& event)
{
    const HtmlTagRow& row = htmlTag({ event.characters, event.string.length() }, event.name);
    if (context.bodyDepth >= 1) {
        context.produced = true;
        if (event.text.length)
            handleText(event);
        handleBreak(row);
        if (row.tag != HtmlTag::Other)
            handleState(event, row.tag);
    }
    if (row.tag != HtmlTag::Other)
        handleDepth(event, row.tag);
    else if (event.kind == TagKind::Comment && context.options.googleTags)
        handleComment(event);
    return Scan::Continue;
}

bool PlainTextHandler::mayWrite(const TagEvent& event) const
{
    const PlainTextContext& c = context;
    if (c.hiddenDiv || c.hiddenSpan || c.inOption || c.inNoframes || c.inNoscript || c.inMarquee
        || c.inTextarea)
        return false;
    if (c.options.removeJunk
        && (c.hiddenFont || (event.name.length == 5 && hasPrefixNoCase(event.units(event.name), u"titl"))))
        return false;
    return !c.options.googleTags || ((c.indexFlags & PlainTextContext::Index) && !c.feedDateFont);
}

void PlainTextHandler::handleText(const TagEvent& event)
{
    const std::u16string_view run = event.units(event.text);
    if (mayWrite(event))
        appendRangeToPlainText(context, run);
    else if (context.hiddenFont && context.options.removeJunk && !context.didRemoveJunk)
        lookForJunk(run);
}

// Text in its background's colour is junk when it is long enough and made of words.
void PlainTextHandler::lookForJunk(std::u16string_view run)
{
    constexpr std::size_t Least = 100;
    constexpr std::size_t LeastSeparators = 5;
    constexpr std::size_t LeastWordLength = 6;
    if (run.size() < Least)
        return;
    run = trimmingWhiteSpaces(convertedEntities(context, run));
    std::size_t characters = 0;
    std::size_t separators = 0;
    bool inSeparator = false;
    for (const char16_t unit : run) {
        const bool separates = !alphaNumCharacterSetRep().contains(unit);
        characters += !separates;
        separators += separates && !inSeparator;
        inSeparator = separates;
    }
    if (run.size() >= Least && characters >= Least && separators >= LeastSeparators
        && characters / separators >= LeastWordLength)
        context.didRemoveJunk = true;
}

void PlainTextHandler::handleComment(const TagEvent& event)
{
    constexpr std::size_t Shortest = 19; // <!--googleon:all-->
    if (event.tag.length < Shortest)
        return;
    const std::u16string_view comment = event.units(event.tag);
    const auto contains
        = [&](std::string_view text) { return positionOfCharacters(text, comment, false) != nullptr; };
    const bool on = contains("googleon:");
    const bool off = contains("googleoff:");
    if (!on && !off)
        return;
    const auto flag = [&](std::string_view text, std::uint64_t bits) { return contains(text) ? bits : 0; };
    const std::uint64_t flags = flag("all", PlainTextContext::AllFlags)
        | flag("index", PlainTextContext::Index) | flag("snippet", PlainTextContext::Snippet)
        | flag("anchor", PlainTextContext::Anchor);
    if (on)
        context.indexFlags |= flags;
    if (off)
        context.indexFlags &= ~flags;
}

void PlainTextHandler::writeBreak(unsigned lineFeeds)
{
    context.cursor = std::fill_n(context.cursor, lineFeeds, u'\n');
    context.paragraphStart = context.cursor;
    context.textSinceBreak = context.pendingSpace = false;
}

// Where nothing was written since the last break another one would only pile up.
void PlainTextHandler::handleBreak(const HtmlTagRow& row)
{
    const auto endsInBreak = [&](std::ptrdiff_t behind) {
        return context.cursor - context.start > behind && isLineBreak(context.cursor[-1 - behind]);
    };
    switch (row.written) {
    case TagBreak::None:
        break;
    case TagBreak::Paragraph:
        if (context.textSinceBreak || (row.tag == HtmlTag::Table && endsInBreak(0) && !endsInBreak(1)))
            writeBreak(context.textSinceBreak ? 2 : 1);
        break;
    case TagBreak::Line:
        if (context.textSinceBreak
            || (row.tag == HtmlTag::TableRow && context.cursor != context.start && !endsInBreak(0)))
            writeBreak(1);
        break;
    case TagBreak::Space:
        if (!context.textSinceBreak)
            break;
        [[fallthrough]];
    case TagBreak::Cell:
        if (context.cursor != context.start && !context.endsInWhite())
            context.write(u' ');
        break;
    }
}

void PlainTextHandler::handleState(const TagEvent& event, HtmlTag tag)
{
    switch (tag) {
    case HtmlTag::Anchor:
        context.pendingSpace = true;
        [[fallthrough]];
    case HtmlTag::Heading:
        changeDepth(context.linkDepth, event, 1);
        context.linkDepth = std::max<std::int64_t>(context.linkDepth, 0);
        break;
    case HtmlTag::Pre:
    case HtmlTag::Plaintext:
        if (event.isStartTag() && (context.textSinceBreak || context.pendingSpace))
            writeBreak(2);
        [[fallthrough]];
    case HtmlTag::Code:
        context.flowing = !event.isStartTag();
        break;
    case HtmlTag::Marquee:
        return follow(context.inMarquee, event);
    case HtmlTag::Textarea:
        return follow(context.inTextarea, event);
    case HtmlTag::Noframes:
    case HtmlTag::Iframe:
        return follow(context.inNoframes, event);
    case HtmlTag::Noscript:
        return follow(context.inNoscript, event);
    case HtmlTag::Option:
        context.inOption = context.inOption || event.isStartTag();
        break;
    case HtmlTag::Select:
        context.inOption = false;
        break;
    case HtmlTag::Font:
        return handleFont(event);
    case HtmlTag::Span:
        return follow(context.hiddenSpan, event);
    case HtmlTag::Div:
        return follow(context.hiddenDiv, event);
    case HtmlTag::Image:
        return handleImage(event);
    default:
        break;
    }
}

void PlainTextHandler::handleFont(const TagEvent& event)
{
    const std::u16string_view tag = event.units(event.tag);
    const auto value = [&](UpperAscii name) {
        const auto range = rangeOfNamedValue(tag, name, TagSyntax);
        return range ? unitsInRange(tag, *range) : std::u16string_view();
    };
    if (event.isSelfClosing())
        return;
    const std::u16string_view color = event.isStartTag() ? value("COLOR") : std::u16string_view();
    context.hiddenFont = event.isStartTag()
        && ((!color.empty() && isEqualNoCase(color, context.bodyBackground)) || isTinyFont(tag));
    context.feedDateFont = event.isStartTag() && value("CLASS") == u"feed_date";
}

void PlainTextHandler::handleImage(const TagEvent& event)
{
    if (!context.options.imageAlts || !mayWrite(event))
        return;
    const std::u16string_view tag = event.units(event.tag);
    auto text = rangeOfNamedValue(tag, "ALT", TagSyntax);
    if (!text)
        text = rangeOfNamedValue(tag, "TITLE", TagSyntax);
    if (!text)
        return;
    context.pendingSpace = true;
    appendRangeToPlainText(context, unitsInRange(tag, *text));
    context.pendingSpace = true;
}

void PlainTextHandler::handleDepth(const TagEvent& event, HtmlTag tag)
{
    switch (tag) {
    case HtmlTag::Body:
        handleBody(event);
        [[fallthrough]];
    case HtmlTag::Noframes:
    case HtmlTag::Noscript:
        return changeDepth(context.bodyDepth, event, 1);
    case HtmlTag::Head:
        return changeDepth(context.bodyDepth, event, -1);
    default:
        break;
    }
}

void PlainTextHandler::handleBody(const TagEvent& event)
{
    const std::u16string_view tag = event.units(event.tag);
    const auto background = rangeOfNamedValue(tag, "BGCOLOR", TagSyntax);
    context.bodyBackground = background ? unitsInRange(tag, *background) : std::u16string_view();
    context.hiddenFont = false;
    context.hiddenDiv = context.hiddenSpan = 0;
}

Scan SimplePlainTextHandler::operator()(const TagEvent& event)
{
    if (context.bodyDepth >= 1 && event.text.length) {
        const std::u16string_view run = convertedEntities(context, event.units(event.text));
        context.write(u' ');
        context.cursor = std::copy(run.begin(), run.end(), context.cursor);
        context.produced = true;
    }
    if (event.nameIs("BODY") || event.nameIs("NOFRAMES"))
        changeDepth(context.bodyDepth, event, 1);
    else if (event.nameIs("HEAD"))
        changeDepth(context.bodyDepth, event, -1);
    return Scan::Continue;
}

} // namespace caddis
