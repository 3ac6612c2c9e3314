#pragma once

#include "platform/base/String.h"

namespace caddis {

/// Text in the MacRoman encoding; every byte is a character.
String stringFromMacRoman(std::string_view bytes);

/// The byte of a unit, or nothing for a unit that the encoding lacks.
std::optional<unsigned char> macRomanByte(char16_t unit);

} // namespace caddis
