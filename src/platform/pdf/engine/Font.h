#pragma once

#include "platform/base/String.h"

#include <GfxFont.h>

#include <array>
#include <memory>
#include <string_view>

namespace caddis::pdf {

/// A code of a shown string: its text and how far it moves the pen.
struct Character {
    std::size_t bytes = 1; ///< of the string
    std::u16string_view text; ///< empty when nobody knows; valid until the font's next call
    double advance = 0; ///< along the writing direction, for size 1
    bool isSpaceCode = false; ///< the single byte 32, which word spacing widens
};

/// What a font is called and how its letters look.
struct FontTraits {
    String name; ///< without the tag of a subset
    bool bold = false;
    bool italic = false;
};

/// A font as text needs it, over Poppler's: codes, their text, their widths.
class Font {
public:
    /// `italicAngle` is that of the font's descriptor, in degrees.
    Font(std::unique_ptr<GfxFont> font, double italicAngle);

    FontTraits traits() const;

    bool isVertical() const { return m_vertical; }
    /// The height of a line of size 1; not 1 for fonts whose glyphs are drawn in a space of their own (Type
    /// 3).
    double em() const { return m_em; }

    /// The first code of `bytes`, which must not be empty.
    Character next(std::string_view bytes);

private:
    struct Known {
        bool read = false;
        Character character;
        std::array<char16_t, 6> units {};
    };

    Character read(std::string_view bytes, char16_t* units) const;
    bool isGuess(CharCode code, Unicode value) const;
    double type3Em() const;

    std::unique_ptr<GfxFont> m_font;
    double m_italicAngle;
    bool m_vertical;
    double m_em;
    // Fonts of one byte a code: what is known of each. Others are read anew, into m_units.
    std::unique_ptr<std::array<Known, 256>> m_known;
    std::array<char16_t, 64> m_units {};
};

} // namespace caddis::pdf
