#include "platform/dates/CalendarNames.h"

#include "platform/dates/DateCursor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace caddis {

namespace {

constexpr std::array<std::u16string_view, 12> Months { u"January", u"February", u"March", u"April", u"May",
    u"June", u"July", u"August", u"September", u"October", u"November", u"December" };
constexpr std::array<std::u16string_view, 7> Weekdays { u"Sunday", u"Monday", u"Tuesday", u"Wednesday",
    u"Thursday", u"Friday", u"Saturday" };

struct MonthName {
    std::u16string_view name;
    int month;
};

// Known from three letters on, in this order: "mar" is March in all of them.
constexpr auto PrefixMonths = std::to_array<MonthName>({ { u"january", 1 }, { u"januar", 1 },
    { u"february", 2 }, { u"februar", 2 }, { u"march", 3 }, { u"märz", 3 }, { u"maerz", 3 }, { u"mrz", 3 },
    { u"april", 4 }, { u"may", 5 }, { u"mai", 5 }, { u"june", 6 }, { u"juni", 6 }, { u"july", 7 },
    { u"juli", 7 }, { u"august", 8 }, { u"september", 9 }, { u"october", 10 }, { u"oktober", 10 },
    { u"november", 11 }, { u"december", 12 }, { u"dezember", 12 } });

constexpr auto WholeMonths = std::to_array<MonthName>({
    // clang-format off
    { u"janvier", 1 }, { u"février", 2 }, { u"mars", 3 }, { u"avril", 4 }, { u"juin", 6 }, { u"juillet", 7 },
    { u"août", 8 }, { u"septembre", 9 }, { u"octobre", 10 }, { u"novembre", 11 }, { u"décembre", 12 },
    { u"enero", 1 }, { u"febrero", 2 }, { u"marzo", 3 }, { u"abril", 4 }, { u"mayo", 5 }, { u"junio", 6 },
    { u"julio", 7 }, { u"agosto", 8 }, { u"septiembre", 9 }, { u"octubre", 10 }, { u"noviembre", 11 },
    { u"diciembre", 12 },
    { u"gennaio", 1 }, { u"febbraio", 2 }, { u"aprile", 4 }, { u"maggio", 5 }, { u"giugno", 6 }, { u"luglio", 7 },
    { u"settembre", 9 }, { u"ottobre", 10 }, { u"dicembre", 12 },
    { u"janeiro", 1 }, { u"fevereiro", 2 }, { u"março", 3 }, { u"maio", 5 }, { u"junho", 6 }, { u"julho", 7 },
    { u"setembro", 9 }, { u"outubro", 10 }, { u"novembro", 11 }, { u"dezembro", 12 },
    { u"januari", 1 }, { u"februari", 2 }, { u"maart", 3 }, { u"mei", 5 }, { u"augustus", 8 },
    { u"január", 1 }, { u"február", 2 }, { u"március", 3 }, { u"április", 4 }, { u"május", 5 }, { u"június", 6 },
    { u"július", 7 }, { u"augusztus", 8 }, { u"szeptember", 9 }, { u"október", 10 },
    { u"ocak", 1 }, { u"mart", 3 },
    // clang-format on
});

constexpr std::size_t LongestName = 16;
constexpr std::size_t ShortestPrefix = 3;

// ASCII and Latin-1 capitals in lower case: all that the names above need.
constexpr char16_t lowered(char16_t unit)
{
    const bool capital = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
    return capital ? static_cast<char16_t>(unit + 32) : unit;
}

constexpr std::uint64_t keyOf(std::u16string_view three)
{
    return static_cast<std::uint64_t>(lowered(three[0])) << 32
        | static_cast<std::uint64_t>(lowered(three[1])) << 16 | lowered(three[2]);
}

template <std::size_t Size> consteval auto keysOf(const std::array<std::u16string_view, Size>& names)
{
    std::array<std::uint64_t, Size> keys {};
    std::ranges::transform(names, keys.begin(), keyOf);
    return keys;
}

constexpr auto MonthKeys = keysOf(Months);
constexpr auto WeekdayKeys = keysOf(Weekdays);

std::optional<int> indexOfAbbreviation(std::span<const std::uint64_t> keys, std::u16string_view name)
{
    if (name.size() != ShortestPrefix)
        return std::nullopt;
    const auto found = std::ranges::find(keys, keyOf(name));
    return found == keys.end() ? std::nullopt : std::optional(static_cast<int>(found - keys.begin()));
}

std::optional<int> indexOfName(std::span<const std::u16string_view> names, std::u16string_view name)
{
    for (std::size_t index = 0; index < names.size(); ++index) {
        if (std::ranges::equal(names[index], name, {}, lowered, lowered))
            return static_cast<int>(index);
    }
    return std::nullopt;
}

std::optional<int> monthOfIndex(std::optional<int> index)
{
    return index ? std::optional(*index + 1) : std::nullopt;
}

} // namespace

std::optional<int> monthOfAbbreviation(std::u16string_view name)
{
    return monthOfIndex(indexOfAbbreviation(MonthKeys, name));
}

std::optional<int> weekdayOfAbbreviation(std::u16string_view name)
{
    return indexOfAbbreviation(WeekdayKeys, name);
}

std::optional<int> weekdayOfName(std::u16string_view name) { return indexOfName(Weekdays, name); }

std::optional<int> monthOfName(std::u16string_view name) { return monthOfIndex(indexOfName(Months, name)); }

std::u16string_view nameOfMonth(int month) { return Months.at(static_cast<std::size_t>(month) - 1); }

std::optional<int> monthOfAnyName(std::u16string_view name)
{
    if (name.size() < ShortestPrefix || name.size() > LongestName)
        return std::nullopt;
    std::array<char16_t, LongestName> buffer {};
    std::ranges::transform(name, buffer.begin(), lowered);
    const std::u16string_view word(buffer.data(), name.size());
    for (const MonthName& entry : PrefixMonths) {
        if (entry.name.starts_with(word))
            return entry.month;
    }
    for (const MonthName& entry : WholeMonths) {
        if (entry.name == word)
            return entry.month;
    }
    return std::nullopt;
}

} // namespace caddis
