#pragma once

#include "markup/TagScanner.h"

#include <algorithm>
#include <vector>

/// The scanner as its rules are written: unit by unit, nothing skipped, nothing remembered. Slow (quadratic
/// in the worst case) and plain; the fast one must make the same calls.
namespace caddis::reference {

struct Call {
    Range name, tag, text;
    TagKind kind;

    friend bool operator==(const Call&, const Call&) = default;
};

class Scanner {
public:
    explicit Scanner(std::u16string_view units)
        : m_units(units)
    {
    }

    std::vector<Call> scan()
    {
        for (std::size_t i = 0; i < m_units.size(); ++i)
            i = step(i);
        if (m_kind == TagKind::Comment || m_kind == TagKind::Section) {
            m_calls.push_back({ {}, { m_tag, m_units.size() - m_tag }, { m_text, m_tag - m_text }, m_kind });
            m_text = m_units.size();
        }
        if (!m_units.empty())
            m_calls.push_back(
                { {}, { m_units.size(), 0 }, { m_text, m_units.size() - m_text }, TagKind::Text });
        return m_calls;
    }

private:
    // Handles unit i; returns the last unit that was handled with it.
    std::size_t step(std::size_t i)
    {
        switch (m_units[i]) {
        case u'"':
            quote(m_inDouble);
            break;
        case u'\'':
            quote(m_inSingle);
            break;
        case u'=':
            if (m_kind == TagKind::Element && !m_inDouble && !m_inSingle)
                m_afterEquals = true;
            break;
        case u'<':
            return m_kind == TagKind::Text ? open(i) : i;
        case u'>':
            return m_kind != TagKind::Text && !m_inDouble && !m_inSingle ? close(i) : i;
        default:
            break;
        }
        return i;
    }

    void quote(bool& inside)
    {
        if (m_kind != TagKind::Element)
            return;
        inside = m_afterEquals;
        m_afterEquals = false;
    }

    std::size_t open(std::size_t i)
    {
        m_kind = TagKind::Element;
        m_tag = i;
        if (i + 2 >= m_units.size() || m_units[i + 1] != u'!')
            return i;
        if (m_units[i + 2] == u'[') {
            m_kind = TagKind::Section;
            return i + 3;
        }
        if (m_units[i + 2] == u'-') {
            m_kind = TagKind::Comment;
            m_singleDash = i + 3 >= m_units.size() || m_units[i + 3] != u'-';
            return i + 3;
        }
        return i;
    }

    bool endsWith(std::size_t i, std::u16string_view suffix) const
    {
        return m_units.substr(0, i).ends_with(suffix);
    }

    std::size_t close(std::size_t i)
    {
        Range name;
        if (m_kind == TagKind::Section) {
            if (!endsWith(i, u"]") && !endsWith(i, u"]--"))
                return i;
        } else if (m_kind == TagKind::Comment) {
            if (!(endsWith(i, u"-") && (m_singleDash || endsWith(i, u"--")))
                && !(endsWith(i, u"--!") && !m_singleDash))
                return i;
        } else {
            name = nameOf(i);
            i = endOfRawText(i, name);
        }
        m_calls.push_back({ name, { m_tag, i - m_tag + 1 }, { m_text, m_tag - m_text }, m_kind });
        m_inDouble = m_inSingle = m_afterEquals = false;
        m_text = i + 1;
        m_kind = TagKind::Text;
        return i;
    }

    Range nameOf(std::size_t end) const
    {
        std::size_t start = m_tag;
        while (start < end && !alphaCharacterSetRep().contains(m_units[start]))
            ++start;
        if (start == end)
            return {};
        std::size_t stop = start;
        while (
            !whiteCharacterSetRep().contains(m_units[stop]) && m_units[stop] != u'/' && m_units[stop] != u'>')
            ++stop;
        return { start, stop - start };
    }

    std::size_t find(std::u16string_view wanted, std::size_t from, std::size_t limit) const
    {
        const auto same = [](char16_t unit, char16_t upper) { return toUpper(unit) == upper; };
        for (std::size_t at = from; at + wanted.size() <= limit; ++at) {
            if (std::equal(wanted.begin(), wanted.end(), m_units.begin() + static_cast<std::ptrdiff_t>(at),
                    [&](char16_t upper, char16_t unit) { return same(unit, upper); }))
                return at;
        }
        return NotFound;
    }

    std::size_t endOfRawText(std::size_t end, Range name) const
    {
        const bool script = name.length == 6 && find(u"SCRIPT", name.location, name.end()) != NotFound;
        const bool style = name.length == 5 && find(u"STYLE", name.location, name.end()) != NotFound;
        if (!(script || style) || m_units[m_tag + 1] == u'/' || m_units[end - 1] == u'/')
            return end;
        const std::u16string_view closing = script ? u"</SCRIPT" : u"</STYLE";
        std::size_t at = find(closing, m_tag + 1, m_units.size());
        if (at == NotFound)
            return end;
        if (const std::size_t comment = find(u"<!-", m_tag, at); comment != NotFound) {
            const std::size_t commentEnd = find(u"-->", comment + 3, m_units.size());
            if (commentEnd != NotFound) {
                const std::size_t later = find(closing, commentEnd + 3, m_units.size());
                at = later != NotFound ? later : at;
            }
        }
        at += closing.size();
        while (at < m_units.size() && m_units[at] != u'>')
            ++at;
        return std::min(at, m_units.size() - 1);
    }

    std::u16string_view m_units;
    std::vector<Call> m_calls;
    TagKind m_kind = TagKind::Text;
    bool m_inDouble = false, m_inSingle = false, m_afterEquals = false, m_singleDash = false;
    std::size_t m_tag = 0, m_text = 0;
};

/// The calls of the fast scanner.
inline std::vector<Call> fastCalls(const String& string, Characters access = Characters::ReadOnly)
{
    std::vector<Call> calls;
    GetTagsOfString(
        string,
        [&](const TagEvent& event) {
            calls.push_back({ event.name, event.tag, event.text, event.kind });
            return Scan::Continue;
        },
        access);
    return calls;
}

} // namespace caddis::reference
