// The four searches beside std::u16string::find on mapped copies.
//
// Invariants: each finds the first start position that matches; the exact search of units finds none that
// ends with the haystack; a byte is a unit by sign extension.

#include "Fuzz.h"
#include "TwoRuns.h"
#include "text/FastComparison.h"

using namespace caddis;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const TwoRuns runs(data, size);
    const std::u16string_view haystack = runs.first;
    const auto position = [&](const char16_t* found) {
        return found ? static_cast<std::size_t>(found - haystack.data()) : std::u16string::npos;
    };
    const auto expected = [&](const std::u16string& needle, const ConversionTable* table) {
        return needle.empty() ? std::u16string::npos : mapped(runs.first, table).find(mapped(needle, table));
    };

    const std::size_t exact = expected(runs.second, nullptr);
    const bool atTheEnd = exact != std::u16string::npos && exact + runs.second.size() == haystack.size();
    INVARIANT(
        position(fastContainsUnichars(haystack, runs.second)) == (atTheEnd ? std::u16string::npos : exact));
    INVARIANT(position(fastCaseInsensitiveContainsUnichars(haystack, runs.second))
        == expected(runs.second, &upperCharsTable()));

    const std::string bytes(runs.second.begin(), runs.second.end());
    const std::u16string widened(bytes.begin(), bytes.end());
    INVARIANT(position(positionOfCharacters(bytes, haystack, true)) == expected(widened, nullptr));
    INVARIANT(
        position(positionOfCharacters(bytes, haystack, false)) == expected(widened, &upperCharsTable()));
    return 0;
}
