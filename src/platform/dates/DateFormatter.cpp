#include "platform/dates/DateFormatter.h"

#include "platform/dates/DateCursor.h"
#include "platform/dates/TimeZone.h"

namespace caddis {

namespace {

struct PatternReading {
    DateCursor text;
    CivilTime civil { .year = 0 };
    std::optional<TimeZone> zone = std::nullopt;

    bool readNumber(int least, int most, int& field)
    {
        const auto value = text.number(least, most);
        field = value.value_or(0);
        return value.has_value();
    }

    bool readField(char16_t letter)
    {
        switch (letter) {
        case u'y':
            return readNumber(4, 4, civil.year);
        case u'M':
            return readNumber(1, 2, civil.month);
        case u'd':
            return readNumber(1, 2, civil.day);
        case u'H':
            return readNumber(1, 2, civil.hour);
        case u'm':
            return readNumber(1, 2, civil.minute);
        case u's':
            return readNumber(1, 2, civil.second);
        case u'Z':
            zone = TimeZone::named(text.run([](char16_t unit) { return !isBlank(unit); }));
            return zone.has_value();
        default:
            return false;
        }
    }

    // The pattern behind an opening apostrophe, up to and with the closing one.
    bool readQuoted(DateCursor& pattern)
    {
        if (pattern.eat(u'\''))
            return text.eat(u'\'');
        while (!pattern.atEnd()) {
            const char16_t unit = pattern.peek();
            pattern.skip(1);
            if (unit == u'\'' && !pattern.eat(u'\''))
                return true;
            if (!text.eat(unit))
                return false;
        }
        return false;
    }

    bool readBy(DateCursor pattern)
    {
        while (!pattern.atEnd()) {
            const char16_t unit = pattern.peek();
            if (isAsciiLetter(unit)) {
                pattern.run([unit](char16_t other) { return other == unit; });
                if (!readField(unit))
                    return false;
            } else {
                pattern.skip(1);
                if (unit == u'\'' ? !readQuoted(pattern) : !text.eat(unit))
                    return false;
            }
        }
        return text.atEnd();
    }
};

} // namespace

std::optional<Date> DateFormatter::dateFromString(std::u16string_view text) const
{
    PatternReading reading { DateCursor(text) };
    if (!reading.readBy(DateCursor(m_dateFormat)) || !reading.civil.isValid())
        return std::nullopt;
    return (reading.zone ? *reading.zone : TimeZone::defaultZone()).date(reading.civil);
}

} // namespace caddis
