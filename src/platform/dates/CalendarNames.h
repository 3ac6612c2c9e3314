#pragma once

#include <optional>
#include <string_view>

/// Month and weekday names, always English where nothing else is said; case never matters.
namespace caddis {

/// "Jan" to "Dec": 1 to 12. Nil: another text, or another length.
std::optional<int> monthOfAbbreviation(std::u16string_view name);
/// "Sun" to "Sat": 0 to 6.
std::optional<int> weekdayOfAbbreviation(std::u16string_view name);
/// "Sunday" to "Saturday": 0 to 6.
std::optional<int> weekdayOfName(std::u16string_view name);
/// "January" to "December": 1 to 12.
std::optional<int> monthOfName(std::u16string_view name);

/// "January" to "December" for 1 to 12.
std::u16string_view nameOfMonth(int month);

/// A month, 1 to 12, as people write it: English and German names from their first three letters on
/// ("Sept", "Okt"), French, Spanish, Italian, Portuguese, Dutch, Hungarian and Turkish ones in full.
std::optional<int> monthOfAnyName(std::u16string_view name);

} // namespace caddis
