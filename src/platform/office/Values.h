#pragma once

#include "platform/richtext/TextStyle.h"

#include <optional>
#include <string_view>

/// Inside this folder: how the values of attributes are written.
namespace caddis::office {

/// The number at the front of `text`; 0 without one, and beyond a hundred million.
double numberAtFront(std::string_view text);
std::int32_t integerAtFront(std::string_view text);

/// "1.5cm", "12pt", "0.4in" in points, to a twentieth, as RTF counts them. Nil without a number or a unit
/// that is known; a per cent is none.
std::optional<double> lengthOf(std::string_view text);
/// "150%" as 1.5.
std::optional<double> percentage(std::string_view text);

/// "FF8000" or "#FF8000".
std::optional<TextColor> colorOfHex(std::string_view text);

/// Whether a property is on: all but "0", "false", "off" and "none".
bool isOn(std::string_view text);

/// "2021-03-04T05:06:07Z" in UTC; fractions and zones are passed over. Nil when it is no date.
std::optional<double> unixSecondsOfTime(std::string_view text);

} // namespace caddis::office
