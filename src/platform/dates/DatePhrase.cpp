#include "platform/dates/DatePhrase.h"

#include "platform/dates/IsoDate.h"

#include <algorithm>

namespace caddis {

namespace {

using Kind = DateWord::Kind;

constexpr int LongestMonth = 31;
constexpr std::int64_t SecondsPerDay = 86400;

bool isYear(DatePhrase::Number number) { return number.digits == 4 || number.value > LongestMonth; }

int yearOf(DatePhrase::Number number)
{
    return number.digits == 2 ? yearOfTwoDigits(number.value) : number.value;
}

CivilTime startOfDay(CivilTime civil)
{
    return { .year = civil.year, .month = civil.month, .day = civil.day };
}

} // namespace

void DatePhrase::addNumber(Number number)
{
    if (m_count < MostNumbers)
        m_numbers[m_count++] = number;
}

void DatePhrase::removeNumber(std::size_t index)
{
    std::shift_left(m_numbers.begin() + index, m_numbers.begin() + m_count, 1);
    --m_count;
}

bool DatePhrase::takeNumberAsHour()
{
    if (clock || m_count == 0 || m_numbers[m_count - 1].value > 12)
        return false;
    clock = Clock { .hour = m_numbers[--m_count].value };
    return true;
}

void DatePhrase::addWord(DateWord word)
{
    switch (word.kind) {
    case Kind::Unknown:
        ++unknownWords;
        break;
    case Kind::Month:
        month = word.value;
        m_monthNamed = true;
        break;
    case Kind::Weekday:
        m_weekday = word.value;
        break;
    case Kind::Now:
        m_now = true;
        [[fallthrough]];
    case Kind::Day:
        m_dayShift = word.value;
        break;
    case Kind::Direction:
        m_direction = word.value;
        break;
    case Kind::Days:
    case Kind::Months:
        (word.kind == Kind::Days ? m_unitDays : m_unitMonths) = word.value;
        m_unitCount = m_count ? m_numbers[--m_count].value : 1;
        break;
    case Kind::Hour:
        setClock({ .hour = word.value });
        break;
    case Kind::Zone:
        if (!zone)
            zone = TimeZone(word.value);
        break;
    case Kind::Meridiem:
    case Kind::Filler:
        break;
    }
}

std::optional<Date> DatePhrase::date(std::optional<Date> now)
{
    if (!placeNumbers() || !saysEnough())
        return std::nullopt;
    if (!zone)
        zone = customaryOffset ? TimeZone(*customaryOffset) : TimeZone::defaultZone();
    const Date present = now ? *now : Date::now();
    if (m_now && !clock && !year && !month)
        return present;
    auto civil = calendarDay(startOfDay(zone->civilTime(present)));
    if (!civil || !readTime(*civil) || !civil->isValid())
        return std::nullopt;
    return zone->date(*civil);
}

// Year 0 and the like are found by the last check of the whole reading.
bool DatePhrase::placeNumbers()
{
    const bool yearFirst = m_count > 0 && !year && isYear(m_numbers[0]);
    if (!year) {
        const auto end = m_numbers.begin() + m_count;
        const auto found = std::find_if(m_numbers.begin(), end, isYear);
        if (found != end) {
            if (found->digits == 3)
                return false;
            year = yearOf(*found);
            removeNumber(static_cast<std::size_t>(found - m_numbers.begin()));
        }
    }
    return placeDayAndMonth(yearFirst);
}

bool DatePhrase::placeDayAndMonth(bool yearFirst)
{
    if (month && !day && m_count > 0) {
        day = m_numbers[0].value;
        removeNumber(0);
    } else if (!month && year && m_count == 1) {
        month = m_numbers[0].value;
        removeNumber(0);
    } else if (!month && m_count >= 2) {
        day = m_numbers[yearFirst ? 1 : 0].value;
        month = m_numbers[yearFirst ? 0 : 1].value;
        if (*month > 12 && *day <= 12)
            std::swap(*month, *day);
        removeNumber(0);
        removeNumber(0);
    }
    if (!year && day && m_count == 1 && m_numbers[0].digits == 2) {
        year = yearOf(m_numbers[0]);
        removeNumber(0);
    }
    return m_count == 0;
}

bool DatePhrase::saysEnough() const
{
    const bool dangling = m_direction && !m_weekday && !m_unitDays && !m_unitMonths;
    if (unknownWords > 0 || dangling)
        return year && month && (m_monthNamed || day);
    return true;
}

bool DatePhrase::readTime(CivilTime& civil) const
{
    if (!clock)
        return true;
    civil.hour = clock->hour;
    civil.minute = clock->minute;
    civil.second = clock->second;
    if (!meridiem || (civil.hour > 12 && *meridiem == 12))
        return true;
    const bool twelveHours = civil.hour <= 12;
    civil.hour = civil.hour % 12 + *meridiem;
    return twelveHours;
}

std::optional<CivilTime> DatePhrase::calendarDay(const CivilTime& today) const
{
    if (year || month)
        return CivilTime {
            .year = year.value_or(today.year), .month = month.value_or(1), .day = day.value_or(1)
        };
    const bool distance = m_unitDays || m_unitMonths;
    if (distance ? !m_direction : !m_weekday && !m_dayShift && !clock)
        return std::nullopt;
    return relativeDay(today);
}

std::optional<CivilTime> DatePhrase::relativeDay(CivilTime today) const
{
    const int distance = m_direction.value_or(0) * m_unitCount;
    const int months = today.year * 12 + today.month - 1 + distance * m_unitMonths.value_or(0);
    if (months < 12 || months >= 10000 * 12)
        return std::nullopt;
    today.year = months / 12;
    today.month = months % 12 + 1;
    while (!today.isValid())
        --today.day;
    const std::int64_t days = daysFromCivil(today.year, today.month, today.day)
        + distance * m_unitDays.value_or(0) + m_dayShift.value_or(0);
    CivilTime result = CivilTime::fromSeconds((days + daysToWeekday(days)) * SecondsPerDay);
    result.hour = 12;
    return result;
}

std::int64_t DatePhrase::daysToWeekday(std::int64_t days) const
{
    if (!m_weekday)
        return 0;
    const int shift = (*m_weekday + 6) % 7 - (weekdayOfDays(days) + 6) % 7;
    const int direction = m_unitDays || m_unitMonths ? 0 : m_direction.value_or(0);
    const bool beyond = direction * shift > 0;
    return direction == 0 || beyond ? shift : shift + 7 * direction;
}

} // namespace caddis
