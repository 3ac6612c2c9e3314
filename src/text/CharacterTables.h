#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// Character classes and one-to-one case and diacritic mappings, looked up by the UTF-16 unit's value.
///
/// All sets and tables are constants (Unicode 15.0): there is nothing to initialise, any thread may read them
/// at any time, and only the pages that a text touches ever come into memory. A scanner's loop is
///
///     const CharacterSetRep& white = whiteCharacterSetRep();
///     const ConversionTable& upper = upperCharsTable();
///     if (white.contains(unit)) …           // one shift, one byte load, one bit test
///     if (upper[unit] == u'A') …            // one load
namespace caddis {

/// A set of UTF-16 units as a bitmap: unit c is a member when bit (c & 7) of byte (c >> 3) is set.
class CharacterSetRep {
public:
    using Bitmap = std::array<unsigned char, 8192>;

    constexpr bool contains(char16_t unit) const { return (m_bitmap[unit >> 3] >> (unit & 7) & 1) != 0; }
    constexpr void insert(char16_t unit)
    {
        m_bitmap[unit >> 3] = static_cast<unsigned char>(m_bitmap[unit >> 3] | 1U << (unit & 7));
    }
    constexpr const Bitmap& bitmap() const { return m_bitmap; }

private:
    Bitmap m_bitmap {};
};

/// One unit for each unit. A mapping whose result would be longer than one unit leaves the unit as it is (ß
/// in the upper-case table), so texts keep their length and positions stay aligned.
using ConversionTable = std::array<char16_t, 65536>;

namespace tables {
extern const CharacterSetRep emptySet, spaceSet, whiteSet, alphaSet, alphaNumSet, digitSet, lowerSet,
    upperSet;
extern const ConversionTable lowerChars, upperChars, umlautsChars, lowerUmlautsChars, upperUmlautsChars;
extern const char16_t firstAlpha, lastAlpha;
} // namespace tables

inline namespace NSStringOstraExtensions {

inline const CharacterSetRep& emptyCharacterSetRep() { return tables::emptySet; }
/// Blanks inside a line: the space separators, U+200B, U+0009 and U+0000.
inline const CharacterSetRep& spaceCharacterSetRep() { return tables::spaceSet; }
/// What every trimming and white-space test uses: blanks and line ends, and also U+0000, U+0003, U+FFFC,
/// U+FEFF and U+00A0.
inline const CharacterSetRep& whiteCharacterSetRep() { return tables::whiteSet; }
/// Letters and marks: general categories L* and M*.
inline const CharacterSetRep& alphaCharacterSetRep() { return tables::alphaSet; }
/// Letters, marks and numbers: L*, M* and N*.
inline const CharacterSetRep& alphaNumCharacterSetRep() { return tables::alphaNumSet; }
/// Decimal digits of all scripts: Nd.
inline const CharacterSetRep& digitCharacterSetRep() { return tables::digitSet; }
/// Ll.
inline const CharacterSetRep& lowerCharacterSetRep() { return tables::lowerSet; }
/// Lu and Lt.
inline const CharacterSetRep& upperCharacterSetRep() { return tables::upperSet; }

/// The lowest and the highest member of the letter set.
inline char16_t firstAlphaCharacter() { return tables::firstAlpha; }
inline char16_t lastAlphaCharacter() { return tables::lastAlpha; }

inline const ConversionTable& lowerCharsTable() { return tables::lowerChars; }
inline const ConversionTable& upperCharsTable() { return tables::upperChars; }
/// Latin, Greek and Cyrillic letters to their base letter: ä to a. Letters without a canonical decomposition
/// (ß, ø, æ) and all other scripts stay.
inline const ConversionTable& umlautsCharsTable() { return tables::umlautsChars; }
inline const ConversionTable& lowerUmlautsCharsTable() { return tables::lowerUmlautsChars; }
inline const ConversionTable& upperUmlautsCharsTable() { return tables::upperUmlautsChars; }

inline char16_t toLower(char16_t unit) { return lowerCharsTable()[unit]; }
inline char16_t toUpper(char16_t unit) { return upperCharsTable()[unit]; }
/// The base letter; not limited to ASCII.
inline char16_t umlautsToAscii(char16_t unit) { return umlautsCharsTable()[unit]; }
inline char16_t umlautsToLowerAscii(char16_t unit) { return lowerUmlautsCharsTable()[unit]; }
inline char16_t umlautsToUpperAscii(char16_t unit) { return upperUmlautsCharsTable()[unit]; }

/// The base letter where it is ASCII, else a space.
inline char16_t toAscii(char16_t unit)
{
    const char16_t folded = umlautsCharsTable()[unit];
    return folded < 0x80 ? folded : u' ';
}
inline char16_t toLowerAscii(char16_t unit)
{
    const char16_t ascii = toAscii(unit);
    return ascii >= u'A' && ascii <= u'Z' ? static_cast<char16_t>(ascii + 32) : ascii;
}
inline char16_t toUpperAscii(char16_t unit)
{
    const char16_t ascii = toAscii(unit);
    return ascii >= u'a' && ascii <= u'z' ? static_cast<char16_t>(ascii - 32) : ascii;
}

/// Whether every unit is in the white set; true for no units.
inline bool onlyWhiteCharacters(std::u16string_view units)
{
    return std::ranges::all_of(units, [](char16_t unit) { return whiteCharacterSetRep().contains(unit); });
}

} // namespace NSStringOstraExtensions
} // namespace caddis
