#include "text/CharacterTables.h"

#include <cstdint>

// The compiler expands packed runs of units into the constants, so that a process starts without building
// them.
namespace caddis::tables {

namespace {

// Every step-th unit from first to last, both included.
struct Run {
    char16_t first;
    char16_t last;
    std::uint8_t step;
};

// The units of the run map to themselves plus `shift`.
struct Shift {
    Run run;
    int shift;
};

// The units of the run map to `base`.
struct Fold {
    Run run;
    char16_t base;
};

#include "text/CharacterRuns.inc"

constexpr Run blanks[]
    = { { 0x0009, 0x0009, 1 }, { 0x0020, 0x0020, 1 }, { 0x00A0, 0x00A0, 1 }, { 0x1680, 0x1680, 1 },
          { 0x2000, 0x200B, 1 }, { 0x202F, 0x202F, 1 }, { 0x205F, 0x205F, 1 }, { 0x3000, 0x3000, 1 } };
constexpr Run newlines[] = { { 0x000A, 0x000D, 1 }, { 0x0085, 0x0085, 1 }, { 0x2028, 0x2029, 1 } };
constexpr char16_t spaceAdditions[] = { 0x0000, 0x0009 };
constexpr char16_t whiteAdditions[]
    = { 0x0000, 0x000C, 0x000A, 0x000D, 0x2028, 0x2029, 0x0003, 0xFFFC, 0x0009, 0xFEFF, 0x00A0 };

template <typename Use> constexpr void forEachUnit(const Run& run, Use use)
{
    for (unsigned unit = run.first; unit <= run.last; unit += run.step)
        use(static_cast<char16_t>(unit));
}

template <typename... Runs> constexpr CharacterSetRep setOf(const Runs&... lists)
{
    CharacterSetRep set;
    const auto insertAll = [&](const auto& runs) {
        for (const Run& run : runs)
            forEachUnit(run, [&](char16_t unit) { set.insert(unit); });
    };
    (insertAll(lists), ...);
    return set;
}

template <std::size_t Count>
constexpr CharacterSetRep adding(const char16_t (&units)[Count], CharacterSetRep set)
{
    for (const char16_t unit : units)
        set.insert(unit);
    return set;
}

constexpr ConversionTable identity()
{
    ConversionTable table {};
    for (unsigned unit = 0; unit < table.size(); ++unit)
        table[unit] = static_cast<char16_t>(unit);
    return table;
}

template <std::size_t Count> constexpr ConversionTable shifted(const Shift (&shifts)[Count])
{
    ConversionTable table = identity();
    for (const Shift& entry : shifts) {
        forEachUnit(
            entry.run, [&](char16_t unit) { table[unit] = static_cast<char16_t>(unit + entry.shift); });
    }
    return table;
}

template <std::size_t Count> constexpr ConversionTable folded(const Fold (&folds)[Count])
{
    ConversionTable table = identity();
    for (const Fold& entry : folds)
        forEachUnit(entry.run, [&](char16_t unit) { table[unit] = entry.base; });
    return table;
}

constexpr ConversionTable chained(ConversionTable table, const ConversionTable& second)
{
    for (char16_t& unit : table)
        unit = second[unit];
    return table;
}

} // namespace

constexpr CharacterSetRep emptySet {};
constexpr CharacterSetRep spaceSet = adding(spaceAdditions, setOf(blanks));
constexpr CharacterSetRep whiteSet = adding(whiteAdditions, setOf(blanks, newlines));
constexpr CharacterSetRep alphaSet = setOf(letters);
constexpr CharacterSetRep alphaNumSet = setOf(letters, numbers);
constexpr CharacterSetRep digitSet = setOf(decimalDigits);
constexpr CharacterSetRep lowerSet = setOf(lowercaseLetters);
constexpr CharacterSetRep upperSet = setOf(uppercaseLetters);

constexpr ConversionTable lowerChars = shifted(lowercasing);
constexpr ConversionTable upperChars = shifted(uppercasing);
constexpr ConversionTable umlautsChars = folded(folding);
constexpr ConversionTable lowerUmlautsChars = chained(umlautsChars, lowerChars);
constexpr ConversionTable upperUmlautsChars = chained(umlautsChars, upperChars);

constexpr char16_t firstAlpha = std::begin(letters)->first;
constexpr char16_t lastAlpha = std::rbegin(letters)->last;

} // namespace caddis::tables
