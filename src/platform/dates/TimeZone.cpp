#include "platform/dates/TimeZone.h"

#include "platform/base/String.h"
#include "platform/dates/DateCursor.h"
#include "platform/dates/ZoneRules.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

namespace caddis {

namespace {

constexpr const char* Database = "/usr/share/zoneinfo/";
constexpr const char* SystemZone = "/etc/localtime";
constexpr std::size_t LargestFile = 65536; // The largest of the database has less than 4,000 bytes.
constexpr std::size_t LongestName = 64;
constexpr int MostOffset = 18 * 3600;
constexpr std::int64_t SecondsPerDay = 86400;

std::optional<TimeZone> readZoneFile(const std::string& path)
{
    std::vector<std::byte> bytes(LargestFile);
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), LargestFile);
    auto rules = ZoneRules::fromFile(std::span(bytes).first(static_cast<std::size_t>(file.gcount())));
    if (!rules)
        return std::nullopt;
    return TimeZone(std::make_shared<const ZoneRules>(*std::move(rules)));
}

// "Area/Place" with a capital first: neither a way out of the database nor into its "posix" and "right"
// trees.
bool isDatabaseName(std::u16string_view name)
{
    if (name.empty() || name.size() > LongestName || name[0] < u'A' || name[0] > u'Z')
        return false;
    return std::ranges::all_of(name, [](char16_t unit) {
        return isAsciiLetter(unit) || isAsciiDigit(unit) || unit == u'/' || unit == u'_' || unit == u'-'
            || unit == u'+';
    });
}

std::optional<TimeZone> zoneOfEnvironment(std::string_view variable)
{
    if (variable.starts_with(':'))
        variable.remove_prefix(1);
    if (variable.starts_with('/'))
        return readZoneFile(std::string(variable));
    const String name = String::fromUtf8(variable);
    if (auto zone = TimeZone::inDatabase(name))
        return zone;
    if (const auto rule = PosixZoneRule::parse(name))
        return TimeZone(std::make_shared<const ZoneRules>(ZoneRules::fromRule(*rule)));
    return std::nullopt;
}

TimeZone systemZone()
{
    const char* variable = std::getenv("TZ");
    return (variable ? zoneOfEnvironment(variable) : readZoneFile(SystemZone)).value_or(TimeZone());
}

TimeZone& currentDefaultZone()
{
    static TimeZone zone = systemZone();
    return zone;
}

} // namespace

const TimeZone& TimeZone::defaultZone() { return currentDefaultZone(); }

void TimeZone::setDefaultZone(TimeZone zone) { currentDefaultZone() = std::move(zone); }

std::optional<TimeZone> TimeZone::inDatabase(std::u16string_view name)
{
    if (!isDatabaseName(name))
        return std::nullopt;
    return readZoneFile(Database + String(name).utf8());
}

std::optional<TimeZone> TimeZone::named(std::u16string_view name)
{
    if (const auto offset = offsetOfAbbreviation(name))
        return TimeZone(*offset);
    DateCursor cursor(name);
    const auto letters = cursor.run(isAsciiLetter);
    if (letters.empty() || offsetOfAbbreviation(letters) == 0) {
        const auto offset = readOffset(cursor);
        if (offset && cursor.atEnd())
            return TimeZone(*offset);
    }
    return inDatabase(name);
}

int TimeZone::offsetAt(std::int64_t unixSeconds) const
{
    return m_rules ? m_rules->offsetAt(unixSeconds) : m_offset;
}

Date TimeZone::date(const CivilTime& civil) const
{
    const std::int64_t local = civil.seconds();
    int offset = m_offset;
    if (m_rules) {
        // No clock changes twice within two days.
        const int before = m_rules->offsetAt(local - SecondsPerDay);
        const int after = m_rules->offsetAt(local + SecondsPerDay);
        const bool changed
            = m_rules->offsetAt(local - before) != before && m_rules->offsetAt(local - after) == after;
        offset = changed ? after : before;
    }
    return Date::fromUnixSeconds(static_cast<double>(local - offset) + civil.fraction);
}

CivilTime TimeZone::civilTime(Date date) const
{
    constexpr double Farthest = 1e12; // far beyond the years of a civil time
    const double seconds = std::clamp(std::floor(date.unixSeconds()), -Farthest, Farthest);
    const std::int64_t instant = std::isnan(seconds) ? 0 : static_cast<std::int64_t>(seconds);
    return CivilTime::fromSeconds(instant + offsetAt(instant));
}

std::optional<int> readOffset(DateCursor& cursor)
{
    constexpr char16_t MinusSign = 0x2212;
    DateCursor ahead = cursor;
    const bool negative = ahead.eat(u'-') || ahead.eat(MinusSign);
    if (!negative && !ahead.eat(u'+'))
        return std::nullopt;
    const auto hours = ahead.number(1, 2);
    if (!hours)
        return std::nullopt;
    DateCursor behindColon = ahead;
    behindColon.eat(u':');
    const auto minutes = behindColon.number(2, 2);
    if (minutes)
        ahead = behindColon;
    const int offset = *hours * 3600 + minutes.value_or(0) * 60;
    if (offset > MostOffset || minutes.value_or(0) > 59 || isAsciiDigit(ahead.peek()))
        return std::nullopt;
    cursor = ahead;
    return negative ? -offset : offset;
}

} // namespace caddis
