#include "platform/richtext/RTFEscapes.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace caddis::rtf {

namespace {

// Windows-1252 from 80 to 9F (Unicode's mapping table CP1252.TXT); 0 where it has no character.
constexpr std::array<char16_t, 32> HighControls { 0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0, 0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013,
    0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178 };

bool isPlain(char16_t unit)
{
    return (unit >= 0x20 && unit < 0x7F && unit != u'\\' && unit != u'{' && unit != u'}') || unit == u'\t';
}

// 0 when windows-1252 has no such character.
unsigned byteOf(char16_t unit)
{
    if (unit >= 0xA0 && unit <= 0xFF)
        return unit;
    const auto found = unit < 0x100 ? HighControls.end() : std::ranges::find(HighControls, unit);
    return found == HighControls.end() ? 0 : 0x80 + static_cast<unsigned>(found - HighControls.begin());
}

} // namespace

void appendEscaped(std::string& out, std::u16string_view text)
{
    bool isInRun = false; // Of \u words.
    for (std::size_t index = 0; index < text.size();) {
        const char16_t unit = text[index];
        if (isPlain(unit)) {
            const std::size_t begin = index;
            while (index < text.size() && isPlain(text[index]))
                ++index;
            out.append(text.begin() + static_cast<std::ptrdiff_t>(begin),
                text.begin() + static_cast<std::ptrdiff_t>(index));
            isInRun = false;
            continue;
        }
        ++index;
        if (unit == u'\\' || unit == u'{' || unit == u'}') {
            out += '\\';
            out += static_cast<char>(unit);
        } else if (const unsigned byte = byteOf(unit)) {
            appendByte(out, byte);
        } else {
            if (!isInRun)
                out += "\\uc0";
            appendWord(out, "u", unit);
            out += ' ';
            isInRun = true;
            continue;
        }
        isInRun = false;
    }
}

void appendByte(std::string& out, std::size_t byte)
{
    constexpr std::string_view Digits = "0123456789abcdef";
    out += "\\'";
    out += Digits[byte >> 4 & 15];
    out += Digits[byte & 15];
}

void appendWord(std::string& out, std::string_view word, long number)
{
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out += '\\';
    out += word;
    out.append(digits.data(), end);
}

} // namespace caddis::rtf
