// Cuts the markup into tags and texts. How they make a tree stands in PageTree.cpp.

#include "html/PageParser.h"

#include "html/CSSTokenizer.h"
#include "markup/Entities.h"
#include "platform/base/MutableString.h"
#include "platform/base/UnitSearch.h"
#include "text/StringUtilities.h"

#include <algorithm>

namespace caddis::html {

namespace {

constexpr bool isLetter(char16_t unit)
{
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return lower >= u'a' && lower <= u'z';
}

constexpr bool isUpper(char16_t unit) { return unit >= u'A' && unit <= u'Z'; }

constexpr bool endsName(char16_t unit) { return css::isSpace(unit) || unit == u'/' || unit == u'>'; }

// The text with line ends and NULs as a page has them: "\n", and U+FFFD.
String normalized(const String& markup)
{
    const std::u16string_view text = markup;
    if (text.find(u'\r') == text.npos && text.find(u'\0') == text.npos)
        return markup;
    MutableString result(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == u'\0')
            result.append(u'\xFFFD');
        else if (text[index] != u'\r')
            result.append(text[index]);
        else if (index + 1 == text.size() || text[index + 1] != u'\n')
            result.append(u'\n');
    }
    return std::move(result).take();
}

} // namespace

PageParser::PageParser(const String& markup)
    : m_page(normalized(markup))
    , m_text(m_page.source())
{
    constexpr std::size_t UnitsPerNode = 24;
    m_page.m_nodes.reserve(m_text.size() / UnitsPerNode + 4);
    m_isXML = css::trimmed(m_text.substr(0, 64)).starts_with(u"<?xml");
    append({ .tag = Tag::Html, .text = nameOf(Tag::Html) });
    m_open.push(0, static_cast<Name>(Tag::Html), 0);
}

Page PageParser::parse() &&
{
    for (std::size_t at = 0; at < m_text.size();) {
        const std::size_t tag = indexOfUnit<u'<'>(m_text, at);
        if (tag > at)
            text(m_text.substr(at, tag - at));
        at = tag < m_text.size() ? parseMarkup(tag) : tag;
    }
    return std::move(m_page);
}

// What begins with '<', which is a mere character unless it looks like the beginning of markup.
std::size_t PageParser::parseMarkup(std::size_t at)
{
    const char16_t next = at + 1 < m_text.size() ? m_text[at + 1] : u'\0';
    if (isLetter(next))
        return parseStartTag(at);
    if (next == u'/' && at + 2 < m_text.size())
        return parseEndTag(at);
    if (next == u'!' || next == u'?')
        return parseDeclaration(at);
    text(m_text.substr(at, 1));
    return at + 1;
}

// Comments, document types, processing instructions, and CDATA, which is text where the page is XML.
std::size_t PageParser::parseDeclaration(std::size_t at)
{
    constexpr std::u16string_view Section = u"<![CDATA[";
    const auto behind = [&](std::u16string_view mark, std::size_t from) {
        const std::size_t end = m_text.find(mark, from);
        return end == m_text.npos ? m_text.size() : end + mark.size();
    };
    const std::u16string_view rest = m_text.substr(at);
    if (rest.starts_with(u"<!-->") || rest.starts_with(u"<!--->"))
        return behind(u">", at);
    if (rest.starts_with(u"<!--"))
        return behind(u"-->", at + 4);
    const bool isInXML = m_isXML || m_open.innermost(Tag::Svg) || m_open.innermost(Tag::Math);
    if (!isInXML || !rest.starts_with(Section))
        return behind(u">", at);
    const std::size_t end = behind(u"]]>", at);
    const std::size_t begin = at + Section.size();
    const bool isEnded = m_text.substr(begin, end - begin).ends_with(u"]]>");
    m_dropsNewline = false;
    if (end > begin && m_body != NoNode)
        append({ .text = m_text.substr(begin, end - begin - (isEnded ? 3 : 0)) });
    return end;
}

std::size_t PageParser::parseEndTag(std::size_t at)
{
    const std::size_t begin = at + 2;
    std::size_t end = begin;
    while (end < m_text.size() && !endsName(m_text[end]))
        ++end;
    const std::size_t closing = indexOfUnit<u'>'>(m_text, end);
    if (isLetter(m_text[begin])) {
        const std::u16string_view name = lowerCase(m_text.substr(begin, end - begin));
        const Tag tag = tagNamed(name);
        endTag(tag, nameNumber(tag, name));
    }
    return std::min(closing + 1, m_text.size());
}

std::size_t PageParser::parseStartTag(std::size_t at)
{
    std::size_t end = at + 1;
    while (end < m_text.size() && !endsName(m_text[end]))
        ++end;
    StartTag tag { Tag::Other, 0, lowerCase(m_text.substr(at + 1, end - at - 1)) };
    tag.tag = tagNamed(tag.text);
    tag.name = nameNumber(tag.tag, tag.text);
    end = parseAttributes(end, tag);
    startTag(tag);
    return parseRawContent(end, tag);
}

