#pragma once

#include <string_view>

namespace caddis {

/// Copies `text` to `out` with each run of white space as one space; returns the end of the copy. `out` has
/// room for the text's length and may overlap it when it does not begin behind it.
///
/// Ampersands::Refused: null when there is an ampersand; `out` then holds anything.
enum class Ampersands { Copied, Refused };
char16_t* copyCollapsed(std::u16string_view text, char16_t* out, Ampersands ampersands = Ampersands::Copied);

/// The same for preformatted text. Two or more line breaks become two line feeds, one becomes a line feed
/// when the next line begins with a blank or one of `-/>}` and else a space; runs of blanks become one space,
/// and other white space goes.
char16_t* copyReformatted(std::u16string_view text, char16_t* out);

/// U+0003, U+000A, U+000C, U+000D, U+2028, U+2029, U+FEFF and U+FFFC.
bool isLineBreak(char16_t unit);

} // namespace caddis
