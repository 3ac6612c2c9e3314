// Every reader of dates, over any text.
//
// Invariants: nothing is thrown; the general reader logs at most once, and never for a date that it reads;
// what it reads is an instant of the calendar; an instant's description reads as that instant.

#include "Fuzz.h"
#include "platform/base/Log.h"
#include "platform/dates/TimeZone.h"
#include "text/DateReader.h"
#include "text/DocumentDate.h"

#include <algorithm>
#include <span>

using caddis::String;

namespace {

int logged = 0;

std::optional<caddis::Date> readLogged(const String& text)
{
    logged = 0;
    const auto date = caddis::date(text);
    INVARIANT(logged == 0 || (logged == 1 && !date));
    return date;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    caddis::TimeZone::setDefaultZone(caddis::TimeZone());
    caddis::setLogSink([](const String&) { ++logged; });
    const String text = String::fromUtf8({ reinterpret_cast<const char*>(data), size });
    for (const auto& date : { readLogged(text), caddis::dateFromHTTPHeaderValue(text),
             caddis::dateFromOPF(text), caddis::documentDateByValidatingSeparation(text, true),
             caddis::documentDateByValidatingSeparation(text, false) })
        INVARIANT(!date || (date->unixSeconds() > -62135700000.0 && date->unixSeconds() < 253402400000.0));

    std::uint32_t seconds = 0;
    for (const std::uint8_t byte : std::span(data, size).first(std::min(size, sizeof seconds)))
        seconds = seconds << 8 | byte;
    const auto written = caddis::Date::fromUnixSeconds(seconds);
    INVARIANT(readLogged(written.description()) == written);
    return 0;
}
