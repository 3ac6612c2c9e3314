#include "markup/WhiteSpace.h"

#include "text/CharacterTables.h"

#include <algorithm>
#include <bit>
#include <emmintrin.h>

namespace caddis {

namespace {

bool isWhite(char16_t unit) { return whiteCharacterSetRep().contains(unit); }

constexpr std::size_t Step = 8;
constexpr std::size_t LeastStep = 4;

// All bits of the lanes that may need work: below the space (read as signed, units from U+8000 on are, too),
// above ASCII, or refused.
__m128i specialLanes(__m128i units, char16_t refused)
{
    const __m128i outside = _mm_or_si128(
        _mm_cmplt_epi16(units, _mm_set1_epi16(' ')), _mm_cmpgt_epi16(units, _mm_set1_epi16(0x7F)));
    return _mm_or_si128(outside, _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(refused))));
}

__m128i blankLanes(__m128i units) { return _mm_cmpeq_epi16(units, _mm_set1_epi16(' ')); }

unsigned bitsOf(__m128i low, __m128i high)
{
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(low, high)));
}

// Copies units up to the first that may need work, a special one or a space behind another one, and returns
// their number; sixteen, eight or four at a time, and less than four are left alone. Lanes that are not
// filled look special, behind all that are.
std::size_t copyPlain(std::u16string_view text, char16_t* out, bool afterWhite, char16_t refused)
{
    std::size_t at = 0;
    unsigned blankBefore = afterWhite;
    while (at + LeastStep <= text.size()) {
        const std::size_t left = text.size() - at;
        const std::size_t units = left >= 2 * Step ? 2 * Step : left >= Step ? Step : LeastStep;
        const auto* source = reinterpret_cast<const __m128i*>(text.data() + at);
        const __m128i low = units == LeastStep ? _mm_loadl_epi64(source) : _mm_loadu_si128(source);
        const __m128i high = units == 2 * Step ? _mm_loadu_si128(source + 1) : _mm_setzero_si128();
        const unsigned blanks = bitsOf(blankLanes(low), blankLanes(high));
        const unsigned specials = bitsOf(specialLanes(low, refused), specialLanes(high, refused));
        const unsigned work = specials | (blanks & (blanks << 1 | blankBefore));
        const auto plain = static_cast<std::size_t>(std::countr_zero(work | 1U << (2 * Step)));
        if (plain < units) {
            std::copy_n(text.data() + at, plain, out + at);
            return at + plain;
        }
        auto* target = reinterpret_cast<__m128i*>(out + at);
        if (units == LeastStep)
            _mm_storel_epi64(target, low);
        else
            _mm_storeu_si128(target, low);
        if (units == 2 * Step)
            _mm_storeu_si128(target + 1, high);
        blankBefore = blanks >> (units - 1) & 1;
        at += units;
    }
    return at;
}

} // namespace

char16_t* copyCollapsed(std::u16string_view text, char16_t* out, Ampersands ampersands)
{
    const char16_t refused = ampersands == Ampersands::Refused ? u'&' : u'\0'; // NUL is white.
    bool afterWhite = false;
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t copied = copyPlain(text.substr(at), out, afterWhite, refused)) {
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
            continue;
        }
        // Letters above ASCII come in runs, and the last few units are not worth a vector.
        afterWhite = false;
        do {
            if (text[at] == refused)
                return nullptr;
            *out++ = text[at++];
        } while (at < text.size() && !isWhite(text[at]) && (text[at] > 0x7F || text.size() - at < LeastStep));
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
