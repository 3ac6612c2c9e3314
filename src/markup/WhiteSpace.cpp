#include "markup/WhiteSpace.h"

#include "text/CharacterTables.h"

#include <algorithm>
#include <bit>
#include <emmintrin.h>

namespace caddis {

namespace {

constexpr std::size_t Step = 16;

bool isWhite(char16_t unit) { return whiteCharacterSetRep().contains(unit); }

// Copies units up to the first that may need work, 16 at a time, and returns their number: a unit below the
// space or above ASCII, or a space behind another one. Less than 16 units are left alone.
std::size_t copyPlain(std::u16string_view text, char16_t* out, bool afterWhite)
{
    std::size_t at = 0;
    for (unsigned spaceBefore = afterWhite; at + Step <= text.size(); at += Step) {
        const auto* source = reinterpret_cast<const __m128i*>(text.data() + at);
        const __m128i low = _mm_loadu_si128(source);
        const __m128i high = _mm_loadu_si128(source + 1);
        // Read as signed, units from U+8000 on are below the space.
        const auto special = [](__m128i units) {
            return _mm_or_si128(
                _mm_cmplt_epi16(units, _mm_set1_epi16(' ')), _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F)));
        };
        const auto blank = [](__m128i units) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(' ')); };
        const auto specials
            = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(special(low), special(high))));
        const auto blanks
            = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(blank(low), blank(high))));
        const unsigned work = specials | (blanks & (blanks << 1 | spaceBefore));
        auto* target = reinterpret_cast<__m128i*>(out + at);
        if (work) {
            const auto plain = static_cast<std::size_t>(std::countr_zero(work));
            std::copy_n(text.data() + at, plain, out + at);
            return at + plain;
        }
        _mm_storeu_si128(target, low);
        _mm_storeu_si128(target + 1, high);
        spaceBefore = blanks >> (Step - 1);
    }
    return at;
}

} // namespace

char16_t* copyCollapsed(std::u16string_view text, char16_t* out)
{
    bool afterWhite = false;
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t copied = copyPlain(text.substr(at), out, afterWhite)) {
            at += copied;
            out += copied;
            afterWhite = out[-1] == u' ';
            if (at == text.size())
                break;
        }
        if (isWhite(text[at])) {
            if (!afterWhite)
                *out++ = u' ';
            while (at < text.size() && isWhite(text[at]))
                ++at;
            afterWhite = true;
        } else {
            // What is above ASCII seldom comes alone.
            for (const std::size_t stop = std::min(text.size(), at + Step); at < stop && !isWhite(text[at]);
                 ++at)
                *out++ = text[at];
            afterWhite = false;
        }
    }
    return out;
}

bool isLineBreak(char16_t unit)
{
    return unit == 0x3 || unit == u'\n' || unit == u'\f' || unit == u'\r' || unit == 0x2028 || unit == 0x2029
        || unit == 0xFEFF || unit == 0xFFFC;
}

char16_t* copyReformatted(std::u16string_view text, char16_t* out)
{
    const CharacterSetRep& blanks = spaceCharacterSetRep();
    const auto keepsItsLine = [&](char16_t first) {
        return blanks.contains(first) || first == u'-' || first == u'/' || first == u'>' || first == u'}';
    };
    for (std::size_t at = 0; at < text.size();) {
        const char16_t unit = text[at++];
        if (isLineBreak(unit)) {
            at += unit == u'\r' && at < text.size() && text[at] == u'\n';
            const std::size_t next = at;
            while (at < text.size() && isLineBreak(text[at]))
                ++at;
            if (at > next)
                *out++ = u'\n';
            *out++ = at > next || (at < text.size() && keepsItsLine(text[at])) ? u'\n' : u' ';
        } else if (blanks.contains(unit)) {
            while (at < text.size() && blanks.contains(text[at]))
                ++at;
            *out++ = u' ';
        } else if (!isWhite(unit)) {
            *out++ = unit;
        }
    }
    return out;
}

} // namespace caddis
