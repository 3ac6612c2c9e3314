#include "platform/base/Utf.h"

#include "platform/base/Range.h"

#include <algorithm>
#include <bit>
#include <emmintrin.h>

namespace caddis {

namespace {

constexpr char16_t Replacement = 0xFFFD;
constexpr std::size_t BlockBytes = 16;
constexpr std::size_t BlockUnits = 8;

unsigned byteAt(std::string_view bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

// Copies the ASCII run at `bytes[from…]` and returns the index behind it. A whole block is stored and then
// only what was ASCII is kept, so that the length of a short run costs no branch: there is room for a unit
// for each byte that is still to come.
std::size_t widenAscii(std::string_view bytes, std::size_t from, char16_t*& units)
{
    const __m128i zero = _mm_setzero_si128();
    while (bytes.size() - from >= BlockBytes) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + from));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(block, zero));
        const auto others = static_cast<unsigned>(_mm_movemask_epi8(block));
        if (others != 0) {
            const auto ascii = static_cast<unsigned>(std::countr_zero(others));
            units += ascii;
            return from + ascii;
        }
        units += BlockBytes;
        from += BlockBytes;
    }
    while (from < bytes.size() && byteAt(bytes, from) < 0x80)
        *units++ = static_cast<char16_t>(byteAt(bytes, from++));
    return from;
}

// One multi-byte sequence: the code point, or nothing and the length of the maximal ill-formed part.
struct Decoded {
    char32_t codePoint;
    std::size_t length;
    bool wellFormed;
};

// The lead byte fixes the sequence's length and the range of its second byte, which is what excludes
// overlong forms, surrogates and values above U+10FFFF.
Decoded decodeSequence(std::string_view bytes)
{
    const auto at = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
    const unsigned lead = at(0);
    if (lead < 0xC2 || lead > 0xF4)
        return { 0, 1, false };
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t codePoint = lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        if (index >= bytes.size() || at(index) < low || at(index) > high)
            return { 0, index, false };
        codePoint = codePoint << 6 | (at(index) & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    return { codePoint, length, true };
}

void writeCodePoint(char32_t codePoint, char16_t*& units)
{
    if (codePoint < 0x10000) {
        *units++ = static_cast<char16_t>(codePoint);
        return;
    }
    *units++ = static_cast<char16_t>(0xD7C0 + (codePoint >> 10));
    *units++ = static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
}

// The two common forms without the care for their borders; false for any other sequence.
bool readCommonSequence(std::string_view bytes, std::size_t& index, char16_t*& units)
{
    const unsigned lead = byteAt(bytes, index);
    if (lead >= 0xF0 || bytes.size() - index < 3)
        return false;
    const unsigned second = byteAt(bytes, index + 1) ^ 0x80U; // below 0x40 in a continuation byte
    if (lead >= 0xC2 && lead < 0xE0 && second < 0x40) {
        *units++ = static_cast<char16_t>((lead & 0x1F) << 6 | second);
        index += 2;
        return true;
    }
    const unsigned third = byteAt(bytes, index + 2) ^ 0x80U;
    if (lead > 0xE0 && lead != 0xED && second < 0x40 && third < 0x40) {
        *units++ = static_cast<char16_t>((lead & 0x0F) << 12 | second << 6 | third);
        index += 3;
        return true;
    }
    return false;
}

// Decodes until the end, or until `onIllFormed` says no.
template <typename OnIllFormed>
std::optional<std::size_t> decode(std::string_view bytes, char16_t* const begin, OnIllFormed onIllFormed)
{
    char16_t* units = begin;
    std::size_t index = 0;
    while ((index = widenAscii(bytes, index, units)) < bytes.size()) {
        // Scripts outside ASCII come in runs: stay here until the next ASCII byte.
        do {
            if (readCommonSequence(bytes, index, units))
                continue;
            const Decoded sequence = decodeSequence(bytes.substr(index));
            if (sequence.wellFormed)
                writeCodePoint(sequence.codePoint, units);
            else if (!onIllFormed(units))
                return std::nullopt;
            index += sequence.length;
        } while (index < bytes.size() && byteAt(bytes, index) >= 0x80);
    }
    return static_cast<std::size_t>(units - begin);
}

// Reads the code point at `index` and steps behind it; a lone surrogate reads as U+FFFD.
char32_t nextCodePoint(std::u16string_view units, std::size_t& index)
{
    const char32_t unit = units[index++];
    if (unit < 0xD800 || unit > 0xDFFF)
        return unit;
    if (isHighSurrogate(unit) && index < units.size() && isLowSurrogate(units[index]))
        return 0x10000 + ((unit & 0x3FF) << 10) + (units[index++] & 0x3FFU);
    return Replacement;
}

char continuation(char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); }

// Encodes a code point and returns the place behind it; may write two bytes for one.
char* encode(char32_t codePoint, char* out)
{
    if (codePoint < 0x800) {
        // Without a branch: letters and the spaces between them alternate too much to be foretold.
        const bool two = codePoint >= 0x80;
        out[0] = static_cast<char>(two ? 0xC0 | codePoint >> 6 : codePoint);
        out[1] = continuation(codePoint);
        return out + 1 + two;
    }
    if (codePoint < 0x10000) {
        out[0] = static_cast<char>(0xE0 | codePoint >> 12);
        out[1] = continuation(codePoint >> 6);
        out[2] = continuation(codePoint);
        return out + 3;
    }
    out[0] = static_cast<char>(0xF0 | codePoint >> 18);
    out[1] = continuation(codePoint >> 12);
    out[2] = continuation(codePoint >> 6);
    out[3] = continuation(codePoint);
    return out + 4;
}

// Writes eight ASCII units; false, having written nothing of use, when some are not.
bool narrowBlock(const char16_t* units, char* out)
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i high = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xFF80)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(block, block));
    return _mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
}

} // namespace

std::size_t utf8ToUtf16(std::string_view bytes, char16_t* units)
{
    const auto replace = [](char16_t*& out) {
        *out++ = Replacement;
        return true;
    };
    return *decode(bytes, units, replace);
}

std::optional<std::size_t> strictUtf8ToUtf16(std::string_view bytes, char16_t* units)
{
    return decode(bytes, units, [](char16_t*&) { return false; });
}

// By way of a small buffer, so that the text need not be measured first.
std::string utf16ToUtf8(std::u16string_view units)
{
    constexpr std::size_t PieceUnits = 1024;
    char piece[3 * PieceUnits + 3 * BlockUnits];
    std::string result;
    result.reserve(units.size());
    for (std::size_t index = 0; index < units.size();) {
        const std::size_t pieceEnd = std::min(index + PieceUnits, units.size());
        char* out = piece;
        while (index < pieceEnd) {
            if (units.size() - index >= BlockUnits && narrowBlock(&units[index], out)) {
                index += BlockUnits;
                out += BlockUnits;
                continue;
            }
            const std::size_t blockEnd = std::min(index + BlockUnits, pieceEnd);
            while (index < blockEnd)
                out = encode(nextCodePoint(units, index), out);
        }
        result.append(piece, out);
    }
    return result;
}

std::size_t firstLoneSurrogate(std::u16string_view units)
{
    for (std::size_t index = 0; index < units.size(); ++index) {
        const char16_t unit = units[index];
        if (unit < 0xD800 || unit > 0xDFFF)
            continue;
        if (!isHighSurrogate(unit) || index + 1 == units.size() || !isLowSurrogate(units[index + 1]))
            return index;
        ++index;
    }
    return NotFound;
}

} // namespace caddis
