// Dates to text by a Unicode date pattern; reading is in DateFormatter.cpp.

#include "platform/base/Format.h"
#include "platform/dates/CalendarNames.h"
#include "platform/dates/DateCursor.h"
#include "platform/dates/DateFormatter.h"
#include "platform/dates/TimeZone.h"

namespace caddis {

namespace {

void appendNumber(MutableString& out, int number, std::size_t digits)
{
    const String text = format(u"%d", number);
    for (std::size_t zeros = text.length(); zeros < digits; ++zeros)
        out.append(u'0');
    out.append(text);
}

void appendField(MutableString& out, const CivilTime& civil, char16_t letter, std::size_t count)
{
    constexpr std::size_t FullName = 4;
    switch (letter) {
    case u'y':
        return appendNumber(out, civil.year, count);
    case u'M':
        if (count >= FullName)
            out.append(nameOfMonth(civil.month));
        else
            appendNumber(out, civil.month, count);
        return;
    case u'd':
        return appendNumber(out, civil.day, count);
    case u'H':
        return appendNumber(out, civil.hour, count);
    case u'm':
        return appendNumber(out, civil.minute, count);
    case u's':
        return appendNumber(out, civil.second, count);
    default:
        return;
    }
}

// The pattern behind an opening apostrophe, up to and with the closing one.
void appendQuoted(MutableString& out, DateCursor& pattern)
{
    if (pattern.eat(u'\'')) {
        out.append(u'\'');
        return;
    }
    while (!pattern.atEnd()) {
        const char16_t unit = pattern.peek();
        pattern.skip(1);
        if (unit == u'\'' && !pattern.eat(u'\''))
            return;
        out.append(unit);
    }
}

} // namespace

String DateFormatter::stringFromDate(Date date) const
{
    const CivilTime civil = TimeZone::defaultZone().civilTime(date);
    MutableString out;
    for (DateCursor pattern(m_dateFormat); !pattern.atEnd();) {
        const char16_t unit = pattern.peek();
        if (isAsciiLetter(unit)) {
            appendField(
                out, civil, unit, pattern.run([unit](char16_t other) { return other == unit; }).size());
            continue;
        }
        pattern.skip(1);
        if (unit == u'\'')
            appendQuoted(out, pattern);
        else
            out.append(unit);
    }
    return std::move(out).take();
}

const DateFormatter& DateFormatter::dateTimeFormatter()
{
    static const DateFormatter shared(u"d MMMM yyyy, HH:mm");
    return shared;
}

} // namespace caddis
