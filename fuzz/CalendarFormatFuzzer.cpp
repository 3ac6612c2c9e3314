// Formats and date patterns from outside, over texts from outside: the first line is the format.
//
// Invariants: nothing is thrown; what is read is an instant of the years 1 to 9999, a day's offset aside; a
// format without a field reads only its own text, and that as 1 January of the present year.

#include "Fuzz.h"
#include "platform/base/String.h"
#include "platform/dates/CalendarFormat.h"
#include "platform/dates/DateFormatter.h"
#include "platform/dates/TimeZone.h"

using caddis::String;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::TimeZone::setDefaultZone(caddis::TimeZone());
    const String input = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    const std::size_t line = input.view().find(u'\n');
    const std::u16string_view format = input.view().substr(0, line);
    const std::u16string_view text
        = input.view().substr(line == input.view().npos ? input.length() : line + 1);
    const auto calendarDate = caddis::dateWithString(text, format);
    for (const auto& date : { calendarDate, caddis::DateFormatter(format).dateFromString(text) })
        INVARIANT(!date || (date->unixSeconds() > -62135700000.0 && date->unixSeconds() < 253402400000.0));
    if (calendarDate && format.find(u'%') == format.npos) {
        const caddis::CivilTime civil = caddis::TimeZone().civilTime(*calendarDate);
        INVARIANT(civil.month == 1 && civil.day == 1 && civil.hour == 0);
    }
    return 0;
}
