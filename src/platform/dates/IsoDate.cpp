#include "platform/dates/IsoDate.h"

#include "platform/dates/DateCursor.h"
#include "platform/dates/TimeZone.h"

namespace caddis {

namespace {

constexpr bool isSeparator(char16_t unit) { return unit == u'-' || unit == u'/' || unit == u'.'; }

class IsoReading {
public:
    explicit IsoReading(std::u16string_view text)
        : m_text(text)
    {
    }

    std::optional<Date> read()
    {
        m_text.skipBlanks();
        if (!readDate() || !readTime() || !readZone() || !m_text.atEnd() || !m_civil.isValid())
            return std::nullopt;
        return (m_zone ? *m_zone : TimeZone::defaultZone()).date(m_civil);
    }

private:
    std::size_t digitsAhead() const
    {
        DateCursor ahead = m_text;
        return ahead.run(isAsciiDigit).size();
    }
    // For digits known to be there.
    int take(int digits) { return m_text.number(digits, digits).value_or(0); }

    bool readDate();
    bool readBehindYear();
    bool readDayOfYear(int dayOfYear);
    bool readWeek();
    bool readTime();
    bool readClock();
    void readFraction();
    bool readZone();

    DateCursor m_text;
    CivilTime m_civil;
    std::optional<TimeZone> m_zone;
};

bool IsoReading::readDate()
{
    const std::size_t digits = digitsAhead();
    switch (digits) {
    case 4:
        m_civil.year = take(4);
        return readBehindYear();
    case 5:
        m_civil.year = yearOfTwoDigits(take(2));
        return readDayOfYear(take(3));
    case 6:
        m_civil.year = yearOfTwoDigits(take(2));
        break;
    case 7:
        m_civil.year = take(4);
        return readDayOfYear(take(3));
    case 8:
    case 12:
    case 14:
        m_civil.year = take(4);
        break;
    default:
        return false;
    }
    m_civil.month = take(2);
    m_civil.day = take(2);
    if (digits >= 12) {
        m_civil.hour = take(2);
        m_civil.minute = take(2);
        m_civil.second = digits == 14 ? take(2) : 0;
    }
    return true;
}

bool IsoReading::readBehindYear()
{
    if (m_text.peek() == u'W')
        return readWeek();
    const char16_t separator = m_text.peek();
    if (!isSeparator(separator))
        return true;
    m_text.skip(1);
    if (m_text.peek() == u'W')
        return readWeek();
    const std::size_t digits = digitsAhead();
    if (digits < 1 || digits > 3)
        return false;
    const int number = take(static_cast<int>(digits));
    if (digits == 3 && m_text.peek() != separator)
        return readDayOfYear(number);
    m_civil.month = number;
    if (!m_text.eat(separator))
        return true;
    const auto day = m_text.number(1, 2);
    m_civil.day = day.value_or(0);
    return day && !isAsciiDigit(m_text.peek());
}

bool IsoReading::readDayOfYear(int dayOfYear)
{
    const auto start = CivilTime { .year = m_civil.year };
    if (dayOfYear < 1 || !start.isValid())
        return false;
    const int year = m_civil.year;
    m_civil = CivilTime::fromSeconds(start.seconds() + (dayOfYear - 1) * std::int64_t { 86400 });
    return m_civil.year == year;
}

bool IsoReading::readWeek()
{
    m_text.skip(1);
    const auto week = m_text.number(2, 2);
    if (!week || *week < 1 || *week > 53 || m_civil.year < 1)
        return false;
    DateCursor ahead = m_text;
    if (isSeparator(ahead.peek()))
        ahead.skip(1);
    const auto day = ahead.number(1, 1);
    if (day)
        m_text = ahead;
    // Week 1 is the week, from Monday, that has 4 January in it.
    const std::int64_t fourth = daysFromCivil(m_civil.year, 1, 4);
    const std::int64_t monday = fourth - (weekdayOfDays(fourth) + 6) % 7;
    m_civil = CivilTime::fromSeconds((monday + (*week - 1) * 7 + day.value_or(1) - 1) * 86400);
    return day.value_or(1) >= 1 && day.value_or(1) <= 7;
}

bool IsoReading::readTime()
{
    const bool marked = (m_text.peek() | 32) == u't';
    if (marked) {
        m_text.skip(1);
        return readClock();
    }
    DateCursor behindBlanks = m_text;
    behindBlanks.skipBlanks();
    if (!isBlank(m_text.peek()) || !isAsciiDigit(behindBlanks.peek()))
        return true;
    m_text = behindBlanks;
    return readClock();
}

bool IsoReading::readClock()
{
    const std::size_t digits = digitsAhead();
    if (digits != 1 && digits != 2 && digits != 4 && digits != 6)
        return false;
    m_civil.hour = take(digits == 1 ? 1 : 2);
    if (digits >= 4) {
        m_civil.minute = take(2);
        m_civil.second = digits == 6 ? take(2) : 0;
    } else if (m_text.eat(u':')) {
        const auto minute = m_text.number(1, 2);
        const auto second = m_text.eat(u':') ? m_text.number(1, 2) : std::optional(0);
        if (!minute || !second)
            return false;
        m_civil.minute = *minute;
        m_civil.second = *second;
    }
    readFraction();
    return !isAsciiDigit(m_text.peek());
}

void IsoReading::readFraction()
{
    const char16_t point = m_text.peek();
    if ((point != u'.' && point != u',') || !isAsciiDigit(m_text.peek(1)))
        return;
    m_text.skip(1);
    double scale = 0.1;
    for (; isAsciiDigit(m_text.peek()); m_text.skip(1), scale /= 10)
        m_civil.fraction += (m_text.peek() - u'0') * scale;
}

bool IsoReading::readZone()
{
    m_text.skipBlanks();
    if (m_text.atEnd())
        return true;
    const auto name = m_text.run([](char16_t unit) { return !isBlank(unit); });
    m_text.skipBlanks();
    m_zone = TimeZone::named(name);
    return m_zone.has_value();
}

} // namespace

std::optional<Date> readIsoDate(std::u16string_view text) { return IsoReading(text).read(); }

} // namespace caddis
