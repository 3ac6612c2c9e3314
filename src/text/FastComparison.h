#pragma once

#include "platform/base/String.h"
#include "text/CharacterTables.h"

#include <cstdint>

/// Search and comparison of raw characters; nothing here allocates.
///
/// "Without case" means through upperCharsTable, unit by unit. An 8-bit character counts as signed, so bytes
/// 0x80 to 0xFF never mean U+0080 to U+00FF: as a unit they are 0xFF80 to 0xFFFF.
namespace caddis {
inline namespace NSStringOstraExtensions {

// Search: where in the haystack the needle first occurs, or null. An empty needle is never found.
// Cost: at worst the product of both lengths; ordinary text is passed over eight units at a time.

/// Never finds a needle that ends exactly where the haystack ends.
const char16_t* fastContainsUnichars(std::u16string_view haystack, std::u16string_view needle);
const char16_t* fastCaseInsensitiveContainsUnichars(std::u16string_view haystack, std::u16string_view needle);
const char16_t* fastUnicharsContainChars(std::u16string_view haystack, std::string_view needle);
const char16_t* fastCaseInsensitiveUnicharsContainChars(
    std::u16string_view haystack, std::string_view needle);
/// The last two with the needle first.
const char16_t* positionOfCharacters(
    std::string_view needle, std::u16string_view haystack, bool caseSensitive);

// Order: first minus second at the first place where the compared values differ, else the difference of the
// lengths.

/// Compares the table's entries, or the units themselves without a table.
std::int64_t fastCompareUnicharsUsingConversionTable(
    std::u16string_view first, std::u16string_view second, const ConversionTable* table);
std::int64_t fastCompareUnichars(std::u16string_view first, std::u16string_view second);
/// Bytes count from -128 to 127.
std::int64_t fastCompareUnicharsWithChars(std::u16string_view first, std::string_view second);
/// Bytes count from -128 to 127.
std::int64_t fastCompareChars(std::string_view first, std::string_view second);
std::int64_t fastCaseInsensitiveCompareUnichars(std::u16string_view first, std::u16string_view second);
std::int64_t fastCaseInsensitiveCompareUnicharsWithChars(std::u16string_view first, std::string_view second);
std::int64_t fastCaseInsensitiveCompareChars(std::string_view first, std::string_view second);

// Comparison of the members of a set alone: all other units are skipped in both runs.

struct FilteredComparison {
    bool noCase = false;
    bool prefix = false; ///< the members of the second are a prefix of those of the first
};
bool _equalCharsOfCharacterSetRep(std::u16string_view first, std::u16string_view second,
    const CharacterSetRep& set, FilteredComparison flags);

bool equalCharsOfCharacterSetRep(
    std::u16string_view first, std::u16string_view second, const CharacterSetRep& set);
bool equalCharsNoCaseOfCharacterSetRep(
    std::u16string_view first, std::u16string_view second, const CharacterSetRep& set);
bool hasPrefixCharsOfCharacterSetRep(
    std::u16string_view units, std::u16string_view prefix, const CharacterSetRep& set);
bool hasPrefixCharsNoCaseOfCharacterSetRep(
    std::u16string_view units, std::u16string_view prefix, const CharacterSetRep& set);

bool equalStringsUsingCharacterSetRep(const String& first, const String& second, const CharacterSetRep& set);
bool equalStringsNoCaseUsingCharacterSetRep(
    const String& first, const String& second, const CharacterSetRep& set);
bool hasPrefixUsingCharacterSetRep(const String& string, const String& prefix, const CharacterSetRep& set);
bool hasPrefixNoCaseUsingCharacterSetRep(
    const String& string, const String& prefix, const CharacterSetRep& set);

/// Equality of whole strings by the table's entries, or literally without a table.
bool equalStringsUsingConversionTable(
    const String& first, const String& second, const ConversionTable* table);

} // namespace NSStringOstraExtensions
} // namespace caddis
