// Zone abbreviations as fixed offsets. The names are those of the platform's abbreviation table, RFC 822's,
// and the ones that mail and feeds of Europe, Australia and North America carry besides.
//
// An abbreviation may mean several places (IST, CST, BST): each has one meaning here, always the same, and an
// unlisted one has none. A bare "ET" or "PT" is standard time: nothing in it says daylight time.

#include "platform/dates/DateCursor.h"
#include "platform/dates/TimeZone.h"

#include <algorithm>
#include <array>

namespace caddis {

namespace {

constexpr std::size_t LongestAbbreviation = 4;

// The letters, upper-cased, packed into one number; 0 when they are none or too many.
constexpr std::uint32_t keyOf(std::u16string_view name)
{
    if (name.size() > LongestAbbreviation)
        return 0;
    std::uint32_t key = 0;
    for (const char16_t unit : name) {
        if (!isAsciiLetter(unit))
            return 0;
        key = key << 8 | (unit & ~32U);
    }
    return key;
}

struct Abbreviation {
    std::uint32_t key;
    int offset;

    constexpr Abbreviation(std::u16string_view name, int hours, int minutes = 0)
        : key(keyOf(name))
        , offset(hours * 3600 + (hours < 0 ? -minutes : minutes) * 60)
    {
    }
};

template <std::size_t Size>
consteval std::array<Abbreviation, Size> sorted(std::array<Abbreviation, Size> table)
{
    std::ranges::sort(table, {}, &Abbreviation::key);
    return table;
}

constexpr auto Abbreviations = sorted(std::to_array<Abbreviation>({
    // clang-format off
    { u"Z", 0 }, { u"UT", 0 }, { u"UTC", 0 }, { u"UCT", 0 }, { u"GMT", 0 },
    { u"WET", 0 }, { u"WEST", 1 }, { u"BST", 1 },
    { u"CET", 1 }, { u"CEST", 2 }, { u"MET", 1 }, { u"MEST", 2 }, { u"MEZ", 1 }, { u"MESZ", 2 },
    { u"EET", 2 }, { u"EEST", 3 }, { u"MSK", 3 }, { u"MSD", 4 },
    { u"WAT", 1 }, { u"CAT", 2 }, { u"SAST", 2 }, { u"EAT", 3 },
    { u"IRST", 3, 30 }, { u"GST", 4 }, { u"PKT", 5 }, { u"IST", 5, 30 }, { u"BDT", 6 },
    { u"ICT", 7 }, { u"WIB", 7 }, { u"WIT", 7 }, { u"HKT", 8 }, { u"PHT", 8 }, { u"SGT", 8 },
    { u"JST", 9 }, { u"KST", 9 },
    { u"AWST", 8 }, { u"ACST", 9, 30 }, { u"ACDT", 10, 30 }, { u"AEST", 10 }, { u"AEDT", 11 },
    { u"NZST", 12 }, { u"NZDT", 13 },
    { u"NST", -3, 30 }, { u"NDT", -2, 30 },
    { u"AT", -4 }, { u"AST", -4 }, { u"ADT", -3 }, { u"ET", -5 }, { u"EST", -5 }, { u"EDT", -4 },
    { u"CT", -6 }, { u"CST", -6 }, { u"CDT", -5 }, { u"MT", -7 }, { u"MST", -7 }, { u"MDT", -6 },
    { u"PT", -8 }, { u"PST", -8 }, { u"PDT", -7 }, { u"AKST", -9 }, { u"AKDT", -8 }, { u"HST", -10 },
    { u"ART", -3 }, { u"BRT", -3 }, { u"BRST", -2 }, { u"CLT", -4 }, { u"CLST", -3 }, { u"COT", -5 },
    { u"PET", -5 },
    // clang-format on
}));

} // namespace

std::optional<int> offsetOfAbbreviation(std::u16string_view name)
{
    const std::uint32_t key = keyOf(name);
    if (key == 0)
        return std::nullopt;
    const auto found = std::ranges::lower_bound(Abbreviations, key, {}, &Abbreviation::key);
    return found != Abbreviations.end() && found->key == key ? std::optional(found->offset) : std::nullopt;
}

} // namespace caddis
