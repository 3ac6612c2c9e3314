#include "text/FastComparison.h"

#include <bit>
#include <emmintrin.h>

namespace caddis {
inline namespace NSStringOstraExtensions {

namespace {

constexpr std::size_t BlockUnits = 8;

__m128i loadBlock(const char16_t* units) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units)); }

__m128i splat(char16_t unit) { return _mm_set1_epi16(static_cast<short>(unit)); }

constexpr char16_t unitOf(char16_t unit) { return unit; }
constexpr char16_t unitOf(char byte) { return static_cast<char16_t>(static_cast<signed char>(byte)); }

// How a search compares: the value of a unit, and which units of a block may have the value of the needle's
// first one. `filters` says whether the block test knows all those units.
struct Exact {
    explicit Exact(char16_t first)
        : m_first(splat(first))
    {
    }
    static char16_t value(char16_t unit) { return unit; }
    static constexpr bool filters() { return true; }
    __m128i candidates(__m128i block) const { return _mm_cmpeq_epi16(block, m_first); }

private:
    __m128i m_first;
};

// ASCII letters have two forms, and U+0131 and U+017F have the upper-case forms I and S. What stands for
// other units is not known without a walk through the whole table.
struct NoCase {
    explicit NoCase(char16_t first)
        : m_filters(first < 0x80)
        , m_upper(splat(toUpper(first)))
        , m_lower(splat(toLower(first)))
        , m_special(splat(toUpper(first) == u'I' ? u'\u0131'
                  : toUpper(first) == u'S'       ? u'\u017F'
                                                 : first))
    {
    }
    static char16_t value(char16_t unit) { return toUpper(unit); }
    bool filters() const { return m_filters; }
    __m128i candidates(__m128i block) const
    {
        const __m128i letters
            = _mm_or_si128(_mm_cmpeq_epi16(block, m_upper), _mm_cmpeq_epi16(block, m_lower));
        return _mm_or_si128(letters, _mm_cmpeq_epi16(block, m_special));
    }

private:
    bool m_filters;
    __m128i m_upper;
    __m128i m_lower;
    __m128i m_special;
};

template <typename Case, typename Unit>
bool matchesAt(const char16_t* units, std::basic_string_view<Unit> needle)
{
    for (std::size_t index = 0; index < needle.size(); ++index) {
        if (Case::value(units[index]) != Case::value(unitOf(needle[index])))
            return false;
    }
    return true;
}

// Tries the start positions 0 to starts - 1.
template <typename Case, typename Unit>
const char16_t* search(const char16_t* units, std::size_t starts, std::basic_string_view<Unit> needle)
{
    const Case first(unitOf(needle.front()));
    std::size_t index = 0;
    for (; first.filters() && starts - index >= BlockUnits; index += BlockUnits) {
        auto mask = static_cast<unsigned>(_mm_movemask_epi8(first.candidates(loadBlock(units + index))));
        for (; mask; mask &= ~(3U << std::countr_zero(mask))) {
            const char16_t* candidate = units + index + std::countr_zero(mask) / 2;
            if (matchesAt<Case>(candidate, needle))
                return candidate;
        }
    }
    for (; index < starts; ++index) {
        if (matchesAt<Case>(units + index, needle))
            return units + index;
    }
    return nullptr;
}

template <typename Case, typename Unit>
const char16_t* searchAll(std::u16string_view haystack, std::basic_string_view<Unit> needle)
{
    if (needle.empty() || needle.size() > haystack.size())
        return nullptr;
    return search<Case>(haystack.data(), haystack.size() - needle.size() + 1, needle);
}

// The first index from `index` on whose block holds a difference; whatever is compared, equal units are
// equal.
std::size_t skipEqualBlocks(
    std::u16string_view first, std::u16string_view second, std::size_t index, std::size_t end)
{
    while (end - index >= BlockUnits) {
        const __m128i equal = _mm_cmpeq_epi16(loadBlock(&first[index]), loadBlock(&second[index]));
        if (_mm_movemask_epi8(equal) != 0xFFFF)
            break;
        index += BlockUnits;
    }
    return index;
}

// 8-bit runs are short names: one by one.
template <typename First>
std::size_t skipEqualBlocks(std::basic_string_view<First>, std::string_view, std::size_t index, std::size_t)
{
    return index;
}

template <typename First, typename Second, typename Value>
std::int64_t compare(std::basic_string_view<First> first, std::basic_string_view<Second> second, Value value)
{
    const std::size_t end = std::min(first.size(), second.size());
    for (std::size_t index = 0; (index = skipEqualBlocks(first, second, index, end)) < end;) {
        const std::size_t blockEnd = std::min(index + BlockUnits, end);
        for (; index < blockEnd; ++index) {
            const std::int64_t left = value(first[index]);
            const std::int64_t right = value(second[index]);
            if (left != right)
                return left - right;
        }
    }
    return static_cast<std::int64_t>(first.size()) - static_cast<std::int64_t>(second.size());
}

// A character's own value: bytes are signed.
constexpr std::int64_t plainValue(char16_t unit) { return unit; }
constexpr std::int64_t plainValue(char byte) { return static_cast<signed char>(byte); }

constexpr auto Plain = [](auto character) { return plainValue(character); };
constexpr auto Upper = [](auto character) { return toUpper(unitOf(character)); };