// Gives the place behind the tag.
std::size_t PageParser::parseAttributes(std::size_t at, StartTag& tag)
{
    tag.attributes = static_cast<std::uint32_t>(m_page.m_attributes.size());
    while (at < m_text.size() && m_text[at] != u'>') {
        const bool isSlash = m_text[at] == u'/';
        if (isSlash || css::isSpace(m_text[at]))
            ++at;
        else
            at = parseAttribute(at);
        tag.isSelfClosing = isSlash;
    }
    tag.attributeCount = static_cast<std::uint32_t>(m_page.m_attributes.size()) - tag.attributes;
    return std::min(at + 1, m_text.size());
}

std::size_t PageParser::parseAttribute(std::size_t at)
{
    const auto skipSpace = [&] {
        while (at < m_text.size() && css::isSpace(m_text[at]))
            ++at;
    };
    const std::size_t nameBegin = at++;
    while (at < m_text.size() && !endsName(m_text[at]) && m_text[at] != u'=')
        ++at;
    const std::u16string_view name = lowerCase(m_text.substr(nameBegin, at - nameBegin));
    skipSpace();
    std::u16string_view value;
    if (at < m_text.size() && m_text[at] == u'=') {
        ++at;
        skipSpace();
        const char16_t quote = at < m_text.size() ? m_text[at] : u'\0';
        const bool isQuoted = quote == u'"' || quote == u'\'';
        const std::size_t begin = at + (isQuoted ? 1 : 0);
        at = begin;
        if (isQuoted)
            at = std::min(m_text.find(quote, at), m_text.size());
        else
            while (at < m_text.size() && !css::isSpace(m_text[at]) && m_text[at] != u'>')
                ++at;
        value = m_text.substr(begin, at - begin);
        at = std::min(at + (isQuoted ? 1 : 0), m_text.size());
    }
    m_page.m_attributes.push_back({ name, withReferences(value) });
    return at;
}

std::size_t PageParser::parseRawContent(std::size_t at, const StartTag& tag)
{
    const std::uint8_t traits = traitsOf(tag.tag);
    m_dropsNewline = tag.tag == Tag::Pre || tag.tag == Tag::Textarea;
    if (!(traits & (IsRaw | IsEscapableRaw)) || (m_isXML && tag.isSelfClosing))
        return at;
    const std::size_t end = endOfRaw(at, tag);
    if (end == m_text.npos)
        return at;
    const std::u16string_view content = m_text.substr(at, end - at);
    if (!content.empty())
        append({ .text = traits & IsRaw ? content : withReferences(content) });
    return end;
}

// npos where the end tag is missing and the content therefore like any other; but scripts and sheets, which
// nobody is to read, then go on to the end.
std::size_t PageParser::endOfRaw(std::size_t at, const StartTag& tag)
{
    bool& isUnended = m_isUnended[static_cast<std::size_t>(tag.tag)];
    for (std::size_t end = at; !isUnended; ++end) {
        end = m_text.find(u"</", end);
        if (end == m_text.npos)
            break;
        const std::u16string_view behind = m_text.substr(end + 2);
        if (hasPrefixNoCase(behind, tag.text)
            && (behind.size() == tag.text.size() || endsName(behind[tag.text.size()])))
            return end;
    }
    isUnended = true;
    return tag.tag == Tag::Script || tag.tag == Tag::Style ? m_text.size() : m_text.npos;
}

char16_t* PageParser::allocate(std::size_t units)
{
    return static_cast<char16_t*>(m_page.m_memory->allocate(units * sizeof(char16_t), alignof(char16_t)));
}

std::u16string_view PageParser::lowerCase(std::u16string_view name)
{
    if (std::ranges::none_of(name, isUpper))
        return name;
    char16_t* const units = allocate(name.size());
    std::ranges::transform(
        name, units, [](char16_t unit) { return isUpper(unit) ? static_cast<char16_t>(unit | 0x20) : unit; });
    return { units, name.size() };
}

std::u16string_view PageParser::withReferences(std::u16string_view text)
{
    if (indexOfUnit<u'&'>(text, 0) == text.size())
        return text;
    char16_t* const units = allocate(text.size());
    return { units, convertEntities2Characters(text, units) };
}

PageParser::Name PageParser::nameNumber(Tag tag, std::u16string_view name)
{
    if (tag != Tag::Other)
        return static_cast<Name>(tag);
    const auto number = static_cast<Name>(static_cast<std::size_t>(Tag::Count) + m_otherNames.size());
    return m_otherNames.try_emplace(name, number).first->second;
}

Page parsePage(const String& markup) { return PageParser(markup).parse(); }

} // namespace caddis::html
