#pragma once

#include "platform/base/Ascii.h"

#include <optional>
#include <string_view>

namespace caddis {

constexpr bool isBlank(char16_t unit)
{
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == 0xA0 || unit == 0x3000;
}

/// Walks a text from left to right. A reading step that fails moves nothing.
class DateCursor {
public:
    explicit DateCursor(std::u16string_view text)
        : m_at(text.data())
        , m_end(text.data() + text.size())
    {
    }

    bool atEnd() const { return m_at == m_end; }
    std::u16string_view rest() const { return { m_at, m_end }; }
    /// The unit `ahead` of the present one, U+0000 behind the end.
    char16_t peek(std::size_t ahead = 0) const
    {
        return ahead < static_cast<std::size_t>(m_end - m_at) ? m_at[ahead] : u'\0';
    }
    /// Moves on by units that were seen before.
    void skip(std::size_t count) { m_at += count; }
    bool eat(char16_t unit)
    {
        if (atEnd() || *m_at != unit)
            return false;
        ++m_at;
        return true;
    }
    void skipBlanks()
    {
        while (!atEnd() && isBlank(*m_at))
            ++m_at;
    }
    /// The longest run of units for which `wanted` holds; may be empty.
    template <typename Wanted> std::u16string_view run(Wanted wanted)
    {
        const char16_t* start = m_at;
        while (!atEnd() && wanted(*m_at))
            ++m_at;
        return { start, m_at };
    }
    /// The number that the next digits give: at least `least` of them, at most `most` (9 at the highest).
    std::optional<int> number(int least, int most)
    {
        int value = 0;
        int digits = 0;
        const char16_t* at = m_at;
        for (; digits < most && at != m_end && isAsciiDigit(*at); ++at, ++digits)
            value = value * 10 + (*at - u'0');
        if (digits < least)
            return std::nullopt;
        m_at = at;
        return value;
    }

private:
    const char16_t* m_at;
    const char16_t* m_end;
};

} // namespace caddis
