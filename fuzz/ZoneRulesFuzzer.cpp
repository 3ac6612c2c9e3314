// Compiled time zone files, and rules in the form of the variable TZ.
//
// Invariants: no read outside the bytes (the sanitizers watch); an offset is never beyond what files and
// rules may state, at any instant of the calendar and far outside it.

#include "Fuzz.h"
#include "platform/base/String.h"
#include "platform/dates/ZoneRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::int64_t Instants[]
        = { -1'000'000'000'000, -62135596800, 0, 951782400, 1711846800, 253402300799, 1'000'000'000'000 };
    const auto holds = [&](const auto& rules) {
        for (const std::int64_t instant : Instants) {
            const int offset = rules.offsetAt(instant);
            INVARIANT(offset >= -26 * 3600 && offset <= 26 * 3600);
        }
    };
    if (const auto rules = caddis::ZoneRules::fromFile(std::as_bytes(std::span(data, size))))
        holds(*rules);
    const auto text = caddis::String::fromLatin1({ reinterpret_cast<const char*>(data), size });
    if (const auto rule = caddis::PosixZoneRule::parse(text))
        holds(*rule);
    return 0;
}
