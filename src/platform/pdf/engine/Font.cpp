#include "platform/pdf/engine/Font.h"

#include "platform/base/Ascii.h"

#include <GlobalParams.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <string>

namespace caddis::pdf {

namespace {

bool isText(Unicode value)
{
    return value >= 0x20 && (value < 0x7F || value >= 0xA0) && (value & 0xFFFFF800) != 0xD800
        && value != 0xFEFF && (value & 0xFFFE) != 0xFFFE && value <= 0x10FFFF;
}

// Every kind of blank is a blank: line layout makes one space of a run of them.
bool isBlank(Unicode value)
{
    return (value >= 0x09 && value <= 0x0D) || value == 0x20 || value == 0x85 || value == 0xA0
        || (value >= 0x2000 && value <= 0x200A) || value == 0x2028 || value == 0x2029 || value == 0x202F
        || value == 0x205F || value == 0x3000;
}

// Latin ligatures are a matter of the font, not of the text: a reader searches for "office".
std::u16string_view lettersOf(Unicode value)
{
    static constexpr std::u16string_view letters[] = { u"ff", u"fi", u"fl", u"ffi", u"ffl", u"st", u"st" };
    return value >= 0xFB00 && value <= 0xFB06 ? letters[value - 0xFB00] : std::u16string_view();
}

// At most 3 units.
char16_t* append(Unicode value, char16_t* out)
{
    if (isBlank(value)) {
        *out++ = u' ';
    } else if (const auto letters = lettersOf(value); !letters.empty()) {
        out = std::copy(letters.begin(), letters.end(), out);
    } else if (value > 0xFFFF && isText(value)) {
        *out++ = static_cast<char16_t>(0xD7C0 + (value >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + (value & 0x3FF));
    } else if (isText(value)) {
        *out++ = static_cast<char16_t>(value);
    }
    return out;
}

constexpr std::string_view boldNames[] = { "bold", "black", "heavy", "demi", "cmbx", "sfbx" };
constexpr std::string_view italicNames[] = { "italic", "oblique", "slanted", "kursiv" };

bool hasOneOf(std::string name, std::span<const std::string_view> words)
{
    std::ranges::transform(name, name.begin(), [](char byte) { return lowercaseAscii(byte); });
    return std::ranges::any_of(words, [&](std::string_view word) { return name.find(word) != name.npos; });
}

} // namespace

Font::Font(std::unique_ptr<GfxFont> font, double italicAngle)
    : m_font(std::move(font))
    , m_italicAngle(italicAngle)
    , m_vertical(m_font->getWMode() == 1)
    , m_em(m_font->getType() == fontType3 ? type3Em() : 1)
{
    if (!m_font->isCIDFont())
        m_known = std::make_unique<std::array<Known, 256>>();
}

// Flags and weight are set by few programs, so the name has its say too.
FontTraits Font::traits() const
{
    const std::string name = m_font->getName() ? m_font->getNameWithoutSubsetTag() : std::string();
    const bool isHeavy = m_font->getWeight() >= GfxFont::W600;
    return { String::fromUtf8(name), isHeavy || m_font->isBold() || hasOneOf(name, boldNames),
        m_italicAngle != 0 || m_font->isItalic() || hasOneOf(name, italicNames) };
}

// Where no table knows a glyph's name, Poppler takes its code for its character; a note head is no "h". Names
// with a number in them ("g104") say which character they are, and what is behind a point is a variant.
bool Font::isGuess(CharCode code, Unicode value) const
{
    if (m_font->isCIDFont() || m_font->hasToUnicodeCMap() || value != code || code > 255)
        return false;
    const char* const entry = static_cast<Gfx8BitFont&>(*m_font).getEncoding()[code];
    const std::string whole = entry ? entry : "";
    const std::string name = whole.substr(0, whole.find('.'));
    return !name.empty() && name.find_first_of("0123456789") == name.npos
        && globalParams->mapNameToUnicodeText(name.c_str()) == 0;
}

// A Type 3 font may draw in any unit; its matrix and bounding box say how large its glyphs become.
double Font::type3Em() const
{
    const double* matrix = m_font->getFontMatrix();
    const double* box = m_font->getFontBBox();
    const double em = std::fabs(matrix[3]) * std::fabs(box[3] - box[1]);
    return em > 1e-3 && em < 1e3 ? em : 1;
}

Character Font::read(std::string_view bytes, char16_t* units) const
{
    CharCode code = 0;
    const Unicode* text = nullptr;
    int count = 0;
    double dx = 0;
    double dy = 0;
    double originX = 0;
    double originY = 0;
    const int length = static_cast<int>(std::min<std::size_t>(bytes.size(), 8));
    const int used
        = m_font->getNextChar(bytes.data(), length, &code, &text, &count, &dx, &dy, &originX, &originY);

    Character character;
    character.bytes = static_cast<std::size_t>(std::clamp(used, 1, length));
    const double advance = m_vertical ? -dy : dx;
    character.advance = std::isfinite(advance) ? advance : 0;
    character.isSpaceCode = character.bytes == 1 && bytes[0] == ' ';
    char16_t* out = units;
    if (text && count == 1 && isGuess(code, text[0]))
        count = 0;
    for (int index = 0; text && index < std::min(count, 20); ++index)
        out = append(text[index], out);
    character.text = { units, static_cast<std::size_t>(out - units) };
    return character;
}

Character Font::next(std::string_view bytes)
{
    if (!m_known)
        return read(bytes, m_units.data());
    Known& known = (*m_known)[static_cast<unsigned char>(bytes[0])];
    if (!known.read) {
        known.character = read(bytes, m_units.data());
        if (known.character.text.size() > known.units.size())
            return known.character;
        std::copy(known.character.text.begin(), known.character.text.end(), known.units.begin());
        known.character.text = { known.units.data(), known.character.text.size() };
        known.read = true;
    }
    return known.character;
}

} // namespace caddis::pdf
