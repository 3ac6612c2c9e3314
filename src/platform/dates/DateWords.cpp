#include "platform/dates/DateWords.h"

#include "platform/dates/CalendarNames.h"
#include "platform/dates/DateCursor.h"
#include "platform/dates/TimeZone.h"

#include <algorithm>
#include <array>

namespace caddis {

namespace {

using Kind = DateWord::Kind;

struct Entry {
    std::u16string_view word;
    DateWord meaning;
};

constexpr auto Words = std::to_array<Entry>({
    // clang-format off
    { u"today", { Kind::Day, 0 } }, { u"tomorrow", { Kind::Day, 1 } }, { u"yesterday", { Kind::Day, -1 } },
    { u"nextday", { Kind::Day, 2 } }, { u"now", { Kind::Now, 0 } },
    { u"ago", { Kind::Direction, -1 } }, { u"last", { Kind::Direction, -1 } }, { u"past", { Kind::Direction, -1 } },
    { u"prior", { Kind::Direction, -1 } }, { u"next", { Kind::Direction, 1 } },
    { u"day", { Kind::Days, 1 } }, { u"days", { Kind::Days, 1 } },
    { u"week", { Kind::Days, 7 } }, { u"weeks", { Kind::Days, 7 } },
    { u"month", { Kind::Months, 1 } }, { u"months", { Kind::Months, 1 } },
    { u"year", { Kind::Months, 12 } }, { u"years", { Kind::Months, 12 } },
    { u"midnight", { Kind::Hour, 0 } }, { u"morning", { Kind::Hour, 10 } }, { u"noon", { Kind::Hour, 12 } },
    { u"lunch", { Kind::Hour, 12 } }, { u"afternoon", { Kind::Hour, 14 } }, { u"dinner", { Kind::Hour, 19 } },
    { u"am", { Kind::Meridiem, 0 } }, { u"오전", { Kind::Meridiem, 0 } },
    { u"上午", { Kind::Meridiem, 0 } }, { u"午前", { Kind::Meridiem, 0 } },
    { u"pm", { Kind::Meridiem, 12 } }, { u"오후", { Kind::Meridiem, 12 } },
    { u"下午", { Kind::Meridiem, 12 } }, { u"午後", { Kind::Meridiem, 12 } },
    { u"a", { Kind::Filler, 0 } }, { u"t", { Kind::Filler, 0 } }, { u"st", { Kind::Filler, 0 } },
    { u"nd", { Kind::Filler, 0 } }, { u"rd", { Kind::Filler, 0 } }, { u"th", { Kind::Filler, 0 } },
    { u"at", { Kind::Filler, 0 } }, { u"on", { Kind::Filler, 0 } }, { u"of", { Kind::Filler, 0 } },
    { u"the", { Kind::Filler, 0 } }, { u"and", { Kind::Filler, 0 } }, { u"uhr", { Kind::Filler, 0 } },
    // clang-format on
});

bool sameWord(std::u16string_view lowerWord, std::u16string_view word)
{
    return std::ranges::equal(lowerWord, word, {}, {},
        [](char16_t unit) { return isAsciiLetter(unit) ? static_cast<char16_t>(unit | 32) : unit; });
}

} // namespace

DateWord meaningOfDateWord(std::u16string_view word)
{
    if (const auto month = monthOfAnyName(word))
        return { Kind::Month, *month };
    for (const Entry& entry : Words) {
        if (sameWord(entry.word, word))
            return entry.meaning;
    }
    const auto weekday = word.size() == 3 ? weekdayOfAbbreviation(word) : weekdayOfName(word);
    if (weekday)
        return { Kind::Weekday, *weekday };
    if (const auto offset = offsetOfAbbreviation(word))
        return { Kind::Zone, *offset };
    return {};
}

} // namespace caddis
