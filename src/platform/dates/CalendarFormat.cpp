#include "platform/dates/CalendarFormat.h"

#include "platform/dates/CalendarNames.h"
#include "platform/dates/DateCursor.h"
#include "platform/dates/IsoDate.h"
#include "platform/dates/TimeZone.h"

namespace caddis {

namespace {

class CalendarReading {
public:
    explicit CalendarReading(std::u16string_view text)
        : m_text(text)
    {
    }

    std::optional<Date> readBy(std::u16string_view format)
    {
        for (std::size_t index = 0; index < format.size(); ++index) {
            const char16_t unit = format[index];
            if (unit == u' ')
                m_text.skipBlanks();
            else if (unit == u'%' && index + 1 < format.size() ? !readField(format[++index])
                                                               : !m_text.eat(unit))
                return std::nullopt;
        }
        return m_text.atEnd() ? date() : std::nullopt;
    }

private:
    using NameReader = std::optional<int> (*)(std::u16string_view);

    bool readField(char16_t specifier);
    bool readNumber(int least, int most, int& field)
    {
        m_text.skipBlanks();
        const auto value = m_text.number(least, most);
        field = value.value_or(0);
        return value.has_value();
    }
    // Three letters at most for an abbreviation, else as many as there are.
    std::optional<int> readName(NameReader reader, bool abbreviated)
    {
        DateCursor ahead = m_text;
        auto name = ahead.run(isAsciiLetter);
        if (abbreviated)
            name = name.substr(0, 3);
        const auto value = reader(name);
        if (value)
            m_text.skip(name.size());
        return value;
    }
    bool readMonthName(NameReader reader, bool abbreviated)
    {
        const auto month = readName(reader, abbreviated);
        m_civil.month = month.value_or(0);
        return month.has_value();
    }
    bool readZone()
    {
        m_text.skipBlanks();
        const auto name = m_text.run([](char16_t unit) { return !isBlank(unit); });
        m_zone = TimeZone::named(name);
        return m_zone.has_value();
    }
    bool readNumericZone()
    {
        m_text.skipBlanks();
        const auto offset = readOffset(m_text);
        m_zone = TimeZone(offset.value_or(0));
        return offset.has_value();
    }
    std::optional<Date> date()
    {
        const TimeZone& zone = m_zone ? *m_zone : TimeZone::defaultZone();
        if (!m_hasYear)
            m_civil.year = zone.civilTime(Date::now()).year;
        if (!m_civil.isValid())
            return std::nullopt;
        return zone.date(m_civil);
    }

    DateCursor m_text;
    CivilTime m_civil;
    bool m_hasYear = false;
    std::optional<TimeZone> m_zone;
};

bool CalendarReading::readField(char16_t specifier)
{
    switch (specifier) {
    case u'Y':
        m_hasYear = true;
        return readNumber(4, 4, m_civil.year);
    case u'y':
        m_hasYear = readNumber(2, 2, m_civil.year);
        m_civil.year = yearOfTwoDigits(m_civil.year);
        return m_hasYear;
    case u'm':
        return readNumber(1, 2, m_civil.month);
    case u'd':
        return readNumber(1, 2, m_civil.day);
    case u'H':
        return readNumber(1, 2, m_civil.hour);
    case u'M':
        return readNumber(1, 2, m_civil.minute);
    case u'S':
        return readNumber(1, 2, m_civil.second);
    case u'b':
        return readMonthName(monthOfAbbreviation, true);
    case u'B':
        return readMonthName(monthOfName, false);
    case u'a':
        return readName(weekdayOfAbbreviation, true).has_value();
    case u'A':
        return readName(weekdayOfName, false).has_value();
    case u'Z':
        return readZone();
    case u'z':
        return readNumericZone();
    default:
        return specifier == u'%' && m_text.eat(u'%');
    }
}

} // namespace

std::optional<Date> dateWithString(std::u16string_view text, std::u16string_view calendarFormat)
{
    return CalendarReading(text).readBy(calendarFormat);
}

} // namespace caddis