// The index of the next member from `index` on, or the end.
std::size_t nextMember(std::u16string_view units, std::size_t index, const CharacterSetRep& set)
{
    while (index < units.size() && !set.contains(units[index]))
        ++index;
    return index;
}

} // namespace

const char16_t* fastContainsUnichars(std::u16string_view haystack, std::u16string_view needle)
{
    if (needle.empty() || needle.size() >= haystack.size())
        return nullptr;
    // Kept on purpose: a needle that ends where the haystack ends is never found.
    return search<Exact>(haystack.data(), haystack.size() - needle.size(), needle);
}

const char16_t* fastCaseInsensitiveContainsUnichars(std::u16string_view haystack, std::u16string_view needle)
{
    return searchAll<NoCase>(haystack, needle);
}

const char16_t* fastUnicharsContainChars(std::u16string_view haystack, std::string_view needle)
{
    return searchAll<Exact>(haystack, needle);
}

const char16_t* fastCaseInsensitiveUnicharsContainChars(std::u16string_view haystack, std::string_view needle)
{
    return searchAll<NoCase>(haystack, needle);
}

const char16_t* positionOfCharacters(
    std::string_view needle, std::u16string_view haystack, bool caseSensitive)
{
    return caseSensitive ? fastUnicharsContainChars(haystack, needle)
                         : fastCaseInsensitiveUnicharsContainChars(haystack, needle);
}

std::int64_t fastCompareUnicharsUsingConversionTable(
    std::u16string_view first, std::u16string_view second, const ConversionTable* table)
{
    if (!table)
        return fastCompareUnichars(first, second);
    return compare(first, second, [table](char16_t unit) { return (*table)[unit]; });
}

std::int64_t fastCompareUnichars(std::u16string_view first, std::u16string_view second)
{
    return compare(first, second, Plain);
}

std::int64_t fastCompareUnicharsWithChars(std::u16string_view first, std::string_view second)
{
    return compare(first, second, Plain);
}

std::int64_t fastCompareChars(std::string_view first, std::string_view second)
{
    return compare(first, second, Plain);
}

std::int64_t fastCaseInsensitiveCompareUnichars(std::u16string_view first, std::u16string_view second)
{
    return fastCompareUnicharsUsingConversionTable(first, second, &upperCharsTable());
}

std::int64_t fastCaseInsensitiveCompareUnicharsWithChars(std::u16string_view first, std::string_view second)
{
    return compare(first, second, Upper);
}

std::int64_t fastCaseInsensitiveCompareChars(std::string_view first, std::string_view second)
{
    return compare(first, second, Upper);
}

bool _equalCharsOfCharacterSetRep(std::u16string_view first, std::u16string_view second,
    const CharacterSetRep& set, FilteredComparison flags)
{
    const ConversionTable& upper = upperCharsTable();
    std::size_t other = 0;
    for (const char16_t unit : first) {
        if (!set.contains(unit))
            continue;
        other = nextMember(second, other, set);
        if (other == second.size())
            return flags.prefix;
        const char16_t otherUnit = second[other++];
        if (flags.noCase ? upper[unit] != upper[otherUnit] : unit != otherUnit)
            return false;
    }
    return nextMember(second, other, set) == second.size();
}

bool equalCharsOfCharacterSetRep(
    std::u16string_view first, std::u16string_view second, const CharacterSetRep& set)
{
    return _equalCharsOfCharacterSetRep(first, second, set, {});
}

bool equalCharsNoCaseOfCharacterSetRep(
    std::u16string_view first, std::u16string_view second, const CharacterSetRep& set)
{
    return _equalCharsOfCharacterSetRep(first, second, set, { .noCase = true });
}

bool hasPrefixCharsOfCharacterSetRep(
    std::u16string_view units, std::u16string_view prefix, const CharacterSetRep& set)
{
    return _equalCharsOfCharacterSetRep(units, prefix, set, { .prefix = true });
}

bool hasPrefixCharsNoCaseOfCharacterSetRep(
    std::u16string_view units, std::u16string_view prefix, const CharacterSetRep& set)
{
    return _equalCharsOfCharacterSetRep(units, prefix, set, { .noCase = true, .prefix = true });
}

bool equalStringsUsingCharacterSetRep(const String& first, const String& second, const CharacterSetRep& set)
{
    return equalCharsOfCharacterSetRep(first, second, set);
}

bool equalStringsNoCaseUsingCharacterSetRep(
    const String& first, const String& second, const CharacterSetRep& set)
{
    return equalCharsNoCaseOfCharacterSetRep(first, second, set);
}

bool hasPrefixUsingCharacterSetRep(const String& string, const String& prefix, const CharacterSetRep& set)
{
    return hasPrefixCharsOfCharacterSetRep(string, prefix, set);
}

bool hasPrefixNoCaseUsingCharacterSetRep(
    const String& string, const String& prefix, const CharacterSetRep& set)
{
    return hasPrefixCharsNoCaseOfCharacterSetRep(string, prefix, set);
}

bool equalStringsUsingConversionTable(const String& first, const String& second, const ConversionTable* table)
{
    return first.length() == second.length()
        && fastCompareUnicharsUsingConversionTable(first, second, table) == 0;
}

} // namespace NSStringOstraExtensions
} // namespace caddis
