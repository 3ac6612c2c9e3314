#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace caddis::pdf {

/// A glyph on a line: its text and its place along it.
struct PlacedGlyph {
    std::uint32_t first = 0; ///< its units, in the line's
    std::uint32_t count = 0;
    double begin = 0;
    double end = 0;
    float em = 1; ///< its font's size
    bool isBlank = false;
    std::uint16_t style = 0; ///< what the page of text numbers so

    std::u16string_view text(std::u16string_view units) const { return units.substr(first, count); }
    /// Whether a glyph that ends there is far enough before this one for a blank.
    bool isApartFrom(double end_) const { return begin - end_ > BlankGap * static_cast<double>(em); }

    static constexpr double BlankGap = 0.14; ///< in em
};

/// Whether text in this script is written from right to left: its letters, marks and digits.
bool isRightToLeft(char16_t unit);

/// Puts a line that holds right-to-left letters in the order in which it is read. The result has its blanks
/// as glyphs of their own and no places: every glyph stands at 0.
///
/// What direction the line as a whole has, the majority of its letters says. From there the usual display
/// order (Unicode Standard Annex 9) is undone: runs against that direction and numbers are turned round.
void putInLogicalOrder(std::vector<PlacedGlyph>& glyphs, std::u16string_view units);

} // namespace caddis::pdf
