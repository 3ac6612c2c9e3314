#include "platform/base/Utf.h"

#include "platform/base/Range.h"

#include <emmintrin.h>

namespace caddis {

namespace {

constexpr char16_t Replacement = 0xFFFD;

// Copies the ASCII run at `bytes[from…]` and returns the index behind it.
std::size_t widenAscii(std::string_view bytes, std::size_t from, char16_t*& units)
{
    const __m128i zero = _mm_setzero_si128();
    while (bytes.size() - from >= 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + from));
        if (_mm_movemask_epi8(block) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(block, zero));
        units += 16;
        from += 16;
    }
    while (from < bytes.size() && static_cast<unsigned char>(bytes[from]) < 0x80)
        *units++ = static_cast<unsigned char>(bytes[from++]);
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

// Decodes until the end, or until `onIllFormed` says no.
template <typename OnIllFormed>
std::optional<std::size_t> decode(std::string_view bytes, char16_t* const begin, OnIllFormed onIllFormed)
{
    char16_t* units = begin;
    std::size_t index = 0;
    while ((index = widenAscii(bytes, index, units)) < bytes.size()) {
        // Scripts outside ASCII come in runs: stay here until the next ASCII byte.
        do {
            const Decoded sequence = decodeSequence(bytes.substr(index));
            if (sequence.wellFormed)
                writeCodePoint(sequence.codePoint, units);
            else if (!onIllFormed(units))
                return std::nullopt;
            index += sequence.length;
        } while (index < bytes.size() && static_cast<unsigned char>(bytes[index]) >= 0x80);
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

constexpr std::size_t utf8Length(char32_t codePoint)
{
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

char* encode(char32_t codePoint, char* out)
{
    const std::size_t length = utf8Length(codePoint);
    if (length == 1) {
        *out = static_cast<char>(codePoint);
        return out + 1;
    }
    for (std::size_t index = length - 1; index > 0; --index) {
        out[index] = static_cast<char>(0x80 | (codePoint & 0x3F));
        codePoint >>= 6;
    }
    *out = static_cast<char>((0xF00U >> length & 0xFF) | codePoint);
    return out + length;
}

// How many leading units are ASCII, in steps of eight; the caller takes the rest one by one.
std::size_t asciiBlocks(std::u16string_view units, std::size_t from)
{
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
    std::size_t index = from;
    while (units.size() - index >= 8) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units.data() + index));
        const __m128i outside = _mm_cmpeq_epi16(_mm_and_si128(block, high), _mm_setzero_si128());
        if (_mm_movemask_epi8(outside) != 0xFFFF)
            break;
        index += 8;
    }
    return index - from;
}

std::size_t utf8LengthOf(std::u16string_view units)
{
    std::size_t length = 0;
    for (std::size_t index = 0; index < units.size();) {
        const std::size_t ascii = asciiBlocks(units, index);
        length += ascii;
        index += ascii;
        if (index < units.size())
            length += utf8Length(nextCodePoint(units, index));
    }
    return length;
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

std::string utf16ToUtf8(std::u16string_view units)
{
    std::string result(utf8LengthOf(units), '\0');
    char* out = result.data();
    for (std::size_t index = 0; index < units.size();) {
        const std::size_t blockEnd = index + asciiBlocks(units, index);
        for (; index < blockEnd; index += 8, out += 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units.data() + index));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(block, block));
        }
        if (index < units.size())
            out = encode(nextCodePoint(units, index), out);
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
