#include "markup/RawText.h"

namespace caddis {

bool RawText::isRaw(std::u16string_view name)
{
    return UpperAscii("SCRIPT").equalsNoCase(name) || UpperAscii("STYLE").equalsNoCase(name);
}

std::size_t RawText::endOfElement(std::size_t tag, std::u16string_view name)
{
    Element& element = name.size() == m_script.name.length() ? m_script : m_style;
    std::size_t closing = closingTag(element.closing, tag + 1, element.name);
    if (closing == NotFound)
        return NotFound;
    // A closing tag inside a comment does not count when there is another behind the comment.
    if (const std::size_t comment = commentStart(tag, closing); comment != NotFound) {
        const std::size_t behind = commentEnd(comment + 3);
        if (behind != NotFound) {
            const std::size_t later = closingTag(element.closingBehindComment, behind, element.name);
            closing = later != NotFound ? later : closing;
        }
    }
    const std::size_t behindName = closing + 2 + element.name.length();
    const std::size_t bracket
        = m_text.find(&UnitMasks::greater, behindName, [](std::size_t) { return true; });
    return bracket != NotFound ? bracket : m_text.length() - 1;
}

std::size_t RawText::closingTag(Remembered& last, std::size_t from, UpperAscii name)
{
    if (last.found >= from)
        return last.found;
    const std::u16string_view text(m_text.units(), m_text.length());
    last.found = m_text.find(&UnitMasks::less, from, [&](std::size_t at) {
        return at + 1 < text.size() && text[at + 1] == u'/' && name.isPrefixNoCaseOf(text.substr(at + 2));
    });
    return last.found;
}

std::size_t RawText::commentStart(std::size_t from, std::size_t end)
{
    const std::size_t found = m_text.find(&UnitMasks::less, from, [&](std::size_t at) {
        return at >= end || (m_text.units()[at + 1] == u'!' && m_text.units()[at + 2] == u'-');
    });
    return found < end ? found : NotFound;
}

// Behind the first "-->" at or behind `from`.
std::size_t RawText::commentEnd(std::size_t from)
{
    if (m_commentEnd.found < from + 3) {
        m_commentEnd.found = m_text.find(&UnitMasks::greater, from + 2,
            [&](std::size_t at) { return m_text.units()[at - 1] == u'-' && m_text.units()[at - 2] == u'-'; });
        m_commentEnd.found += m_commentEnd.found != NotFound;
    }
    return m_commentEnd.found;
}

} // namespace caddis
