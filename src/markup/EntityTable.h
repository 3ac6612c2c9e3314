#pragma once

#include <optional>
#include <span>
#include <string_view>

/// The named character references of HTML 4.01, both ways.
///
/// Source: HTML 4.01, section 24, without amp, lt, gt and quot, which the converters handle before the table.
/// Each row is one unit, and no character has two names.
namespace caddis {

struct EntityRow {
    std::string_view name; ///< without & and ;
    char16_t character;
};

/// All 246 rows: Latin-1 letters, Latin-1 symbols, Greek and mathematics, special characters.
std::span<const EntityRow> entityTable();

inline constexpr std::size_t LongestEntityName = 8;

/// The character of a name, compared as it stands; nil when it has no row.
std::optional<char16_t> characterOfEntity(std::u16string_view name);

/// The name of a character; empty when it has no row.
std::string_view entityOfCharacter(char16_t character);

} // namespace caddis
