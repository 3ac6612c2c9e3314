#include "platform/dates/PosixZoneRule.h"

#include "platform/dates/CivilTime.h"
#include "platform/dates/DateCursor.h"

namespace caddis {

namespace {

using Change = PosixZoneRule::Change;

constexpr std::int64_t SecondsPerDay = 86400;

bool isLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

// Three or more letters, or any text in angle brackets.
bool skipName(DateCursor& cursor)
{
    if (!cursor.eat(u'<'))
        return cursor.run(isAsciiLetter).size() >= 3;
    cursor.run([](char16_t unit) { return unit != u'>'; });
    return cursor.eat(u'>');
}

// [+-]h[:m[:s]] in seconds.
std::optional<int> readTime(DateCursor& cursor, int mostHours)
{
    const bool negative = cursor.eat(u'-');
    if (!negative)
        cursor.eat(u'+');
    const auto hours = cursor.number(1, 3);
    if (!hours || *hours > mostHours)
        return std::nullopt;
    int seconds = *hours * 3600;
    for (int unit = 60; unit >= 1 && cursor.eat(u':'); unit /= 60) {
        const auto part = cursor.number(1, 2);
        if (!part || *part > 59)
            return std::nullopt;
        seconds += *part * unit;
    }
    return negative ? -seconds : seconds;
}

// Written as what must be added to get UTC: the sign is the other way round.
std::optional<int> readZoneOffset(DateCursor& cursor)
{
    const auto seconds = readTime(cursor, 24);
    return seconds ? std::optional(-*seconds) : std::nullopt;
}

bool readNumber(DateCursor& cursor, int least, int most, int& value)
{
    const auto number = cursor.number(1, 3);
    value = number.value_or(-1);
    return value >= least && value <= most;
}

bool readDay(DateCursor& cursor, Change& change)
{
    if (cursor.eat(u'M')) {
        change.kind = Change::Kind::WeekdayOfMonth;
        return readNumber(cursor, 1, 12, change.month) && cursor.eat(u'.')
            && readNumber(cursor, 1, 5, change.week) && cursor.eat(u'.')
            && readNumber(cursor, 0, 6, change.day);
    }
    const bool julian = cursor.eat(u'J');
    change.kind = julian ? Change::Kind::JulianDay : Change::Kind::DayOfYear;
    return readNumber(cursor, julian ? 1 : 0, 365, change.day);
}

bool readChange(DateCursor& cursor, Change& change)
{
    if (!cursor.eat(u',') || !readDay(cursor, change))
        return false;
    if (!cursor.eat(u'/'))
        return true;
    const auto time = readTime(cursor, 167);
    change.time = time.value_or(0);
    return time.has_value();
}

} // namespace

std::int64_t Change::secondsInYear(int year) const
{
    std::int64_t days = daysFromCivil(year, 1, 1);
    if (kind == Kind::DayOfYear) {
        days += day;
    } else if (kind == Kind::JulianDay) {
        days += day - 1 + (isLeapYear(year) && day >= 60 ? 1 : 0);
    } else {
        const std::int64_t first = daysFromCivil(year, month, 1);
        const std::int64_t next
            = month == 12 ? daysFromCivil(year + 1, 1, 1) : daysFromCivil(year, month + 1, 1);
        days = first + (day - weekdayOfDays(first) + 7) % 7 + (week - 1) * 7;
        if (days >= next)
            days -= 7;
    }
    return days * SecondsPerDay + time;
}

std::optional<PosixZoneRule> PosixZoneRule::parse(std::u16string_view text)
{
    DateCursor cursor(text);
    PosixZoneRule rule;
    const auto standard = skipName(cursor) ? readZoneOffset(cursor) : std::nullopt;
    if (!standard)
        return std::nullopt;
    rule.standardOffset = *standard;
    if (cursor.atEnd())
        return rule;
    if (!skipName(cursor))
        return std::nullopt;
    rule.hasDaylight = true;
    rule.daylightOffset = rule.standardOffset + 3600;
    if (!cursor.atEnd() && cursor.peek() != u',') {
        const auto daylight = readZoneOffset(cursor);
        if (!daylight)
            return std::nullopt;
        rule.daylightOffset = *daylight;
    }
    if (cursor.atEnd())
        cursor = DateCursor(u",M3.2.0,M11.1.0");
    if (!readChange(cursor, rule.start) || !readChange(cursor, rule.end) || !cursor.atEnd())
        return std::nullopt;
    return rule;
}

int PosixZoneRule::offsetAt(std::int64_t unixSeconds) const
{
    if (!hasDaylight)
        return standardOffset;
    const int year = CivilTime::fromSeconds(unixSeconds + standardOffset).year;
    const std::int64_t starts = start.secondsInYear(year) - standardOffset;
    const std::int64_t ends = end.secondsInYear(year) - daylightOffset;
    // In the south, daylight time runs over the turn of the year.
    const bool daylight = starts < ends ? unixSeconds >= starts && unixSeconds < ends
                                        : unixSeconds >= starts || unixSeconds < ends;
    return daylight ? daylightOffset : standardOffset;
}

} // namespace caddis
