#include "platform/script/applescript/DateProperties.h"

#include "platform/script/LongDateTime.h"
#include "platform/script/applescript/Coercions.h"
#include "platform/script/applescript/DateText.h"

namespace caddis::applescript {

namespace {

Datum named(Symbol first, int index)
{
    return Datum::classNamed(static_cast<Symbol>(static_cast<int>(first) + index));
}

std::int64_t timeOfDay(const std::tm& fields)
{
    return fields.tm_hour * std::int64_t { 3600 } + fields.tm_min * std::int64_t { 60 } + fields.tm_sec;
}

} // namespace

std::optional<Datum> dateProperty(const DateObject& date, Symbol name)
{
    const auto fields = calendarFields(date.seconds);
    if (!fields)
        return std::nullopt;
    switch (name) {
    case Symbol::Year:
        return Datum::integer(std::int64_t { fields->tm_year } + 1900);
    case Symbol::Month:
        return named(Symbol::January, fields->tm_mon);
    case Symbol::Day:
        return Datum::integer(fields->tm_mday);
    case Symbol::Weekday:
        return named(Symbol::Sunday, fields->tm_wday);
    case Symbol::Hours:
        return Datum::integer(fields->tm_hour);
    case Symbol::Minutes:
        return Datum::integer(fields->tm_min);
    case Symbol::Seconds:
        return Datum::integer(fields->tm_sec);
    case Symbol::Time:
        return Datum::integer(timeOfDay(*fields));
    case Symbol::DateString:
        return Datum::text(dateString(date.seconds));
    case Symbol::ShortDateString:
        return Datum::text(shortDateString(date.seconds));
    case Symbol::TimeString:
        return Datum::text(timeString(date.seconds));
    default:
        return std::nullopt;
    }
}

bool setDateProperty(Interpreter& interpreter, DateObject& date, Symbol name, const Datum& value)
{
    auto fields = calendarFields(date.seconds);
    if (!fields)
        return false;
    const auto number = [&] { return static_cast<int>(requireInteger(interpreter, value)); };
    switch (name) {
    case Symbol::Year:
        fields->tm_year = number() - 1900;
        break;
    case Symbol::Month:
        fields->tm_mon = number() - 1;
        break;
    case Symbol::Day:
        fields->tm_mday = number();
        break;
    case Symbol::Hours:
        fields->tm_hour = number();
        break;
    case Symbol::Minutes:
        fields->tm_min = number();
        break;
    case Symbol::Seconds:
        fields->tm_sec = number();
        break;
    case Symbol::Time:
        date.seconds += requireInteger(interpreter, value) - timeOfDay(*fields);
        return true;
    default:
        return false;
    }
    date.seconds = longDateTimeFromFields(*fields);
    return true;
}

} // namespace caddis::applescript
